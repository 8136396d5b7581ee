#pragma once

namespace vigilo::platform {

/// Puts right what this process has from whoever started it and could not work with: signals that
/// are ignored, standard descriptors that are closed. Before anything is opened; main thread, as
/// the only one.
void settleInheritedState();

} // namespace vigilo::platform
