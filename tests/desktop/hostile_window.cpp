// A magenta window that wants to be seen over everything, and says "shown" and "key" on standard
// output when it is mapped and when a key reaches it. Usage: hostile_window
// unmanaged|returning|insistent|above|full-screen|menu|desktop|close
//
// "returning" is unmanaged, too, and comes and goes before it stays; "insistent" as well, and
// raises itself again and again for a second; "menu" holds the keyboard and the pointer until a
// button is pressed, and says "closed" then; "desktop" is the ground below all windows; "close"
// shows no window but asks the covers of the Agent Lock to close, as a window manager does, says
// how many there are, and ends.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>

#include <xcb/xcb.h>

namespace {

using namespace std::chrono_literals;

xcb_atom_t atom(xcb_connection_t* server, const char* name) {
    xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(
        server, xcb_intern_atom(server, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t result = reply->atom;
    std::free(reply);
    return result;
}

void setAtom(xcb_connection_t* server, xcb_window_t window, const char* property,
             const char* value) {
    const xcb_atom_t content = atom(server, value);
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, atom(server, property),
                        XCB_ATOM_ATOM, 32, 1, &content);
}

bool isCover(xcb_connection_t* server, xcb_window_t window) {
    xcb_get_property_reply_t* const reply = xcb_get_property_reply(
        server,
        xcb_get_property(server, 0, window, atom(server, "_NET_WM_NAME"), XCB_ATOM_ANY, 0, 64),
        nullptr);
    const bool result =
        reply != nullptr &&
        std::string_view(static_cast<const char*>(xcb_get_property_value(reply)),
                         static_cast<std::size_t>(xcb_get_property_value_length(reply)))
            .starts_with("Agent Lock");
    std::free(reply);
    return result;
}

void send(xcb_connection_t* server, xcb_window_t to, std::uint32_t mask, xcb_window_t about,
          xcb_atom_t type, std::uint32_t first) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = type;
    message.data.data32[0] = first;
    xcb_send_event(server, 0, to, mask, reinterpret_cast<const char*>(&message));
}

/// The number of covers that were asked.
int closeCovers(xcb_connection_t* server, xcb_window_t root) {
    int count = 0;
    xcb_query_tree_reply_t* const tree =
        xcb_query_tree_reply(server, xcb_query_tree(server, root), nullptr);
    for (int i = 0; i < xcb_query_tree_children_length(tree); ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree)[i];
        if (isCover(server, window)) {
            send(server, window, 0, window, atom(server, "WM_PROTOCOLS"),
                 atom(server, "WM_DELETE_WINDOW"));
            send(server, root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, window,
                 atom(server, "_NET_CLOSE_WINDOW"), XCB_CURRENT_TIME);
            ++count;
        }
    }
    std::free(tree);
    // Answered only when all that came before has been dealt with.
    std::free(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    return count;
}

bool grab(xcb_connection_t* server, xcb_window_t window) {
    xcb_grab_keyboard_reply_t* const keyboard =
        xcb_grab_keyboard_reply(server,
                                xcb_grab_keyboard(server, 0, window, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr);
    xcb_grab_pointer_reply_t* const pointer = xcb_grab_pointer_reply(
        server,
        xcb_grab_pointer(server, 0, window, XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        nullptr);
    const bool result = keyboard != nullptr && keyboard->status == XCB_GRAB_STATUS_SUCCESS &&
                        pointer != nullptr && pointer->status == XCB_GRAB_STATUS_SUCCESS;
    std::free(keyboard);
    std::free(pointer);
    return result;
}

void raiseAgainAndAgain(xcb_connection_t* server, xcb_window_t window) {
    for (int i = 0; i < 200; ++i) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(server, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_flush(server);
        std::this_thread::sleep_for(5ms);
    }
}

void say(const char* word) {
    std::puts(word);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[]) {
    const std::string_view kind = argc > 1 ? argv[1] : "";
    xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    if (kind == "close") {
        std::printf("%d\n", closeCovers(server, screen->root));
        return EXIT_SUCCESS;
    }
    const bool isUnmanaged =
        kind == "unmanaged" || kind == "returning" || kind == "insistent" || kind == "menu";
    int returns = kind == "returning" ? 20 : 0;
    const xcb_window_t window = xcb_generate_id(server);
    const std::uint32_t values[] = {0xFF00FF, isUnmanaged ? 1U : 0U,
                                    XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_KEY_PRESS};
    const bool isGround = kind == "desktop";
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, screen->root, isGround ? 0 : 100,
                      isGround ? 0 : 100, isGround ? screen->width_in_pixels : 400,
                      isGround ? screen->height_in_pixels : 300, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    if (kind == "above") {
        setAtom(server, window, "_NET_WM_STATE", "_NET_WM_STATE_ABOVE");
    } else if (kind == "full-screen") {
        setAtom(server, window, "_NET_WM_STATE", "_NET_WM_STATE_FULLSCREEN");
    } else if (isGround) {
        setAtom(server, window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DESKTOP");
    }
    xcb_map_window(server, window);
    if (kind == "unmanaged") {
        xcb_set_input_focus(server, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    }
    xcb_flush(server);
    while (xcb_generic_event_t* const event = xcb_wait_for_event(server)) {
        switch (event->response_type & 0x7F) {
        case XCB_MAP_NOTIFY:
            if (returns > 0) {
                --returns;
                std::this_thread::sleep_for(20ms);
                xcb_unmap_window(server, window);
                xcb_map_window(server, window);
                xcb_flush(server);
                break;
            }
            if (kind == "insistent") {
                raiseAgainAndAgain(server, window);
            }
            say(kind == "menu" && !grab(server, window) ? "refused" : "shown");
            break;
        case XCB_BUTTON_PRESS:
            say("closed");
            return EXIT_SUCCESS;
        case XCB_KEY_PRESS:
            say("key");
            break;
        default:
            break;
        }
        std::free(event);
    }
}
