// Keeps the counters of a process that aborts, as a death test's child does: without this the
// lines that end the process would look as if no test reached them.
#include <csignal>

// The compiler's name for it.
extern "C" void __gcov_dump(); // NOLINT(bugprone-reserved-identifier)

namespace {

extern "C" void keepCounters(int) {
    __gcov_dump();
}

// Returning from the handler lets abort() go on.
[[maybe_unused]] const auto previousHandler = std::signal(SIGABRT, keepCounters);

} // namespace
