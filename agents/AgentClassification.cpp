#include "agents/AgentClassification.h"

#include "platform/ProcessTable.h"
#include "text/Numbers.h"
#include "text/Parts.h"
#include "text/Path.h"
#include "text/Words.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace vigilo {

namespace {

constexpr std::string_view claude = "claude";
constexpr std::string_view codex = "codex";
constexpr std::string_view claudeCode = "Claude Code";
constexpr std::string_view codexName = "Codex";

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Whether a base name is `name` in any case; `allowsSuffix`: or begins with `name` and a dot.
/// Folding ASCII letters suffices: lower-casing turns only one character outside ASCII, the Kelvin
/// sign, into an ASCII letter, and neither name has a k.
bool isNamed(std::string_view baseName, std::string_view name, bool allowsSuffix) {
    if (baseName.size() < name.size() ||
        !std::equal(name.begin(), name.end(), baseName.begin(),
                    [](char expected, char given) { return expected == lowered(given); })) {
        return false;
    }
    return baseName.size() == name.size() || (allowsSuffix && baseName[name.size()] == '.');
}

std::string number(std::int64_t value) {
    return std::to_string(value);
}

} // namespace

std::optional<std::string_view> agentName(std::string_view command) {
    Words words(command);
    for (std::size_t position = 0; position < platform::examinedWords; ++position) {
        const auto word = words.next();
        if (!word) {
            break;
        }
        const std::string_view baseName = lastPathComponent(*word);
        const bool allowsSuffix = position > 0;
        if (isNamed(baseName, claude, allowsSuffix)) {
            return claudeCode;
        }
        if (isNamed(baseName, codex, allowsSuffix)) {
            return codexName;
        }
    }
    return std::nullopt;
}

std::string friendlyRuntime(std::string_view elapsed) {
    // A piece that is empty is dropped and uses up no split.
    while (elapsed.starts_with('-')) {
        elapsed.remove_prefix(1);
    }
    std::int64_t days = 0;
    std::string_view clock = elapsed;
    const std::size_t dash = elapsed.find('-');
    if (dash != std::string_view::npos && dash + 1 < elapsed.size()) {
        days = decimalInteger(elapsed.substr(0, dash)).value_or(0);
        clock = elapsed.substr(dash + 1);
    } else if (dash != std::string_view::npos) {
        clock = elapsed.substr(0, dash);
    }

    std::vector<std::int64_t> numbers;
    for (const std::string_view part : parts(clock, ':')) {
        if (const auto value = decimalInteger(part)) {
            numbers.push_back(*value);
        }
    }

    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    std::int64_t seconds = 0;
    if (numbers.size() == 3) {
        hours = numbers[0];
        minutes = numbers[1];
        seconds = numbers[2];
    } else if (numbers.size() == 2) {
        minutes = numbers[0];
        seconds = numbers[1];
    } else if (!numbers.empty()) {
        seconds = numbers[0];
    }

    if (days > 0) {
        return number(days) + "d " + number(hours) + "h";
    }
    if (hours > 0) {
        return number(hours) + "h " + number(minutes) + "m";
    }
    if (minutes > 0) {
        return number(minutes) + "m";
    }
    return number(seconds) + "s";
}

} // namespace vigilo
