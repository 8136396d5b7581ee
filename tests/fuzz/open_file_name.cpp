#include "platform/linux/processes/ProcessListing.h"
#include "tests/fuzz/input.h"

using namespace vigilo;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view output = fuzz::text(data, size);
    const auto name = platform::parseOpenFileName(output);
    if (name) {
        fuzz::expect(fuzz::refersInto(*name, output));
        fuzz::expect(name->find('\n') == std::string_view::npos);
        fuzz::expect(name->data() > output.data() && name->data()[-1] == 'n');
    }
    return 0;
}
