#include "platform/linux/processes/ProcessListing.h"

#include "text/Numbers.h"
#include "text/Parts.h"
#include "text/Unicode.h"
#include "text/Words.h"

namespace vigilo::platform {

namespace {

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
    // Only a line feed ends a line.
    for (const std::string_view line : parts(listing, '\n')) {
        if (const auto process = parseLine(line)) {
            processes.push_back(*process);
        }
    }
    return processes;
}

std::optional<std::string_view> parseOpenFileName(std::string_view output) {
    if (!isUtf8(output)) {
        return std::nullopt;
    }
    for (const std::string_view line : parts(output, '\n')) {
        if (line.starts_with('n')) {
            return line.substr(1);
        }
    }
    return std::nullopt;
}

} // namespace vigilo::platform
