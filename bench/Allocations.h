#pragma once

#include <cstddef>

namespace vigilo::bench {

/// How often this program has asked for memory so far. One thread.
std::size_t allocationCount();

} // namespace vigilo::bench
