#include "agents/AgentClassification.h"
#include "tests/fuzz/input.h"

using namespace vigilo;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string runtime = friendlyRuntime(fuzz::text(data, size));
    fuzz::expect(!runtime.empty());
    const char unit = runtime.back();
    fuzz::expect(unit == 'h' || unit == 'm' || unit == 's');
    fuzz::expect(runtime.find_first_not_of("-0123456789dhms ") == std::string::npos);
    return 0;
}
