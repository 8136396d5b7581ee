#include "platform/qt/prompt/X11Keyboard.h"

#include "platform/qt/XcbReply.h"

#include <string_view>
#include <utility>

#include <QCoreApplication>
#include <QStringList>

#include <xcb/xcb.h>

namespace vigilo::platform {

namespace {

// Where the server puts the number of the layout into the state of the modifiers.
constexpr unsigned groupShift = 13;
constexpr unsigned groupMask = 3;

constexpr std::string_view rulesNames = "_XKB_RULES_NAMES";
constexpr std::string_view extensionName = "XKEYBOARD";
constexpr std::uint32_t longestNames = 256; // in units of four bytes
constexpr qsizetype layoutField = 2;
constexpr qsizetype variantField = 3;

std::uint16_t length(std::string_view text) {
    return static_cast<std::uint16_t>(text.size());
}

} // namespace

X11Keyboard::X11Keyboard(xcb_connection_t* server, Listener listener)
    : server_(server), listener_(std::move(listener)),
      root_(xcb_setup_roots_iterator(xcb_get_setup(server)).data->root) {
    const auto atomRequest = xcb_intern_atom(server_, 0, length(rulesNames), rulesNames.data());
    const auto extensionRequest =
        xcb_query_extension(server_, length(extensionName), extensionName.data());
    if (const XcbReply<xcb_intern_atom_reply_t> atom{
            xcb_intern_atom_reply(server_, atomRequest, nullptr)}) {
        rulesNames_ = atom->atom;
    }
    const XcbReply<xcb_query_extension_reply_t> extension{
        xcb_query_extension_reply(server_, extensionRequest, nullptr)};
    if (extension && extension->present != 0) {
        keyboardEvent_ = extension->first_event;
    }
    readTimer_.setSingleShot(true);
    QObject::connect(&readTimer_, &QTimer::timeout, &readTimer_, [this] { read(); });
    QCoreApplication::instance()->installNativeEventFilter(this);
    readTimer_.start(0);
}

X11Keyboard::~X11Keyboard() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool X11Keyboard::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType == "xcb_generic_event_t") {
        const int type = static_cast<xcb_generic_event_t*>(message)->response_type & 0x7F;
        if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE || type == XCB_PROPERTY_NOTIFY ||
            type == keyboardEvent_) {
            readTimer_.start(0);
        }
    }
    return false;
}

void X11Keyboard::read() {
    const XcbReply<xcb_query_pointer_reply_t> state{
        xcb_query_pointer_reply(server_, xcb_query_pointer(server_, root_), nullptr)};
    if (state) {
        const unsigned mask = state->mask;
        listener_({.isCapsLockOn = (mask & XCB_MOD_MASK_LOCK) != 0,
                   .layout = layout((mask >> groupShift) & groupMask)});
    }
}

/// The name of a layout and, in brackets, of its variant, from what the keyboard was made of. None
/// in a Wayland session: its X server says what it was started with, not what the compositor gave
/// it.
QString X11Keyboard::layout(unsigned group) const {
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        return {};
    }
    const XcbReply<xcb_get_property_reply_t> property{xcb_get_property_reply(
        server_, xcb_get_property(server_, 0, root_, rulesNames_, XCB_ATOM_STRING, 0, longestNames),
        nullptr)};
    if (!property) {
        return {};
    }
    const QStringList fields =
        QString::fromLatin1(static_cast<const char*>(xcb_get_property_value(property.get())),
                            xcb_get_property_value_length(property.get()))
            .split(QChar(u'\0'));
    const QString name = fields.value(layoutField).split(QLatin1Char(',')).value(group).toUpper();
    const QString variant = fields.value(variantField).split(QLatin1Char(',')).value(group);
    return name.isEmpty() || variant.isEmpty() ? name : name + QStringLiteral(" (%1)").arg(variant);
}

} // namespace vigilo::platform
