#pragma once

#include <memory>

#include <QObject>

namespace vigilo::platform {

/// Tells when KWin may have drawn unmanaged windows of X11 programs (menus, notifications) above
/// the covers. It has both in one layer, puts each window that comes on top there, and all
/// unmanaged ones whenever one of them is moved or restacked. A thread of its own listens to the
/// session's X server: one that does not answer holds nobody up. Main thread.
class UnmanagedWatch : public QObject {
    Q_OBJECT

public:
    /// The one that is in use already, or else a new one; none in a session without an X server. It
    /// tells once at its start, for what came before.
    static std::shared_ptr<UnmanagedWatch> begin();

    ~UnmanagedWatch() override;

Q_SIGNALS:
    /// Each cover is to be raised now.
    void mayOvertake();

    /// Each cover was raised, which may have moved the keyboard.
    void wereRaised();

private:
    UnmanagedWatch();

    struct State;
    static void work(State& state);

    std::shared_ptr<State> state_;
};

} // namespace vigilo::platform
