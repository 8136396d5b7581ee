#pragma once

#include <cstdint>
#include <string_view>

namespace vigilo::platform {

/// What a request for a power assertion came to.
struct PowerAssertion {
    std::int32_t status = 0; ///< 0: granted; otherwise why it was refused, an errno value on Linux
    std::uint32_t id = 0;    ///< names the held assertion; meaningful only when granted

    bool operator==(const PowerAssertion&) const = default;
};

/// Holds the machine back from idle sleep while at least one assertion is held.
class PowerAssertions {
public:
    virtual ~PowerAssertions() = default;

    /// Takes an assertion of `type` ("PreventUserIdleSystemSleep") at `level` (255: on), shown to
    /// the user by the system as `name` (UTF-8). Returns within 2 s. Main thread.
    virtual PowerAssertion create(std::string_view type, std::uint32_t level,
                                  std::string_view name) = 0;

    /// Lets go of a granted assertion; an unknown id is ignored. Main thread.
    virtual void release(std::uint32_t id) = 0;
};

} // namespace vigilo::platform
