#include "engine/reading/tag_places.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zvonivec {

namespace {

using Bytes = std::span<const std::uint8_t>;

/// Most tags at each end. Files that consist of tags end the search sooner.
constexpr int MOST_TAGS = 16;

/// Length of the header and of the footer of an APE tag.
constexpr std::uint64_t APE_EDGE = 32;

bool hasAt(Bytes bytes, std::size_t offset, std::string_view text) {
    return bytes.size() >= offset + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

std::uint32_t littleEndian32(Bytes bytes, std::size_t offset) {
    return std::uint32_t{bytes[offset]} | std::uint32_t{bytes[offset + 1]} << 8U |
           std::uint32_t{bytes[offset + 2]} << 16U | std::uint32_t{bytes[offset + 3]} << 24U;
}

std::uint64_t syncSafe32(Bytes bytes, std::size_t offset) {
    return std::uint64_t{bytes[offset]} << 21U | std::uint64_t{bytes[offset + 1]} << 14U |
           std::uint64_t{bytes[offset + 2]} << 7U | std::uint64_t{bytes[offset + 3]};
}

/// Reads small pieces of a file.
class Pieces {
public:
    explicit Pieces(const FileReader& file) : file_(file) {}

    /// Returns bytes that end at an offset, fewer at the start of the file and on errors.
    Bytes before(std::uint64_t end, std::size_t wanted) {
        return from(end - std::min<std::uint64_t>(end, wanted), wanted);
    }
    Bytes from(std::uint64_t offset, std::size_t wanted) {
        const Bytes all(piece_);
        const std::size_t count = file_.readAt(offset, std::span(piece_).first(wanted)).value_or(0);
        return all.first(count);
    }

private:
    const FileReader& file_;
    std::array<std::uint8_t, 32> piece_{};
};

/// Returns the tag that ends at an offset, of size 0 when none does. begin: where the audio begins.
TagPlace tagBefore(Pieces& pieces, std::uint64_t begin, std::uint64_t end) {
    using Kind = TagPlace::Kind;
    const std::uint64_t room = end - begin;
    if (room >= 128 && hasAt(pieces.from(end - 128, 3), 0, "TAG")) {
        return {Kind::id3v1, end - 128, 128};
    }
    if (room < APE_EDGE) {
        return {};
    }
    const Bytes last = pieces.before(end, APE_EDGE);
    if (last.size() < APE_EDGE) {
        return {};
    }
    TagPlace place;
    if (constexpr std::uint32_t hasHeader = 0x80000000; hasAt(last, 0, "APETAGEX")) {
        place.kind = Kind::ape;
        place.size = std::uint64_t{littleEndian32(last, 12)} +
                     ((littleEndian32(last, 20) & hasHeader) != 0 ? APE_EDGE : 0);
    } else if (hasAt(last, 22, "3DI")) {
        place.kind = Kind::id3v2;
        place.size = syncSafe32(last, 28) + 20;
    } else if (hasAt(last, 23, "LYRICS200")) {
        place.kind = Kind::lyrics3;
        std::uint64_t size = 0;
        for (const std::uint8_t digit : last.subspan(17, 6)) {
            if (digit < '0' || digit > '9') {
                return {};
            }
            size = 10 * size + (digit - '0');
        }
        place.size = size + 15;
    }
    if (place.size > room) {
        return {};
    }
    place.begin = end - place.size;
    return place;
}

} // namespace

std::uint64_t leadingTagSize(Bytes bytes) {
    if (bytes.size() >= 10 && hasAt(bytes, 0, "ID3") && bytes[3] != 0xFF && bytes[4] != 0xFF &&
        (bytes[6] | bytes[7] | bytes[8] | bytes[9]) < 0x80) {
        const bool footer = (bytes[5] & 0x10U) != 0;
        return 10 + syncSafe32(bytes, 6) + (footer ? 10 : 0);
    }
    constexpr std::uint32_t isHeader = 0x20000000;
    if (bytes.size() >= APE_EDGE && hasAt(bytes, 0, "APETAGEX") &&
        (littleEndian32(bytes, 20) & isHeader) != 0) {
        return APE_EDGE + littleEndian32(bytes, 12);
    }
    return 0;
}

TagPlaces findTags(const FileReader& file) {
    Pieces pieces(file);
    TagPlaces places;
    for (int i = 0; i < MOST_TAGS; ++i) {
        const Bytes bytes = pieces.from(places.begin, APE_EDGE);
        const std::uint64_t size = leadingTagSize(bytes);
        if (size == 0) {
            break;
        }
        const std::uint64_t left = file.size() - places.begin;
        places.tags.push_back({bytes[0] == 'I' ? TagPlace::Kind::id3v2 : TagPlace::Kind::ape,
                               places.begin, std::min(size, left)});
        if (size >= left) {
            break; // claims more bytes than the file has, so the audio may begin within it
        }
        places.begin += size;
    }
    places.end = file.size();
    for (int i = 0; i < MOST_TAGS; ++i) {
        const TagPlace tag = tagBefore(pieces, places.begin, places.end);
        if (tag.size == 0) {
            break;
        }
        places.tags.push_back(tag);
        places.end = tag.begin;
    }
    return places;
}

} // namespace zvonivec
