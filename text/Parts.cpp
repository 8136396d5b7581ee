#include "text/Parts.h"

#include <algorithm>
#include <cstddef>

namespace vigilo {

std::vector<std::string_view> parts(std::string_view text, char separator) {
    std::vector<std::string_view> list;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(separator), text.size());
        if (length > 0) {
            list.push_back(text.substr(0, length));
        }
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return list;
}

} // namespace vigilo
