#include "text/Path.h"

namespace vigilo {

std::string_view lastPathComponent(std::string_view path) {
    while (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path.substr(path.rfind('/') + 1);
}

} // namespace vigilo
