// hostile_files FOLDER COUNT SEED: writes files that begin like music and then go wrong: false
// sizes, cut frames, floods of bytes. Equal arguments give equal files.

#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using support::bigEndian;
using support::FrameShape;
using support::littleEndian;
using support::repeated;

class Maker {
public:
    explicit Maker(std::uint64_t seed) : random_(seed) {}

    /// A file: music with tags around it, or a mere flood of something, damaged in some places.
    std::string file() {
        std::string content = oneIn(8) ? flood() : tagsInFront() + music() + tagsBehind();
        for (std::size_t damages = upTo(4); damages > 0; --damages) {
            damage(content);
        }
        return oneIn(6) ? content + file() : content;
    }

private:
    std::size_t upTo(std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random_);
    }
    bool oneIn(std::size_t chances) { return upTo(chances - 1) == 0; }
    template<class Choices>
    auto oneOf(const Choices& choices) {
        return choices[upTo(std::size(choices) - 1)];
    }
    unsigned seed() { return static_cast<unsigned>(random_()); }
    std::string bytes(std::size_t most) { return support::randomBytes(upTo(most), seed()); }

    /// A number as files state them: right, a little wrong, or absurd.
    std::uint32_t claim(std::size_t truth) {
        const auto right = static_cast<std::uint32_t>(truth);
        const std::array claims{right,       right,
                                right - 1,   right + 1,
                                0U,          1U,
                                right * 2,   0x7FFFFFFFU,
                                0x80000000U, 0xFFFFFFFFU,
                                0x0FFFFFFFU, 0x1000000U,
                                0xFFFFU,     static_cast<std::uint32_t>(seed())};
        return oneOf(claims);
    }

    FrameShape shape() {
        constexpr std::array versions{1, 1, 1, 2, 25};
        constexpr std::array layers{3, 3, 3, 3, 2, 1};
        if (!oneIn(3)) {
            FrameShape plain;
            plain.mono = oneIn(3);
            plain.crc = oneIn(6);
            return plain;
        }
        FrameShape shape{.version = oneOf(versions), .layer = oneOf(layers)};
        shape.bitRateIndex = oneIn(3) ? static_cast<int>(upTo(15)) : 9;
        shape.sampleRateIndex = oneIn(3) ? static_cast<int>(upTo(3)) : 0;
        shape.padded = oneIn(4);
        shape.mono = oneIn(3);
        shape.crc = oneIn(6);
        constexpr std::array sizes{417, 418, 1044, 208, 96, 52, 24, 4, 1441, 5761};
        shape.size =
            static_cast<std::size_t>(shape.bitRateIndex == 9 && !oneIn(6) ? 417 : oneOf(sizes));
        return shape;
    }

    /// Frames that agree, with silence or with noise as their sound, and an info frame.
    std::string music() {
        const FrameShape kind = shape();
        const std::size_t count = oneIn(10) ? upTo(1500) : upTo(200);
        std::string all;
        if (kind.size >= 208 && oneIn(2)) {
            constexpr std::array names{"Xing", "Info"};
            all += oneIn(4) ? support::vbriFrame(kind, claim(count), claim(count * kind.size))
                            : support::xingFrame(kind, oneOf(names), claim(count),
                                                 claim(count * kind.size),
                                                 oneIn(2) ? static_cast<int>(upTo(4095)) : -1,
                                                 static_cast<int>(upTo(4095)));
        }
        const std::string silent = support::frameBytes(kind);
        if (oneIn(2)) {
            return all + repeated(silent, count);
        }
        const std::string header = silent.substr(0, 4);
        for (std::size_t i = 0; i < std::min<std::size_t>(count, 1000); ++i) {
            all += header + support::randomBytes(silent.size() - 4, seed());
        }
        return all;
    }

    std::string text() {
        const std::string alphabet(1, static_cast<char>(upTo(oneIn(8) ? 255 : 3)));
        constexpr std::array starts{"", "\xFF\xFE", "\xFE\xFF", "cze", "(17)", "(((", "&&&", "<b>"};
        return alphabet + oneOf(starts) + bytes(oneIn(20) ? 300000 : 60);
    }

    std::string tagsInFront() {
        std::string all;
        while (oneIn(2)) {
            all += id3v2();
        }
        return all;
    }

    /// A tag whose frames and whose own size may be untrue, with tags within.
    std::string id3v2() {
        constexpr std::array names{"TIT2", "TPE1", "TALB",     "TCON", "COMM", "TYER", "TDRC",
                                   "APIC", "GEOB", "\0\0\0\0", "TT2",  "ULT",  "XXXX"};
        std::vector<std::pair<std::string, std::string>> frames;
        for (std::size_t count = upTo(oneIn(20) ? 3000 : 12); count > 0; --count) {
            frames.emplace_back(oneOf(names), oneIn(15) ? std::string("ID3") + bytes(40) : text());
        }
        std::string tag = support::id3v2(static_cast<int>(oneIn(8) ? upTo(255) : 2 + upTo(2)),
                                         frames, oneIn(4) ? upTo(5000) : 0);
        if (oneIn(3)) {
            tag[5] = static_cast<char>(seed()); // flags: unsynchronised, extended, experimental
        }
        if (oneIn(4)) {
            tag.replace(6, 4, bigEndian(claim(tag.size())));
        }
        for (std::size_t damages = oneIn(2) ? upTo(10) : 0; damages > 0; --damages) {
            tag[upTo(tag.size() - 1)] = static_cast<char>(seed());
        }
        return tag;
    }

    std::string tagsBehind() {
        std::string all;
        if (oneIn(3)) {
            std::vector<std::pair<std::string, std::string>> items;
            constexpr std::array keys{"Title", "Artist", "Album", "Year", "", "title", "Cover"};
            for (std::size_t count = upTo(oneIn(20) ? 5000 : 8); count > 0; --count) {
                items.emplace_back(oneOf(keys), bytes(oneIn(20) ? 200000 : 40));
            }
            std::string tag = support::apeTag(items);
            if (oneIn(2)) {
                const std::size_t field = tag.size() - 32 + 8 + 4 * upTo(3);
                tag.replace(field, 4, littleEndian(claim(tag.size())));
            }
            all += tag;
        }
        if (oneIn(3)) {
            all += support::id3v1(bytes(30), bytes(30), bytes(30), bytes(4), bytes(30),
                                  static_cast<int>(upTo(255)));
        }
        return all;
    }

    /// Something in masses.
    std::string flood() {
        const std::size_t size = oneIn(10) ? upTo(2U << 20U) : upTo(100000);
        const std::string unit = std::array<std::function<std::string()>, 7>{
            [] { return std::string("\xFF"); },
            [] { return std::string(1, '\0'); },
            [] { return std::string("\xFF\xFB\x90\x04"); },
            [] { return std::string("\xFF\xFB\x00\x04", 4); },
            [this] { return id3v2().substr(0, 10 + upTo(40)); },
            [this] { return support::frameBytes(shape()).substr(0, 4 + upTo(60)); },
            [this] { return bytes(3000) + "\xFF"; }}[upTo(6)]();
        return unit.empty() ? bytes(size) : repeated(unit, 1 + size / unit.size());
    }

    void damage(std::string& content) {
        if (content.empty()) {
            return;
        }
        const std::size_t place = upTo(content.size() - 1);
        const std::size_t length = upTo(std::min<std::size_t>(content.size() - place, 5000));
        switch (upTo(7)) {
        case 0:
            content.resize(place);
            break;
        case 1:
            content.erase(place, length);
            break;
        case 2:
            content.insert(place, bytes(5000));
            break;
        case 3:
            content.insert(place, content.substr(place, length));
            break;
        case 4:
            content.replace(place, std::min<std::size_t>(4, content.size() - place),
                            bigEndian(claim(content.size())));
            break;
        case 5:
            content.insert(place, id3v2());
            break;
        default:
            for (std::size_t flips = upTo(200); flips > 0; --flips) {
                char& byte = content[upTo(content.size() - 1)];
                byte = static_cast<char>(byte ^ (1 << upTo(7)));
            }
            break;
        }
    }

    std::mt19937_64 random_;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: hostile_files FOLDER COUNT SEED\n", stderr);
        return 2;
    }
    const unsigned long long count = std::strtoull(argv[2], nullptr, 10);
    const unsigned long long seed = std::strtoull(argv[3], nullptr, 10);
    for (unsigned long long i = 0; i < count; ++i) {
        std::array<char, 32> name{};
        std::snprintf(name.data(), name.size(), "/%05llu.mp3", i);
        support::writeFile(argv[1] + std::string(name.data()), Maker(seed * 1000003 + i).file());
    }
    return 0;
}
