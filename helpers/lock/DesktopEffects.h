#pragma once

namespace vigilo {

/// Has KWin load the effects that its settings name, where it runs: the program has taken some of
/// them out and died. Waits for it for a second at most.
void restoreDesktopEffects();

} // namespace vigilo
