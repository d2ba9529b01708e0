// The kind of a file.
#include "engine/reading/file_kind.h"
#include "tests/fuzz/memory_file.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto kind = zvonivec::detectFileKind(zvonivec::fuzz::fileOf(data, size));
    const bool isMp3 = kind.extension == "mp3";
    if (isMp3 != kind.stream.has_value() ||
        (isMp3 && (kind.stream->begin > kind.stream->end || kind.stream->end > size))) {
        std::abort();
    }
    return 0;
}
