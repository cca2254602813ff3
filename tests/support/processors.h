// The number of processors under control: the test program defines what the library asks the OpenMP runtime for, so
// that teams are as large on a small machine as on any other.
#pragma once

namespace kip {

/// From now on there are so many processors; 0: as many as there are.
void pretendProcessors(int count);

}  // namespace kip
