// The walk over the frames of a file, with the frame that describes it.
#include "engine/reading/file_kind.h"
#include "engine/reading/file_measure.h"
#include "tests/fuzz/memory_file.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto file = zvonivec::fuzz::fileOf(data, size);
    const auto kind = zvonivec::detectFileKind(file);
    if (!kind.stream) {
        return 0;
    }
    zvonivec::FileMeasure measure(file, *kind.stream);
    const auto check = [&measure] {
        const zvonivec::Measurement found = measure.measurement();
        if (!std::isfinite(found.seconds) || found.seconds < 0 || found.bitRate < 0) {
            std::abort();
        }
    };
    check();
    while (!measure.done()) {
        constexpr std::uint64_t slice = 512;
        measure.walk(slice);
        check();
    }
    for (const std::int64_t frame : {std::int64_t{0}, measure.frames() / 2, measure.frames() - 1}) {
        const auto offset = frame >= 0 ? measure.frameOffset(frame) : std::nullopt;
        if (offset && *offset >= size) {
            std::abort();
        }
    }
    return 0;
}
