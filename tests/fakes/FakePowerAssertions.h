#pragma once

#include "platform/PowerAssertions.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace vigilo::fakes {

/// Grants assertions, or refuses with `refusal` while that is not 0; knows what is held.
class FakePowerAssertions : public platform::PowerAssertions {
public:
    struct Request {
        std::string type;
        std::uint32_t level = 0;
        std::string name;
    };

    platform::PowerAssertion create(std::string_view type, std::uint32_t level,
                                    std::string_view name) override {
        requests.push_back({std::string(type), level, std::string(name)});
        if (refusal != 0) {
            return {.status = refusal, .id = 0};
        }
        held.insert(nextId);
        return {.status = 0, .id = nextId++};
    }

    void release(std::uint32_t id) override {
        released.push_back(id);
        held.erase(id);
    }

    std::int32_t refusal = 0;
    std::vector<Request> requests;
    std::vector<std::uint32_t> released;
    std::set<std::uint32_t> held;

private:
    std::uint32_t nextId = 7;
};

} // namespace vigilo::fakes
