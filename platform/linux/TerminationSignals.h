#pragma once

#include "platform/linux/FileDescriptor.h"

namespace vigilo::platform {

/// Turns SIGTERM, SIGINT and SIGHUP into something to read on a descriptor. A signal that was
/// ignored when the program started (as `nohup` does) stays ignored; one that was blocked, which
/// nobody means for a program of its own, is let through. One at a time in a process.
class TerminationSignals {
public:
    TerminationSignals();
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

    /// Becomes readable when a signal has come in.
    int descriptor() const { return readEnd_.number(); }

private:
    FileDescriptor readEnd_;
    FileDescriptor writeEnd_;
};

} // namespace vigilo::platform
