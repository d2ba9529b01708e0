// MP3 files for tests: encoded by the usual tools, or written byte by byte where no tool makes what
// is wanted.
#pragma once

#include "tests/support/recording.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// Noise that never repeats, so that each part of it can be told from every other. seed: another
/// number gives another noise.
Samples noise(double seconds, int rate = 44100, int channels = 2, unsigned seed = 1);

/// Writes samples as a WAV file.
void writeWav(const std::string& path, const Samples& samples, int rate = 44100, int channels = 2);

/// Encodes noise with lame; arguments as for lame, e.g. {"-b", "128"}. False when lame fails.
bool encodeNoise(const std::string& path, double seconds, const std::vector<std::string>& arguments,
                 int rate = 44100, int channels = 2, unsigned seed = 1);

/// Decodes a file with the mpg123 program.
Samples decodeWithMpg123(const std::string& path);

/// One frame of layer III (or another layer) that holds silence.
struct FrameSpec {
    int version = 1;      ///< 1, 2 or 25
    int layer = 3;        ///< 1 to 3
    int bitRateIndex = 9; ///< 128 kb/s in MPEG-1 layer III
    int sampleRateIndex = 0;
    bool padded = false;
    bool mono = false;
    bool crc = false;
    std::size_t size = 417; ///< bytes in all
};
std::string frameBytes(const FrameSpec& spec);
std::string repeated(const std::string& bytes, std::size_t count);

/// Bytes without meaning, always the same for a seed.
std::string randomBytes(std::size_t count, unsigned seed = 1);

std::string bigEndian(std::uint32_t number, int bytes = 4);
std::string littleEndian(std::uint32_t number, int bytes = 4);

/// A frame that describes the file, in a frame of this kind, which must have room for it.
std::string xingFrame(const FrameSpec& spec, const std::string& name, std::uint32_t frames,
                      std::uint32_t bytes, int delay = -1, int padding = -1);
std::string vbriFrame(const FrameSpec& spec, std::uint32_t frames, std::uint32_t bytes);

/// Tags. Texts of the fields are bytes as they shall stand in the file.
std::string id3v1(const std::string& title, const std::string& artist, const std::string& album,
                  const std::string& year, const std::string& comment, int genre);
/// version: 2, 3 or 4; a frame's body includes its encoding byte. padding: NULs behind the frames.
std::string id3v2(int version, const std::vector<std::pair<std::string, std::string>>& frames,
                  std::size_t padding = 0);
std::string apeTag(const std::vector<std::pair<std::string, std::string>>& items);

} // namespace support
