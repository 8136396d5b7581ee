// Loaded into the program to note how long its main thread stays away from its event loop at a
// time: the longest stretch between the end of one wait for events and the beginning of the next.
// Other waits, such as those for an answer of the display server, are part of a stretch. The file
// that HOLD_UP_RECORD names, made by whoever watches, holds the stretch in nanoseconds as two
// numbers of 64 bits: all of it, and the part in which the thread wanted a processor and had none.
// It is written in place; a watcher that sets it to zero begins anew.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <array>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

struct Record {
    std::uint64_t stretch = 0;
    std::uint64_t waiting = 0;
    std::uint64_t count = 0;
};

constexpr std::uint64_t longStretch = 100'000'000;

/// How long this thread has waited for a processor so far; proc(5), schedstat.
std::uint64_t waitingTime(int schedule) {
    std::array<char, 128> text{};
    if (pread(schedule, text.data(), text.size() - 1, 0) <= 0) {
        return 0;
    }
    const char* const second = std::strchr(text.data(), ' ');
    return second != nullptr ? std::strtoull(second, nullptr, 10) : 0;
}

std::uint64_t now() {
    timespec time{};
    // Not one of the clocks that other shims set.
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000U +
           static_cast<std::uint64_t>(time.tv_nsec);
}

class Watch {
public:
    Watch() {
        const char* const path = std::getenv("HOLD_UP_RECORD");
        // Not the programs that it starts or that have started it.
        if (path == nullptr || std::strcmp(program_invocation_short_name, "vigilo") != 0) {
            return;
        }
        const int file = open(path, O_RDWR | O_CLOEXEC);
        void* const memory =
            mmap(nullptr, sizeof(Record), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        close(file);
        schedule_ = open("/proc/self/schedstat", O_RDONLY | O_CLOEXEC);
        record_ = memory != MAP_FAILED ? static_cast<Record*>(memory) : nullptr;
    }

    bool isOn() const { return record_ != nullptr; }

    void waitBegins() {
        if (since_ == 0) {
            return;
        }
        const std::uint64_t stretch = now() - since_;
        const std::uint64_t waiting = waitingTime(schedule_) - waitingBefore_;
        if (waiting > stretch) {
            return; // it was counted late
        }
        if (stretch - waiting > record_->stretch - record_->waiting) {
            record_->stretch = stretch;
            record_->waiting = waiting;
        }
        if (stretch - waiting > longStretch) {
            ++record_->count;
        }
    }

    void waitEnds() {
        since_ = now();
        waitingBefore_ = waitingTime(schedule_);
    }

private:
    Record* record_ = nullptr;
    int schedule_ = -1;
    std::uint64_t since_ = 0;
    std::uint64_t waitingBefore_ = 0;
};

/// Whether an event loop waits, and not a library for an answer of its own.
bool isEventLoop(void* caller) {
    Dl_info library{};
    return gettid() == getpid() && dladdr(caller, &library) != 0 &&
           (std::strstr(library.dli_fname, "libglib-2") != nullptr ||
            std::strstr(library.dli_fname, "libQt6Core") != nullptr);
}

template <typename Wait>
int watched(void* caller, const Wait& wait) {
    static Watch watch;
    if (!watch.isOn() || !isEventLoop(caller)) {
        return wait();
    }
    watch.waitBegins();
    const int result = wait();
    const int error = errno;
    watch.waitEnds();
    errno = error;
    return result;
}

} // namespace

extern "C" int poll(pollfd* descriptors, nfds_t count, int timeout) {
    static const auto original =
        reinterpret_cast<int (*)(pollfd*, nfds_t, int)>(dlsym(RTLD_NEXT, "poll"));
    return watched(__builtin_return_address(0),
                   [&] { return original(descriptors, count, timeout); });
}

extern "C" int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeout,
                     const sigset_t* signals) {
    static const auto original =
        reinterpret_cast<int (*)(pollfd*, nfds_t, const timespec*, const sigset_t*)>(
            dlsym(RTLD_NEXT, "ppoll"));
    return watched(__builtin_return_address(0),
                   [&] { return original(descriptors, count, timeout, signals); });
}
