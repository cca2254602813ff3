// The library's scratch memory under control: the test program defines kipMalloc and kipFree in front of the core
// library, counts what is taken and given back, and lets an allocation of choice fail.
#pragma once

namespace kip {

/// From now on the allocation of this number fails (1 is the next one); 0: none does. Restarts the counts.
void failAllocation(int number);

/// Allocations hold this byte from now on; 0xCD at first.
void fillAllocations(unsigned char byte);

int allocationsAsked();  ///< since then
int allocationsHeld();   ///< not yet released

}  // namespace kip
