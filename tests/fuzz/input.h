#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace vigilo::fuzz {

/// The bytes that the fuzzer made, as text.
inline std::string_view text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Stops the fuzzer with the input that broke a rule.
inline void expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Whether `part` lies inside `whole` and not merely equals a part of it.
inline bool refersInto(std::string_view part, std::string_view whole) {
    return part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size();
}

} // namespace vigilo::fuzz

/// The fuzzer's entry point, as libFuzzer names it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
