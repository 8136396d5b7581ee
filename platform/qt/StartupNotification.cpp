#include "platform/qt/StartupNotification.h"

#include "platform/qt/XcbReply.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include <QGuiApplication>

#include <xcb/xcb.h>

namespace vigilo::platform {

namespace {

constexpr std::size_t longestId = 1024;

std::string endMessage(const std::string& id) {
    std::string message = "remove: ID=\"";
    for (const char character : id) {
        if (character == '"' || character == '\\') {
            message += '\\';
        }
        message += character;
    }
    // With the zero that ends it.
    return message + '"' + '\0';
}

} // namespace

void endStartupNotification(const std::string& id) {
    const auto* const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (application == nullptr || id.empty() || id.size() > longestId) {
        return;
    }
    xcb_connection_t* const server = application->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    // The pieces of a message belong together by the window that they name.
    const xcb_window_t window = xcb_generate_id(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = window;
    event.type = xcbAtom(server, "_NET_STARTUP_INFO_BEGIN");
    std::string message = endMessage(id);
    while (!message.empty()) {
        const std::size_t size = std::min(message.size(), std::size(event.data.data8));
        std::fill(std::begin(event.data.data8), std::end(event.data.data8), std::uint8_t{0});
        std::copy_n(message.begin(), size, std::begin(event.data.data8));
        xcb_send_event(server, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
        event.type = xcbAtom(server, "_NET_STARTUP_INFO");
        message.erase(0, size);
    }
    xcb_destroy_window(server, window);
    xcb_flush(server);
}

} // namespace vigilo::platform
