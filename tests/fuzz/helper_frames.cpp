#include "helpers/authenticate/Frames.h"
#include "tests/fuzz/input.h"

using namespace vigilo;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = fuzz::text(data, size);
    authentication::FrameReader whole;
    authentication::FrameReader split;
    whole.add(bytes);
    // The same bytes in two pieces are the same frames.
    const std::size_t middle = size / 2;
    split.add(bytes.substr(0, middle));
    std::string fromSplit;
    const auto drain = [](authentication::FrameReader& reader, std::string& into) {
        while (const auto frame = reader.next()) {
            fuzz::expect(frame->text.size() <= authentication::longestText);
            into += authentication::encode(frame->kind, frame->text);
        }
    };
    drain(split, fromSplit);
    split.add(bytes.substr(middle));
    drain(split, fromSplit);
    std::string fromWhole;
    drain(whole, fromWhole);
    fuzz::expect(fromSplit == fromWhole);
    fuzz::expect(split.isBroken() == whole.isBroken());
    fuzz::expect(bytes.substr(0, fromWhole.size()) == fromWhole);
    return 0;
}
