#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vigilo {

/// A real child process that sleeps, or what a test makes of it; killed at the end.
class RealProcess {
public:
    /// Runs `program` with exactly these arguments, the first one being its own name, in `folder`.
    RealProcess(const std::string& program, const std::vector<std::string>& arguments,
                const std::string& folder);
    RealProcess(RealProcess&& other) noexcept;
    RealProcess& operator=(RealProcess&&) = delete;
    ~RealProcess();

    pid_t pid() const { return pid_; }

    /// How many children it has now.
    std::size_t childCount() const;

    /// Kills it and leaves its entry in the process table.
    void becomeZombie() const;

private:
    pid_t pid_;
};

} // namespace vigilo
