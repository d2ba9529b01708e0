#include "bench/files.h"

#include "tests/support/mp3_samples.h"

#include <fcntl.h>
#include <fstream>
#include <unistd.h>

namespace bench {

void writeFrames(const std::string& path, std::uint64_t megabytes, bool described) {
    using support::FrameShape;
    const FrameShape plain{.bitRateIndex = 9, .size = 417};
    const FrameShape padded{.bitRateIndex = 9, .padded = true, .size = 418};
    const FrameShape rich{.bitRateIndex = 11, .size = 626};
    constexpr std::size_t rounds = 500;
    constexpr std::uint32_t framesInRound = 3;
    const std::string block = support::repeated(
        support::frameBytes(plain) + support::frameBytes(padded) + support::frameBytes(rich),
        rounds);
    const std::uint64_t blocks = (megabytes << 20U) / block.size();
    std::ofstream file(path, std::ios::binary);
    if (described) {
        file << support::xingFrame(plain, "Xing",
                                   static_cast<std::uint32_t>(blocks * rounds * framesInRound),
                                   static_cast<std::uint32_t>(blocks * block.size() + plain.size));
    }
    for (std::uint64_t i = 0; i < blocks; ++i) {
        file.write(block.data(), static_cast<std::streamsize>(block.size()));
    }
}

void makeCold(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file >= 0) {
        fsync(file); // pages that aren't on the disk yet can't be dropped
        posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
        close(file);
    }
}

} // namespace bench
