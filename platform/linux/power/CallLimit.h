#pragma once

#include <QDeadlineTimer>

namespace vigilo::platform {

/// What is left of a deadline, as the limit of a call over a bus: in milliseconds, at least 1,
/// since less stands for the library's own.
int millisecondsLeft(const QDeadlineTimer& deadline);

} // namespace vigilo::platform
