// The tags of a file.
#include "engine/tags/tags.h"
#include "tests/fuzz/memory_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static_cast<void>(zvonivec::readTags(zvonivec::fuzz::fileOf(data, size)));
    return 0;
}
