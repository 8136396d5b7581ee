#pragma once

#include <cstddef>
#include <memory>

namespace vigilo::platform {

/// Descriptors kept back for what has to come up even when the process has no others left. One
/// thread.
class DescriptorReserve {
public:
    /// While it or a copy of it lives, the reserve is free for whoever needs descriptors.
    using Loan = std::shared_ptr<void>;

    /// Keeps `count` descriptors, or fewer where so many cannot be had.
    explicit DescriptorReserve(std::size_t count);

    /// Frees the reserve. When the last loan is gone, as many as can be had are kept back again. A
    /// loan may outlive the reserve.
    Loan lend();

private:
    struct Kept;

    std::shared_ptr<Kept> kept_;
    std::weak_ptr<void> loan_;
};

} // namespace vigilo::platform
