#include "platform/linux/DescriptorReserve.h"

#include "platform/linux/FileDescriptor.h"

#include <utility>
#include <vector>

#include <sys/eventfd.h>

namespace vigilo::platform {

struct DescriptorReserve::Kept {
    explicit Kept(std::size_t wanted) : count(wanted) { fill(); }

    void fill() {
        while (descriptors.size() < count) {
            // The cheapest kind that there is; nobody uses it.
            FileDescriptor descriptor(eventfd(0, EFD_CLOEXEC));
            if (!descriptor) {
                return;
            }
            descriptors.push_back(std::move(descriptor));
        }
    }

    std::size_t count;
    std::vector<FileDescriptor> descriptors;
};

DescriptorReserve::DescriptorReserve(std::size_t count) : kept_(std::make_shared<Kept>(count)) {}

DescriptorReserve::Loan DescriptorReserve::lend() {
    if (Loan loan = loan_.lock()) {
        return loan;
    }
    kept_->descriptors.clear();
    Loan loan(kept_.get(), [kept = kept_](void*) { kept->fill(); });
    loan_ = loan;
    return loan;
}

} // namespace vigilo::platform
