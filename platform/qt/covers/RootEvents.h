#pragma once

#include <memory>

namespace vigilo::platform {

/// Has the X server tell of every window that comes, goes or changes its place, for as long as
/// somebody wants to know: each such event wakes the program, and the toolkit looks for changes of
/// the displays then. Main thread.
class RootEvents {
public:
    /// The one that is in use already, or else a new one.
    static std::shared_ptr<RootEvents> hear();

    ~RootEvents();
    RootEvents(const RootEvents&) = delete;
    RootEvents& operator=(const RootEvents&) = delete;

private:
    RootEvents();
};

} // namespace vigilo::platform
