#pragma once

namespace vigilo::platform {

/// Does without the session bus, in this process and its children, when there is one that takes the
/// connection but says nothing for two seconds: the libraries would wait for it for ever, and no
/// window would come. Before any of them looks for the bus. Main thread, as the only one.
void leaveHungSessionBus();

} // namespace vigilo::platform
