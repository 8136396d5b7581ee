#include "platform/qt/tray/TrayManager.h"

#include "platform/qt/XcbReply.h"

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include <QGuiApplication>

#include <xcb/xcb.h>

namespace vigilo::platform {

namespace {

xcb_atom_t atom(std::string_view name) {
    return xcbAtom(xcbConnection(), name);
}

const xcb_screen_t& screen() {
    return *xcb_setup_roots_iterator(xcb_get_setup(xcbConnection())).data;
}

constexpr std::uint32_t requestDock = 0; // SYSTEM_TRAY_REQUEST_DOCK
constexpr std::uint8_t translucentDepth = 32;

} // namespace

TrayManager::TrayManager(std::function<void()> onChanged)
    : selection_("_NET_SYSTEM_TRAY_S0", "_NET_SYSTEM_TRAY_COLORS", std::move(onChanged)) {}

bool TrayManager::isTranslucent() const {
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        xcbConnection(),
        xcb_get_property(xcbConnection(), 0, selection_.owner(), atom("_NET_SYSTEM_TRAY_VISUAL"),
                         XCB_ATOM_VISUALID, 0, 1),
        nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(xcb_visualid_t)) {
        return false;
    }
    const auto wanted = *static_cast<const xcb_visualid_t*>(xcb_get_property_value(reply.get()));
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen()); depth.rem > 0;
         xcb_depth_next(&depth)) {
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0;
             xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == wanted) {
                return depth.data->depth == translucentDepth;
            }
        }
    }
    return false;
}

std::optional<QColor> TrayManager::foreground() const {
    // Red, green and blue of four colours, of 16 bits each; the first is that of ordinary icons.
    constexpr std::uint32_t bytes = 48;
    std::array<std::uint32_t, 3> colour{};
    const std::string colours = selection_.property(XCB_ATOM_CARDINAL, bytes);
    if (colours.size() < sizeof colour) {
        return std::nullopt;
    }
    std::memcpy(colour.data(), colours.data(), sizeof colour);
    const auto part = [](std::uint32_t number) { return static_cast<quint16>(number & 0xFFFFU); };
    return QColor::fromRgba64(part(colour[0]), part(colour[1]), part(colour[2]));
}

void TrayManager::dock(std::uint32_t window) const {
    // By the XEmbed specification: version 0, and it wants to be mapped.
    const xcb_atom_t information = atom("_XEMBED_INFO");
    const std::array<std::uint32_t, 2> values{0, 1};
    xcb_change_property(xcbConnection(), XCB_PROP_MODE_REPLACE, window, information, information,
                        32, values.size(), values.data());
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = selection_.owner();
    request.type = atom("_NET_SYSTEM_TRAY_OPCODE");
    request.data.data32[0] = XCB_CURRENT_TIME;
    request.data.data32[1] = requestDock;
    request.data.data32[2] = window;
    xcb_send_event(xcbConnection(), 0, selection_.owner(), XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&request));
    xcb_flush(xcbConnection());
}

QColor TrayManager::colourBehind(std::uint32_t window) {
    // The server paints the parent's background into the window, and tells what it has painted.
    const std::uint32_t parentsOwn = XCB_BACK_PIXMAP_PARENT_RELATIVE;
    xcb_change_window_attributes(xcbConnection(), window, XCB_CW_BACK_PIXMAP, &parentsOwn);
    xcb_clear_area(xcbConnection(), 0, window, 0, 0, 1, 1);
    const XcbReply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        xcbConnection(),
        xcb_get_image(xcbConnection(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, 1, 1, ~0U),
        nullptr));
    QRgb pixel = 0;
    if (image && xcb_get_image_data_length(image.get()) >= static_cast<int>(sizeof pixel)) {
        std::memcpy(&pixel, xcb_get_image_data(image.get()), sizeof pixel);
    }
    return QColor::fromRgb(pixel);
}

} // namespace vigilo::platform
