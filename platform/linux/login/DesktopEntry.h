#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vigilo::platform {

/// The keys of the group "Desktop Entry" of a desktop file with their values as they stand in the
/// file (Desktop Entry Specification 1.5).
using DesktopEntry = std::map<std::string, std::string, std::less<>>;

/// Reads a desktop file; none when it is not well-formed, by the rules of the strictest desktops:
/// UTF-8, the group first, nothing but groups, keys, comments and empty lines. Of a key that comes
/// twice the last value counts.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text);

/// The value of a text key with its escapes undone; none when there is no such key.
std::optional<std::string> textValue(const DesktopEntry& entry, std::string_view key);

/// The value of a key that is a list of texts; empty when there is no such key.
std::vector<std::string> listValue(const DesktopEntry& entry, std::string_view key);

/// The value of a key that is true or false, also as older desktops write it (1, yes, on); none
/// when there is no such key or it is neither.
std::optional<bool> booleanValue(const DesktopEntry& entry, std::string_view key);

/// A text as the value of a key.
std::string escapedText(std::string_view text);

/// A program's path as the value of the key Exec.
std::string execLine(std::string_view program);

/// The program that the value of a key Exec starts, its quotes and escapes undone; none when the
/// line is empty or a quote is not closed. The value is one that textValue() gave.
std::optional<std::string> execProgram(std::string_view execValue);

} // namespace vigilo::platform
