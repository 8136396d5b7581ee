#include "platform/linux/login/DesktopEntry.h"

#include "text/Parts.h"
#include "text/Unicode.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <utility>

namespace vigilo::platform {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The character that a backslash and this one stand for.
char unescaped(char character) {
    switch (character) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return character;
    }
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text) {
    if (!isUtf8(text)) {
        return std::nullopt;
    }
    DesktopEntry entry;
    std::optional<std::string_view> group;
    for (const std::string_view whole : parts(text, '\n')) {
        const std::string_view line = trimmed(whole);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[' && line.back() == ']') {
            const std::string_view name = line.substr(1, line.size() - 2);
            if (!group && name != "Desktop Entry") {
                return std::nullopt;
            }
            group = name;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!group || equals == std::string_view::npos || equals == 0) {
            return std::nullopt;
        }
        if (*group == "Desktop Entry") {
            entry.insert_or_assign(std::string(trimmed(line.substr(0, equals))),
                                   std::string(trimmed(line.substr(equals + 1))));
        }
    }
    return group ? std::optional(std::move(entry)) : std::nullopt;
}

std::optional<std::string> textValue(const DesktopEntry& entry, std::string_view key) {
    const auto found = entry.find(key);
    if (found == entry.end()) {
        return std::nullopt;
    }
    std::string text;
    bool isEscaped = false;
    for (const char character : found->second) {
        if (isEscaped) {
            text += unescaped(character);
            isEscaped = false;
        } else if (character == '\\') {
            isEscaped = true;
        } else {
            text += character;
        }
    }
    return text;
}

std::vector<std::string> listValue(const DesktopEntry& entry, std::string_view key) {
    std::vector<std::string> list;
    const auto found = entry.find(key);
    if (found == entry.end()) {
        return list;
    }
    std::string element;
    bool isEscaped = false;
    for (const char character : found->second + ';') {
        if (isEscaped) {
            element += unescaped(character);
            isEscaped = false;
        } else if (character == '\\') {
            isEscaped = true;
        } else if (character != ';') {
            element += character;
        } else if (!element.empty()) {
            list.push_back(std::exchange(element, {}));
        }
    }
    return list;
}

std::optional<bool> booleanValue(const DesktopEntry& entry, std::string_view key) {
    const auto found = entry.find(key);
    if (found == entry.end()) {
        return std::nullopt;
    }
    std::string word = found->second;
    std::transform(word.begin(), word.end(), word.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    if (word == "true" || word == "1" || word == "yes" || word == "on") {
        return true;
    }
    if (word == "false" || word == "0" || word == "no" || word == "off") {
        return false;
    }
    return std::nullopt;
}

std::string escapedText(std::string_view text) {
    std::string value;
    for (const char character : text) {
        switch (character) {
        case '\n':
            value += "\\n";
            break;
        case '\t':
            value += "\\t";
            break;
        case '\r':
            value += "\\r";
            break;
        case '\\':
            value += "\\\\";
            break;
        case ' ':
            // Only a blank at the front would be taken for the file's own layout.
            value += value.empty() ? "\\s" : " ";
            break;
        default:
            value += character;
        }
    }
    return value;
}

std::string execLine(std::string_view program) {
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    const bool isQuoted = program.find_first_of(reserved) != std::string_view::npos;
    std::string argument;
    for (const char character : program) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos) {
            argument += '\\';
        } else if (character == '%') {
            argument += '%';
        }
        argument += character;
    }
    return escapedText(isQuoted ? '"' + argument + '"' : argument);
}

std::optional<std::string> execProgram(std::string_view execValue) {
    std::string program;
    bool isQuoted = false;
    bool isEscaped = false;
    bool isAfterPercent = false;
    for (const char character : trimmed(execValue)) {
        if (isAfterPercent) {
            // Any other letter is a field code, which stands for no part of a program's name.
            program += character == '%' ? "%" : "";
            isAfterPercent = false;
        } else if (isEscaped) {
            program += character;
            isEscaped = false;
        } else if (character == '\\') {
            isEscaped = true;
        } else if (character == '"') {
            isQuoted = !isQuoted;
        } else if (character == '%') {
            isAfterPercent = true;
        } else if (!isQuoted && (character == ' ' || character == '\t')) {
            break;
        } else {
            program += character;
        }
    }
    if (isQuoted || program.empty()) {
        return std::nullopt;
    }
    return program;
}

} // namespace vigilo::platform
