#include "platform/linux/processes/ProcessListing.h"

#include "text/Numbers.h"
#include "text/Unicode.h"
#include "text/Words.h"

#include <algorithm>
#include <cstddef>

namespace vigilo::platform {

namespace {

/// Takes the first line off the text; only a line feed ends a line.
std::string_view takeLine(std::string_view& text) {
    const std::size_t length = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return line;
}

std::optional<ListedProcess> parseLine(std::string_view line) {
    Words words(line);
    const auto pidText = words.next();
    const auto elapsed = words.next();
    const auto cpuText = words.next();
    if (!cpuText || words.rest().empty()) {
        return std::nullopt;
    }
    const auto pid = decimalInteger(*pidText);
    const auto cpuPercent = floatingPoint(*cpuText);
    if (!pid || !cpuPercent) {
        return std::nullopt;
    }
    return ListedProcess{
        .pid = *pid, .elapsed = *elapsed, .cpuPercent = *cpuPercent, .command = words.rest()};
}

} // namespace

std::vector<ListedProcess> parseProcessListing(std::string_view listing) {
    std::vector<ListedProcess> processes;
    if (!isUtf8(listing)) {
        return processes;
    }
    while (!listing.empty()) {
        if (const auto process = parseLine(takeLine(listing))) {
            processes.push_back(*process);
        }
    }
    return processes;
}

std::optional<std::string_view> parseOpenFileName(std::string_view output) {
    if (!isUtf8(output)) {
        return std::nullopt;
    }
    while (!output.empty()) {
        const std::string_view line = takeLine(output);
        if (line.starts_with('n')) {
            return line.substr(1);
        }
    }
    return std::nullopt;
}

} // namespace vigilo::platform
