#include "platform/qt/prompt/ComposeKeys.h"

#include "platform/linux/authentication/SecretText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace vigilo::platform {

namespace {

constexpr auto usualLocale = "en_US.UTF-8";

} // namespace

void ComposeKeys::Unref::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}

void ComposeKeys::Unref::operator()(xkb_compose_table* table) const {
    xkb_compose_table_unref(table);
}

void ComposeKeys::Unref::operator()(xkb_compose_state* state) const {
    xkb_compose_state_unref(state);
}

ComposeKeys::ComposeKeys(std::string locale) : locale_(std::move(locale)) {}

ComposeKeys::~ComposeKeys() = default;

bool ComposeKeys::begins(std::uint32_t keysym) {
    return keysym == XKB_KEY_Multi_key ||
           (keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_longsolidusoverlay);
}

/// The library keeps the table for the state, and the context for the table.
void ComposeKeys::readTable() {
    const std::unique_ptr<xkb_context, Unref> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    if (!context) {
        return;
    }
    // A user's table with a mistake is no reason to write to the terminal.
    xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    const auto read = [&context](const char* locale) {
        return std::unique_ptr<xkb_compose_table, Unref>(
            xkb_compose_table_new_from_locale(context.get(), locale, XKB_COMPOSE_COMPILE_NO_FLAGS));
    };
    auto table = read(locale_.c_str());
    if (!table) {
        table = read(usualLocale);
    }
    if (table) {
        state_.reset(xkb_compose_state_new(table.get(), XKB_COMPOSE_STATE_NO_FLAGS));
    }
}

ComposeKeys::Outcome ComposeKeys::press(std::uint32_t keysym, SecretText& text) {
    if (begins(keysym) && !std::exchange(isRead_, true)) {
        readTable();
    }
    // Shift and its like are part of no character.
    if (!state_ || xkb_compose_state_feed(state_.get(), keysym) == XKB_COMPOSE_FEED_IGNORED) {
        return Outcome::ordinary;
    }
    switch (xkb_compose_state_get_status(state_.get())) {
    case XKB_COMPOSE_COMPOSING:
        return Outcome::composing;
    case XKB_COMPOSE_COMPOSED:
        append(text);
        reset();
        return Outcome::composed;
    case XKB_COMPOSE_CANCELLED:
        reset();
        return Outcome::cancelled;
    case XKB_COMPOSE_NOTHING:
        break;
    }
    return Outcome::ordinary;
}

void ComposeKeys::append(SecretText& text) const {
    std::array<char, SecretText::capacity + 1> bytes{};
    const int size = xkb_compose_state_get_utf8(state_.get(), bytes.data(), bytes.size());
    const auto whole = static_cast<std::size_t>(std::max(size, 0));
    if (whole < bytes.size()) {
        text.append(std::string_view(bytes.data(), whole));
    }
    explicit_bzero(bytes.data(), bytes.size());
}

void ComposeKeys::reset() {
    if (state_) {
        xkb_compose_state_reset(state_.get());
    }
}

} // namespace vigilo::platform
