#include "platform/linux/workspace/XSettings.h"
#include "tests/fuzz/input.h"

#include <string>

using namespace vigilo;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = fuzz::text(data, size);
    const platform::XSettings settings = platform::parseXSettings(bytes);
    for (const auto& [name, value] : settings) {
        fuzz::expect(name.empty() || fuzz::refersInto(name, bytes));
        const auto* const text = std::get_if<std::string_view>(&value);
        fuzz::expect(text == nullptr || text->empty() || fuzz::refersInto(*text, bytes));
    }
    // What follows takes nothing of what has been read away, however many were said to be there.
    const std::string more = std::string(bytes) + "more";
    fuzz::expect(platform::parseXSettings(more).size() >= settings.size());
    return 0;
}
