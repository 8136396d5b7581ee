// Loaded into Xorg beside its driver for screens without hardware, to give them the power states
// that the driver leaves out: no display server of a distribution offers the DPMS extension on such
// a screen. The driver's copy calls xf86CrtcScreenIniT, a name of the same length, instead of the
// function that is called through here.
#include <cstdio>

#include <dlfcn.h>

namespace {

using SetLevel = void (*)(void* screen, int level, int flags);

void writeLevel(void*, int level, int) {
    std::fprintf(stderr, "display power level %d\n", level);
    std::fflush(stderr);
}

} // namespace

extern "C" int xf86CrtcScreenIniT(void* screen);

extern "C" int xf86CrtcScreenIniT(void* screen) {
    const auto init = reinterpret_cast<int (*)(void*)>(dlsym(RTLD_DEFAULT, "xf86CrtcScreenInit"));
    const auto initPower =
        reinterpret_cast<int (*)(void*, SetLevel, int)>(dlsym(RTLD_DEFAULT, "xf86DPMSInit"));
    const bool isDone = init != nullptr && init(screen) != 0 && initPower != nullptr &&
                        initPower(screen, writeLevel, 0) != 0;
    return isDone ? 1 : 0;
}
