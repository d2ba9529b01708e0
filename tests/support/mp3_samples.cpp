#include "tests/support/mp3_samples.h"

#include "tests/support/process.h"

#include <cmath>

namespace support {

namespace {

class RandomNumbers {
public:
    explicit RandomNumbers(unsigned seed) : state_(seed * 2654435761U + 1) {}
    std::uint32_t next() {
        state_ ^= state_ << 13U;
        state_ ^= state_ >> 17U;
        state_ ^= state_ << 5U;
        return state_;
    }

private:
    std::uint32_t state_;
};

void put(std::string& bytes, std::size_t at, const std::string& part) {
    bytes.replace(at, part.size(), part);
}

std::size_t sideInfoSize(const FrameShape& shape) {
    return shape.version == 1 ? (shape.mono ? 17 : 32) : (shape.mono ? 9 : 17);
}

std::string padTo(std::string text, std::size_t size) {
    text.resize(size, '\0');
    return text;
}

std::string syncSafe(std::size_t number) {
    std::string bytes;
    for (const unsigned shift : {21U, 14U, 7U, 0U}) {
        bytes += static_cast<char>(number >> shift & 0x7FU);
    }
    return bytes;
}

} // namespace

Samples noise(double seconds, int rate, int channels, unsigned seed) {
    RandomNumbers random(seed);
    Samples samples(static_cast<std::size_t>(std::lround(seconds * rate)) *
                    static_cast<std::size_t>(channels));
    double smooth = 0;
    for (std::int16_t& sample : samples) {
        const double next = static_cast<double>(random.next() % 20001) - 10000;
        smooth = 0.5 * smooth + 0.5 * next;
        sample = static_cast<std::int16_t>(std::lround(smooth));
    }
    return samples;
}

void writeWav(const std::string& path, const Samples& samples, int rate, int channels) {
    const std::uint32_t size = static_cast<std::uint32_t>(samples.size()) * 2;
    const auto unsignedRate = static_cast<std::uint32_t>(rate);
    const auto frame = static_cast<std::uint32_t>(channels) * 2;
    std::string bytes = "RIFF" + littleEndian(36 + size) + "WAVEfmt " + littleEndian(16) +
                        littleEndian(1, 2) + littleEndian(frame / 2, 2) +
                        littleEndian(unsignedRate) + littleEndian(unsignedRate * frame) +
                        littleEndian(frame, 2) + littleEndian(16, 2) + "data" + littleEndian(size);
    for (const std::int16_t sample : samples) {
        bytes += littleEndian(static_cast<std::uint16_t>(sample), 2);
    }
    writeFile(path, bytes);
}

bool encodeNoise(const std::string& path, double seconds, const std::vector<std::string>& arguments,
                 int rate, int channels, unsigned seed) {
    const std::string wav = path + ".wav";
    writeWav(wav, noise(seconds, rate, channels, seed), rate, channels);
    std::vector<std::string> command = {"lame", "--quiet"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    command.insert(command.end(), {wav, path});
    return run(command) == 0;
}

Samples decodeWithMpg123(const std::string& path) {
    const TemporaryFolder folder;
    Process::Options options;
    options.outputFile = folder.file("samples");
    run({"mpg123", "-q", "-s", path}, options);
    return samplesFromFile(options.outputFile);
}

std::string frameBytes(const FrameShape& shape) {
    const unsigned version = shape.version == 1 ? 3 : shape.version == 2 ? 2 : 0;
    const auto layer = static_cast<unsigned>(4 - shape.layer);
    const auto bitRate = static_cast<unsigned>(shape.bitRateIndex);
    const auto sampleRate = static_cast<unsigned>(shape.sampleRateIndex);
    const unsigned header = 0xFFE00000U | version << 19U | layer << 17U |
                            (shape.crc ? 0U : 1U << 16U) | bitRate << 12U | sampleRate << 10U |
                            (shape.padded ? 1U << 9U : 0U) | (shape.mono ? 3U << 6U : 0U);
    return padTo(bigEndian(header), shape.size);
}

std::string repeated(const std::string& bytes, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += bytes;
    }
    return result;
}

std::string randomBytes(std::size_t count, unsigned seed) {
    RandomNumbers random(seed);
    std::string bytes(count, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random.next() >> 8U);
    }
    return bytes;
}

std::string bigEndian(std::uint32_t number, int bytes) {
    std::string result;
    for (int i = bytes - 1; i >= 0; --i) {
        result += static_cast<char>(number >> static_cast<unsigned>(8 * i) & 0xFFU);
    }
    return result;
}

std::string littleEndian(std::uint32_t number, int bytes) {
    const std::string big = bigEndian(number, bytes);
    return {big.rbegin(), big.rend()};
}

std::string xingFrame(const FrameShape& shape, const std::string& name, std::uint32_t frames,
                      std::uint32_t bytes, int delay, int padding) {
    std::string frame = frameBytes(shape);
    const std::size_t at = 4 + sideInfoSize(shape);
    put(frame, at, name + bigEndian(3) + bigEndian(frames) + bigEndian(bytes));
    if (delay >= 0) {
        put(frame, at + 16, "LAME3.100");
        put(frame, at + 16 + 21,
            bigEndian(
                static_cast<std::uint32_t>(delay) << 12U | static_cast<std::uint32_t>(padding), 3));
    }
    return frame;
}

std::string vbriFrame(const FrameShape& shape, std::uint32_t frames, std::uint32_t bytes) {
    std::string frame = frameBytes(shape);
    put(frame, 36,
        "VBRI" + bigEndian(1, 2) + bigEndian(0, 2) + bigEndian(75, 2) + bigEndian(bytes) +
            bigEndian(frames));
    return frame;
}

std::string id3v1(const std::string& title, const std::string& artist, const std::string& album,
                  const std::string& year, const std::string& comment, int genre) {
    return "TAG" + padTo(title, 30) + padTo(artist, 30) + padTo(album, 30) + padTo(year, 4) +
           padTo(comment, 30) + static_cast<char>(genre);
}

std::string id3v2(int version, const std::vector<std::pair<std::string, std::string>>& frames,
                  std::size_t padding) {
    std::string body;
    for (const auto& [id, text] : frames) {
        const auto size = static_cast<std::uint32_t>(text.size());
        body += id;
        body += version == 2   ? bigEndian(size, 3)
                : version == 3 ? bigEndian(size) + std::string(2, '\0')
                               : syncSafe(size) + std::string(2, '\0');
        body += text;
    }
    body.append(padding, '\0');
    return std::string("ID3") + static_cast<char>(version) + std::string(2, '\0') +
           syncSafe(body.size()) + body;
}

std::string apeTag(const std::vector<std::pair<std::string, std::string>>& items) {
    std::string body;
    for (const auto& [key, text] : items) {
        body += littleEndian(static_cast<std::uint32_t>(text.size())) + littleEndian(0);
        body += key;
        body += '\0';
        body += text;
    }
    const auto edge = [&](std::uint32_t flags) {
        return "APETAGEX" + littleEndian(2000) +
               littleEndian(static_cast<std::uint32_t>(body.size()) + 32) +
               littleEndian(static_cast<std::uint32_t>(items.size())) + littleEndian(flags) +
               std::string(8, '\0');
    };
    return edge(0xA0000000) + body + edge(0x80000000);
}

} // namespace support
