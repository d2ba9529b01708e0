// MP3 files for tests. They are encoded by common tools, or written byte by byte when no tool makes
// such a file.
#pragma once

#include "tests/support/recording.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// Returns noise that never repeats, so that each part of it is unique. Another seed gives other
/// noise.
Samples noise(double seconds, int rate = 44100, int channels = 2, unsigned seed = 1);

/// Writes samples as a WAV file.
void writeWav(const std::string& path, const Samples& samples, int rate = 44100, int channels = 2);

/// Encodes noise with lame. The arguments are lame's, for example {"-b", "128"}. Returns false when
/// lame fails.
bool encodeNoise(const std::string& path, double seconds, const std::vector<std::string>& arguments,
                 int rate = 44100, int channels = 2, unsigned seed = 1);

/// Decodes a file with the mpg123 program.
Samples decodeWithMpg123(const std::string& path);

/// The shape of a frame.
struct FrameShape {
    int version = 1;      ///< of MPEG: 1, 2 or 25 for 2.5
    int layer = 3;        ///< 1 to 3
    int bitRateIndex = 9; ///< 128 kb/s in MPEG-1 layer III
    int sampleRateIndex = 0;
    bool padded = false;
    bool mono = false;
    bool crc = false;
    std::size_t size = 417; ///< of the whole frame, in bytes
};
std::string frameBytes(const FrameShape& shape);
std::string repeated(const std::string& bytes, std::size_t count);

/// Returns random bytes, always the same for a seed.
std::string randomBytes(std::size_t count, unsigned seed = 1);

std::string bigEndian(std::uint32_t number, int bytes = 4);
std::string littleEndian(std::uint32_t number, int bytes = 4);

/// Return a frame that describes the file. The frame must have room for the description.
std::string xingFrame(const FrameShape& shape, const std::string& name, std::uint32_t frames,
                      std::uint32_t bytes, int delay = -1, int padding = -1);
std::string vbriFrame(const FrameShape& shape, std::uint32_t frames, std::uint32_t bytes);

/// Return tags. Texts are given as the bytes of the fields in the file.
std::string id3v1(const std::string& title, const std::string& artist, const std::string& album,
                  const std::string& year, const std::string& comment, int genre);
/// The version is 2, 3 or 4. The text of a frame begins with its encoding byte. The padding is a
/// number of zero bytes behind the frames.
std::string id3v2(int version, const std::vector<std::pair<std::string, std::string>>& frames,
                  std::size_t padding = 0);
std::string apeTag(const std::vector<std::pair<std::string, std::string>>& items);

} // namespace support
