#include "platform/linux/processes/ProcessListing.h"
#include "tests/fuzz/input.h"

#include <algorithm>

using namespace vigilo;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view listing = fuzz::text(data, size);
    const auto processes = platform::parseProcessListing(listing);
    const auto lines =
        static_cast<std::size_t>(std::count(listing.begin(), listing.end(), '\n')) + 1;
    fuzz::expect(processes.size() <= lines);
    for (const platform::ListedProcess& process : processes) {
        fuzz::expect(fuzz::refersInto(process.elapsed, listing));
        fuzz::expect(fuzz::refersInto(process.command, listing));
        fuzz::expect(process.command.find('\n') == std::string_view::npos);
        fuzz::expect(!process.elapsed.empty() && !process.command.empty());
    }
    return 0;
}
