#pragma once

#include <set>
#include <string>

namespace vigilo::platform {

/// Which of the toolkit's platforms the program is to run on, the best first with ";" between them,
/// as its switch "-platform" takes them; empty to leave the choice to the toolkit.
///
/// `compositorInterfaces` is what the session's Wayland compositor offers; `hasXServer` is whether
/// the environment names an X server.
std::string platformChoice(const std::set<std::string>& compositorInterfaces, bool hasXServer);

} // namespace vigilo::platform
