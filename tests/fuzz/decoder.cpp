// The decoding of a whole file, and a seek in it.
#include "engine/decoding/mp3_decoder.h"
#include "tests/fuzz/memory_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto file = zvonivec::fuzz::fileOf(data, size);
    const auto kind = zvonivec::detectFileKind(file);
    if (!kind.stream) {
        return 0;
    }
    zvonivec::FileMeasure measure(file, *kind.stream);
    zvonivec::Mp3Decoder decoder(file, *kind.stream, measure);
    for (const std::int64_t start : {std::int64_t{0}, std::int64_t{5000}}) {
        if (decoder.seek(start)) {
            return 0;
        }
        while (decoder.read().result == zvonivec::Mp3Decoder::Result::samples) {
        }
    }
    return 0;
}
