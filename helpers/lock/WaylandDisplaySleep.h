#pragma once

namespace vigilo {

/// Switches the outputs of a Wayland compositor off, where it offers wlr-output-power-management.
void sleepWaylandDisplays();

} // namespace vigilo
