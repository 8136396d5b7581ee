// A magenta window that wants to be seen over everything. Usage: hostile_window
// unmanaged|above|full-screen
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <unistd.h>
#include <xcb/xcb.h>

namespace {

xcb_atom_t atom(xcb_connection_t* server, const char* name) {
    xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(
        server, xcb_intern_atom(server, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t result = reply->atom;
    std::free(reply);
    return result;
}

} // namespace

int main(int argc, char* argv[]) {
    const std::string_view kind = argc > 1 ? argv[1] : "";
    xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const xcb_window_t window = xcb_generate_id(server);
    const std::uint32_t values[] = {0xFF00FF, kind == "unmanaged" ? 1U : 0U};
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, screen->root, 100, 100, 400, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    if (kind != "unmanaged") {
        const xcb_atom_t state =
            atom(server, kind == "above" ? "_NET_WM_STATE_ABOVE" : "_NET_WM_STATE_FULLSCREEN");
        xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, atom(server, "_NET_WM_STATE"),
                            XCB_ATOM_ATOM, 32, 1, &state);
    }
    xcb_map_window(server, window);
    xcb_flush(server);
    pause();
}
