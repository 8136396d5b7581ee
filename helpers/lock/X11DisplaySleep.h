#pragma once

namespace vigilo {

/// Switches the displays of an X server off, through its DPMS extension; does nothing where there
/// is no server or no such extension.
void sleepX11Displays();

} // namespace vigilo
