// Presses keys on KWin, one after another, each with the modifiers before it. Usage:
// virtual_keyboard KEY... with keys like "a", "Tab", "alt+F4"
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fake-input.h>
#include <linux/input-event-codes.h>
#include <wayland-client.h>

namespace {

org_kde_kwin_fake_input* input = nullptr;

void add(void*, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
    if (std::string_view(interface) == org_kde_kwin_fake_input_interface.name) {
        input = static_cast<org_kde_kwin_fake_input*>(
            wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, 4));
    }
}

void remove(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener listener{.global = add, .global_remove = remove};

std::uint32_t code(const std::string& name) {
    static const std::map<std::string, std::uint32_t> codes{
        {"Tab", KEY_TAB},     {"Return", KEY_ENTER},   {"Escape", KEY_ESC},    {"F4", KEY_F4},
        {"alt", KEY_LEFTALT}, {"super", KEY_LEFTMETA}, {"ctrl", KEY_LEFTCTRL}, {"Right", KEY_RIGHT},
        {"Left", KEY_LEFT},   {"space", KEY_SPACE},
    };
    // Keys beside each other have numbers beside each other.
    constexpr std::array<std::pair<std::string_view, std::uint32_t>, 4> rows{{
        {"1234567890", KEY_1},
        {"qwertyuiop", KEY_Q},
        {"asdfghjkl", KEY_A},
        {"zxcvbnm", KEY_Z},
    }};
    for (const auto& [row, first] : rows) {
        const std::size_t place = row.find(name);
        if (name.size() == 1 && place != std::string_view::npos) {
            return first + static_cast<std::uint32_t>(place);
        }
    }
    const auto found = codes.find(name);
    if (found == codes.end()) {
        std::fprintf(stderr, "no such key: %s\n", name.c_str());
        std::exit(EXIT_FAILURE);
    }
    return found->second;
}

std::vector<std::uint32_t> chord(std::string_view text) {
    std::vector<std::uint32_t> result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('+'), text.size());
        result.push_back(code(std::string(text.substr(0, end))));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

} // namespace

int main(int argc, char* argv[]) {
    wl_display* const display = wl_display_connect(nullptr);
    if (display == nullptr) {
        return EXIT_FAILURE;
    }
    wl_registry* const registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, nullptr);
    wl_display_roundtrip(display);
    if (input == nullptr) {
        return EXIT_FAILURE;
    }
    org_kde_kwin_fake_input_authenticate(input, "test", "test");
    for (int index = 1; index < argc; ++index) {
        const std::vector<std::uint32_t> keys = chord(argv[index]);
        for (const std::uint32_t key : keys) {
            org_kde_kwin_fake_input_keyboard_key(input, key, 1);
        }
        for (const std::uint32_t key : keys) {
            org_kde_kwin_fake_input_keyboard_key(input, key, 0);
        }
        wl_display_roundtrip(display);
    }
    wl_display_disconnect(display);
}
