#include "platform/Menu.h"

#include <algorithm>

namespace vigilo::platform {

namespace {

bool isSameLine(const MenuItem& one, const MenuItem& other) {
    return one.action == other.action && one.isSeparator == other.isSeparator;
}

} // namespace

KeptItems keptItems(std::span<const MenuItem> before, std::span<const MenuItem> after) {
    const std::size_t most = std::min(before.size(), after.size());
    KeptItems kept;
    while (kept.front < most && isSameLine(before[kept.front], after[kept.front])) {
        ++kept.front;
    }
    while (kept.front + kept.back < most &&
           isSameLine(before[before.size() - 1 - kept.back], after[after.size() - 1 - kept.back])) {
        ++kept.back;
    }
    return kept;
}

} // namespace vigilo::platform
