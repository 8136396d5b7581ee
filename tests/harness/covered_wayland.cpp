// Watches the outputs of a Wayland compositor whose ground is magenta and tells when nothing of it
// is seen any more on any of them: prints "watching", and then the time, in seconds of the
// monotonic clock. It looks at a grid of points in each picture that the compositor shows.
//
// Usage: covered_wayland [forever]. With "forever" it watches the first output alone, and tells the
// time of each picture that shows some of the ground.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-screencopy.h>

namespace {

constexpr std::uint32_t columns = 16;
constexpr std::uint32_t rows = 9;
constexpr std::uint32_t magenta = 0xFF00FF;

[[noreturn]] void stop(const char* reason) {
    std::fprintf(stderr, "covered_wayland: %s.\n", reason);
    std::exit(EXIT_FAILURE);
}

struct Output {
    wl_output* output;
    wl_buffer* buffer = nullptr;
    const std::uint32_t* pixels = nullptr;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t pitch = 0; ///< pixels from one row to the next
    double coveredAt = 0;    ///< seconds; 0 as long as it is not
};

wl_shm* memory = nullptr;
zwlr_screencopy_manager_v1* screencopy = nullptr;
std::vector<Output> outputs;
bool isForever = false;

void add(void*, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
    const std::string_view offered = interface;
    if (offered == wl_shm_interface.name) {
        memory = static_cast<wl_shm*>(wl_registry_bind(registry, name, &wl_shm_interface, 1));
    } else if (offered == zwlr_screencopy_manager_v1_interface.name) {
        screencopy = static_cast<zwlr_screencopy_manager_v1*>(
            wl_registry_bind(registry, name, &zwlr_screencopy_manager_v1_interface, 1));
    } else if (offered == wl_output_interface.name) {
        outputs.push_back(
            {static_cast<wl_output*>(wl_registry_bind(registry, name, &wl_output_interface, 1))});
    }
}

void remove(void*, wl_registry*, std::uint32_t) {}

void makeBuffer(Output& output, std::uint32_t format, std::uint32_t stride) {
    const auto size = static_cast<std::int32_t>(stride * output.height);
    const int file = memfd_create("picture", MFD_CLOEXEC);
    void* const address =
        file < 0 || ftruncate(file, size) != 0
            ? MAP_FAILED
            : mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_SHARED, file, 0);
    if (address == MAP_FAILED) {
        stop("no memory for a picture");
    }
    output.pixels = static_cast<const std::uint32_t*>(address);
    output.pitch = stride / 4;
    wl_shm_pool* const pool = wl_shm_create_pool(memory, file, size);
    output.buffer = wl_shm_pool_create_buffer(pool, 0, static_cast<std::int32_t>(output.width),
                                              static_cast<std::int32_t>(output.height),
                                              static_cast<std::int32_t>(stride), format);
    wl_shm_pool_destroy(pool);
    close(file);
}

bool isCovered(const Output& output) {
    for (std::uint32_t point = 0; point < columns * rows; ++point) {
        const std::uint32_t x = (output.width - 1) * (point % columns) / (columns - 1);
        const std::uint32_t y = (output.height - 1) * (point / columns) / (rows - 1);
        if ((output.pixels[y * output.pitch + x] & 0xFFFFFFU) == magenta) {
            return false;
        }
    }
    return true;
}

void tell(double time) {
    std::printf("%.6f\n", time);
    std::fflush(stdout);
}

void look(Output& output);

void copy(void* data, zwlr_screencopy_frame_v1* frame, std::uint32_t format, std::uint32_t width,
          std::uint32_t height, std::uint32_t stride) {
    Output& output = *static_cast<Output*>(data);
    if (output.buffer == nullptr) {
        output.width = width;
        output.height = height;
        makeBuffer(output, format, stride);
    }
    zwlr_screencopy_frame_v1_copy(frame, output.buffer);
}

void ignoreFlags(void*, zwlr_screencopy_frame_v1*, std::uint32_t) {}

void judge(void* data, zwlr_screencopy_frame_v1* frame, std::uint32_t, std::uint32_t seconds,
           std::uint32_t nanoseconds) {
    Output& output = *static_cast<Output*>(data);
    zwlr_screencopy_frame_v1_destroy(frame);
    const double time = seconds + nanoseconds / 1e9;
    const bool isNowCovered = isCovered(output);
    if (isNowCovered) {
        output.coveredAt = time;
    } else if (isForever) {
        tell(time);
    }
    if (isForever || !isNowCovered) {
        look(output);
    }
}

void fail(void*, zwlr_screencopy_frame_v1*) {
    stop("the compositor gives no picture");
}

void look(Output& output) {
    static constexpr zwlr_screencopy_frame_v1_listener listener{
        .buffer = copy, .flags = ignoreFlags, .ready = judge, .failed = fail};
    zwlr_screencopy_frame_v1* const frame =
        zwlr_screencopy_manager_v1_capture_output(screencopy, 0, output.output);
    zwlr_screencopy_frame_v1_add_listener(frame, &listener, &output);
}

} // namespace

int main(int argc, char* argv[]) {
    isForever = argc > 1 && std::string_view(argv[1]) == "forever";
    wl_display* const display = wl_display_connect(nullptr);
    if (display == nullptr) {
        stop("no compositor");
    }
    static constexpr wl_registry_listener listener{.global = add, .global_remove = remove};
    wl_registry* const registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, nullptr);
    wl_display_roundtrip(display);
    if (memory == nullptr || screencopy == nullptr || outputs.empty()) {
        stop("the compositor gives no pictures");
    }
    if (isForever) {
        outputs.resize(1);
    }
    for (Output& output : outputs) {
        look(output);
    }
    wl_display_roundtrip(display);
    std::puts("watching");
    std::fflush(stdout);
    const auto isDone = [](const Output& output) { return output.coveredAt > 0; };
    while (isForever || !std::ranges::all_of(outputs, isDone)) {
        if (wl_display_dispatch(display) < 0) {
            stop("the compositor is gone");
        }
    }
    tell(std::ranges::max(outputs, {}, &Output::coveredAt).coveredAt);
    wl_display_disconnect(display);
    return EXIT_SUCCESS;
}
