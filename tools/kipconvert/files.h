// What reading and writing have in common.
#pragma once

#include <string>

/// Throws std::runtime_error: the name, and what errno says.
[[noreturn]] void failOn(const std::string& name);

/// Lets a pipe hold more than its usual 64 KiB, so that both ends are woken less often. Other files stay as they are.
void enlargePipe(int file);
