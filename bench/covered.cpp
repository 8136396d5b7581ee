// Watches an X display whose ground is magenta and tells when nothing of it is seen any more:
// prints "watching", and then the time, in seconds of the monotonic clock. It looks at a grid of
// points, often: a whole picture would take longer than what is measured.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include <xcb/xcb.h>

namespace {

using namespace std::chrono_literals;

constexpr int columns = 16;
constexpr int rows = 9;
constexpr std::uint32_t magenta = 0xFF00FF;
constexpr auto betweenLooks = 100us;

bool isCovered(xcb_connection_t* server, const xcb_screen_t& screen) {
    std::vector<xcb_get_image_cookie_t> questions;
    for (int point = 0; point < columns * rows; ++point) {
        const int x = (screen.width_in_pixels - 1) * (point % columns) / (columns - 1);
        const int y = (screen.height_in_pixels - 1) * (point / columns) / (rows - 1);
        questions.push_back(xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root,
                                          static_cast<std::int16_t>(x),
                                          static_cast<std::int16_t>(y), 1, 1, ~0U));
    }
    bool result = true;
    for (const xcb_get_image_cookie_t question : questions) {
        xcb_get_image_reply_t* const answer = xcb_get_image_reply(server, question, nullptr);
        if (answer == nullptr || xcb_get_image_data_length(answer) < 4) {
            std::fputs("covered: the display gives no picture.\n", stderr);
            std::exit(EXIT_FAILURE);
        }
        const std::uint8_t* const bytes = xcb_get_image_data(answer);
        const std::uint32_t pixel = bytes[0] | bytes[1] << 8U | bytes[2] << 16U;
        result = result && pixel != magenta;
        std::free(answer);
    }
    return result;
}

} // namespace

int main() {
    xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(server) != 0) {
        std::fputs("covered: no display.\n", stderr);
        return EXIT_FAILURE;
    }
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    std::puts("watching");
    std::fflush(stdout);
    while (!isCovered(server, screen)) {
        std::this_thread::sleep_for(betweenLooks);
    }
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%.6f\n", now.count());
    xcb_disconnect(server);
    return EXIT_SUCCESS;
}
