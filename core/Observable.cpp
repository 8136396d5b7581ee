#include "core/Observable.h"

#include <vector>

namespace vigilo {

struct Observable::Observation::Registry {
    std::map<std::size_t, std::function<void()>> observers;
    std::size_t nextKey = 1;
};

Observable::Observation::Observation(std::weak_ptr<Registry> registry, std::size_t key)
    : registry_(std::move(registry)), key_(key) {}

Observable::Observation& Observable::Observation::operator=(Observation&& other) noexcept {
    if (this != &other) {
        cancel();
        registry_ = std::move(other.registry_);
        key_ = other.key_;
    }
    return *this;
}

Observable::Observation::~Observation() {
    cancel();
}

void Observable::Observation::cancel() {
    if (const auto registry = registry_.lock()) {
        registry->observers.erase(key_);
    }
    registry_.reset();
}

Observable::Observable() : registry_(std::make_shared<Observation::Registry>()) {}

Observable::~Observable() = default;

Observable::Observation Observable::objectWillChange(std::function<void()> observer) {
    const std::size_t key = registry_->nextKey++;
    registry_->observers.emplace(key, std::move(observer));
    return Observation(registry_, key);
}

void Observable::announceChange() {
    // An observer may subscribe or cancel while it is told, so walk over a list of keys and look
    // each one up again.
    const auto registry = registry_;
    std::vector<std::size_t> keys;
    keys.reserve(registry->observers.size());
    for (const auto& [key, observer] : registry->observers) {
        keys.push_back(key);
    }
    for (const std::size_t key : keys) {
        const auto found = registry->observers.find(key);
        if (found != registry->observers.end()) {
            const auto observer = found->second;
            observer();
        }
    }
}

} // namespace vigilo
