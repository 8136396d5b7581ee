#pragma once

#include <memory>

#include <QObject>

namespace vigilo::platform {

/// Keeps keys, buttons and touches from our own windows below the covers: nobody sees what they
/// would do there, such as end the session. One of those windows has the focus for a moment when
/// the desktop gives it, and for the toolkit already when another program asks for it. A menu of
/// ours that is open is closed: it would keep the pointer to itself. Main thread.
class InputBarrier : public QObject {
public:
    /// The one that is in use already, or else a new one. It goes with the last cover that has it.
    static std::shared_ptr<InputBarrier> raise();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    InputBarrier();
};

} // namespace vigilo::platform
