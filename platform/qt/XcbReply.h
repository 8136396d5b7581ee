#pragma once

#include <cstdlib>
#include <memory>

namespace vigilo::platform {

struct FreeXcbReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// What the X server has answered; null when it has answered with an error.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;

} // namespace vigilo::platform
