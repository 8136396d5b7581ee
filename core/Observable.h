#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace vigilo {

/// An object whose published properties announce each change to observers before it is stored.
/// Main thread only.
class Observable {
public:
    /// Keeps an observer subscribed for as long as it lives; may outlive the observed object.
    class Observation {
    public:
        Observation() = default;
        Observation(Observation&&) = default;
        Observation& operator=(Observation&& other) noexcept;
        ~Observation();

    private:
        friend class Observable;
        struct Registry;
        Observation(std::weak_ptr<Registry> registry, std::size_t key);
        void cancel();

        std::weak_ptr<Registry> registry_;
        std::size_t key_ = 0;
    };

    Observable();
    virtual ~Observable();
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;

    /// Calls `observer` before every change of a published property, as long as the returned
    /// observation lives. The property still has its old value then.
    [[nodiscard]] Observation objectWillChange(std::function<void()> observer);

protected:
    /// A property that announces each write. Reads as its value.
    template <typename Value>
    class Published {
    public:
        Published(Observable& owner, Value value) : owner_(owner), value_(std::move(value)) {}

        const Value& operator()() const { return value_; }

        void operator=(Value value) {
            owner_.announceChange();
            value_ = std::move(value);
        }

    private:
        Observable& owner_;
        Value value_;
    };

private:
    void announceChange();

    std::shared_ptr<Observation::Registry> registry_;
};

} // namespace vigilo
