#include "platform/Fatal.h"

#include <cstdio>
#include <cstdlib>

namespace vigilo {

void fatal(std::string_view message) {
    std::fprintf(stderr, "vigilo: internal error: %.*s\n", static_cast<int>(message.size()),
                 message.data());
    std::abort();
}

} // namespace vigilo
