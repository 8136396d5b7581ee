#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vigilo::platform {

/// One line of the output of `ps -axo pid=,etime=,%cpu=,command=`; refers into the listing's text.
struct ListedProcess {
    std::int64_t pid = 0;
    std::string_view elapsed;
    double cpuPercent = 0;
    std::string_view command;

    bool operator==(const ListedProcess&) const = default;
};

/// The readable lines of a listing, in order; lines without four columns or with unreadable numbers
/// are left out. A listing that is not UTF-8 gives nothing. Any bytes, any thread.
std::vector<ListedProcess> parseProcessListing(std::string_view listing);

/// The first name field of the output of `lsof -Fn`, possibly empty; none without one or when the
/// output is not UTF-8. Any bytes, any thread.
std::optional<std::string_view> parseOpenFileName(std::string_view output);

} // namespace vigilo::platform
