#include "platform/linux/power/CallLimit.h"

#include <algorithm>
#include <limits>

namespace vigilo::platform {

int millisecondsLeft(const QDeadlineTimer& deadline) {
    constexpr qint64 most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp<qint64>(deadline.remainingTime(), 1, most));
}

} // namespace vigilo::platform
