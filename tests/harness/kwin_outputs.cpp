// Changes KWin's outputs, all in one, and waits until that has been done. Usage:
// kwin_outputs NUMBER:off|NUMBER:X,Y,SCALE,TRANSFORM...
//
// Outputs are numbered from 0 in the order in which they were added, the ones that are off
// included.
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include <kde-outputs.h>
#include <wayland-client.h>

namespace {

struct Server {
    kde_output_management_v2* management = nullptr;
    std::vector<kde_output_device_v2*> outputs;
};

void add(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
         std::uint32_t) {
    auto& server = *static_cast<Server*>(data);
    const std::string_view offered = interface;
    if (offered == kde_output_management_v2_interface.name) {
        server.management = static_cast<kde_output_management_v2*>(
            wl_registry_bind(registry, name, &kde_output_management_v2_interface, 1));
    } else if (offered == kde_output_device_v2_interface.name) {
        server.outputs.push_back(static_cast<kde_output_device_v2*>(
            wl_registry_bind(registry, name, &kde_output_device_v2_interface, 1)));
    }
}

void remove(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener listener{.global = add, .global_remove = remove};

enum class Answer { none, applied, failed };

void setApplied(void* data, kde_output_configuration_v2*) {
    *static_cast<Answer*>(data) = Answer::applied;
}

void setFailed(void* data, kde_output_configuration_v2*) {
    *static_cast<Answer*>(data) = Answer::failed;
}

constexpr kde_output_configuration_v2_listener answers{.applied = setApplied, .failed = setFailed};

/// Whether the text is a change of one of the outputs, which then is part of the configuration.
bool take(const char* text, const Server& server, kde_output_configuration_v2* configuration) {
    char* rest = nullptr;
    const unsigned long number = std::strtoul(text, &rest, 10);
    if (number >= server.outputs.size()) {
        return false;
    }
    kde_output_device_v2* const output = server.outputs[number];
    if (std::string_view(rest) == ":off") {
        kde_output_configuration_v2_enable(configuration, output, 0);
        return true;
    }
    std::array<int, 4> values{};
    for (int& value : values) {
        if (*rest != ':' && *rest != ',') {
            return false;
        }
        value = static_cast<int>(std::strtol(rest + 1, &rest, 10));
    }
    const auto [x, y, scale, transform] = values;
    kde_output_configuration_v2_enable(configuration, output, 1);
    kde_output_configuration_v2_position(configuration, output, x, y);
    kde_output_configuration_v2_scale(configuration, output, wl_fixed_from_int(scale));
    kde_output_configuration_v2_transform(configuration, output, transform);
    return *rest == '\0';
}

} // namespace

int main(int argc, char* argv[]) {
    wl_display* const display = wl_display_connect(nullptr);
    if (display == nullptr) {
        return EXIT_FAILURE;
    }
    Server server;
    wl_registry* const registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, &server);
    wl_display_roundtrip(display);
    if (server.management == nullptr) {
        return EXIT_FAILURE;
    }
    kde_output_configuration_v2* const configuration =
        kde_output_management_v2_create_configuration(server.management);
    Answer answer = Answer::none;
    kde_output_configuration_v2_add_listener(configuration, &answers, &answer);
    for (int index = 1; index < argc; ++index) {
        if (!take(argv[index], server, configuration)) {
            std::fprintf(stderr, "no such change of an output: %s\n", argv[index]);
            return EXIT_FAILURE;
        }
    }
    kde_output_configuration_v2_apply(configuration);
    while (answer == Answer::none && wl_display_dispatch(display) >= 0) {
    }
    wl_display_disconnect(display);
    return answer == Answer::applied ? EXIT_SUCCESS : EXIT_FAILURE;
}
