// Loaded into the program to set its clock of the day, and no other, as far ahead or back as the
// file that CLOCK_OFFSET names says, in seconds. Setting the machine's own would disturb everybody.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <dlfcn.h>

namespace {

long offset() {
    long seconds = 0;
    const char* const path = std::getenv("CLOCK_OFFSET");
    if (std::FILE* const file = path != nullptr ? std::fopen(path, "re") : nullptr) {
        std::array<char, 32> text{};
        if (std::fgets(text.data(), text.size(), file) != nullptr) {
            seconds = std::strtol(text.data(), nullptr, 10);
        }
        std::fclose(file);
    }
    return seconds;
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    static const auto original =
        reinterpret_cast<int (*)(clockid_t, timespec*)>(dlsym(RTLD_NEXT, "clock_gettime"));
    const int result = original(clock, time);
    if (result == 0 && clock == CLOCK_REALTIME) {
        time->tv_sec += offset();
    }
    return result;
}
