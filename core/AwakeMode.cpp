#include "core/AwakeMode.h"

#include "platform/Fatal.h"

namespace vigilo {

namespace {

struct Row {
    AwakeMode mode;
    std::string_view rawValue;
    std::string_view title;
    std::string_view icon;
};

constexpr std::array rows{
    Row{AwakeMode::visible, "visible", "Stay Visible", "rectangle.on.rectangle"},
    Row{AwakeMode::agentLock, "agentLock", "Agent Lock", "eye.slash.fill"},
    Row{AwakeMode::appleLock, "appleLock", "Apple Lock", "lock.fill"},
};

const Row& row(AwakeMode mode) {
    for (const Row& candidate : rows) {
        if (candidate.mode == mode) {
            return candidate;
        }
    }
    fatal("an AwakeMode outside its enumeration");
}

} // namespace

std::string_view rawValue(AwakeMode mode) {
    return row(mode).rawValue;
}

std::optional<AwakeMode> awakeMode(std::string_view rawValue) {
    for (const Row& candidate : rows) {
        if (candidate.rawValue == rawValue) {
            return candidate.mode;
        }
    }
    return std::nullopt;
}

std::string_view title(AwakeMode mode) {
    return row(mode).title;
}

std::string_view icon(AwakeMode mode) {
    return row(mode).icon;
}

} // namespace vigilo
