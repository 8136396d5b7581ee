#include "platform/linux/authentication/SecretText.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <sys/mman.h>

namespace vigilo::platform {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

char* newPage() {
    void* const page = mmap(nullptr, SecretText::capacity, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED) {
        throw std::bad_alloc();
    }
    // The sanitizers make mlock() do nothing.
    mlock2(page, SecretText::capacity, 0);
    madvise(page, SecretText::capacity, MADV_DONTDUMP);
    return static_cast<char*>(page);
}

} // namespace

SecretText::SecretText() : bytes_(newPage(), capacity) {}

SecretText::~SecretText() {
    clear();
    munmap(bytes_.data(), capacity);
}

void SecretText::append(std::string_view utf8) {
    if (utf8.size() <= bytes_.size() - size_) {
        std::copy(utf8.begin(), utf8.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(size_));
        size_ += utf8.size();
    }
}

void SecretText::removeLast() {
    bool isWhole = size_ == 0;
    while (!isWhole) {
        isWhole = !isContinuation(bytes_[size_ - 1]) || size_ == 1;
        bytes_[--size_] = 0;
    }
}

void SecretText::clear() {
    explicit_bzero(bytes_.data(), bytes_.size());
    size_ = 0;
}

std::size_t SecretText::length() const {
    return static_cast<std::size_t>(std::count_if(view().begin(), view().end(),
                                                  [](char byte) { return !isContinuation(byte); }));
}

} // namespace vigilo::platform
