#pragma once

#include <cstddef>
#include <vector>

#include <sys/types.h>

namespace vigilo::bench {

/// Processes that do nothing, so that the machine has a certain number of them; some are agents.
/// They end with it.
class Crowd {
public:
    /// Brings the machine to `total` processes, `agents` of them ours to find.
    Crowd(std::size_t total, std::size_t agents);
    ~Crowd();
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

private:
    std::vector<pid_t> members_;
};

} // namespace vigilo::bench
