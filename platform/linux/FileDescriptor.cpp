#include "platform/linux/FileDescriptor.h"

#include <unistd.h>

namespace vigilo::platform {

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

} // namespace vigilo::platform
