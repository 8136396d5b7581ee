// Loaded into the program to set its clock of the day as far ahead or back as the file that
// CLOCK_OFFSET names says, in seconds; after a second number that is not zero it slept meanwhile,
// and the clock that counts sleep goes with it. Setting the machine's own would disturb everybody.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <dlfcn.h>

namespace {

struct Offset {
    long seconds = 0;
    long hasSlept = 0;
};

Offset offset() {
    Offset offset;
    const char* const path = std::getenv("CLOCK_OFFSET");
    if (std::FILE* const file = path != nullptr ? std::fopen(path, "re") : nullptr) {
        std::array<char, 64> text{};
        if (std::fgets(text.data(), text.size(), file) != nullptr) {
            char* rest = nullptr;
            offset.seconds = std::strtol(text.data(), &rest, 10);
            offset.hasSlept = std::strtol(rest, nullptr, 10);
        }
        std::fclose(file);
    }
    return offset;
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    static const auto original =
        reinterpret_cast<int (*)(clockid_t, timespec*)>(dlsym(RTLD_NEXT, "clock_gettime"));
    const int result = original(clock, time);
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_BOOTTIME)) {
        const Offset now = offset();
        time->tv_sec += clock == CLOCK_REALTIME || now.hasSlept != 0 ? now.seconds : 0;
    }
    return result;
}
