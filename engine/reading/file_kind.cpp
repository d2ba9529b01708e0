#include "engine/reading/file_kind.h"

#include "engine/reading/frame_run.h"
#include "engine/reading/tag_places.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace zvonivec {

namespace {

using Bytes = std::span<const std::uint8_t>;

/// Bytes of a file's start that its kind is recognised by.
constexpr std::size_t HEAD = 4096;
/// Distance after the tags, in bytes, up to which a run of PROVING_RUN frames is enough.
constexpr std::uint64_t NEAR = std::uint64_t{64} << 10U;
/// Distance up to which frames are searched for at all.
constexpr std::uint64_t FAR = std::uint64_t{3} << 20U;
/// Bytes of the file that are searched at a time.
constexpr std::size_t BLOCK = std::size_t{64} * 1024;

/// Frames in a row that prove a stream at a distance. The more bytes are searched, the more likely
/// is a run by chance, or a short sound within a file of another kind.
int provingRun(std::uint64_t distance) {
    return distance <= NEAR ? PROVING_RUN : PROVING_RUN + static_cast<int>(distance / NEAR);
}

bool hasAt(Bytes bytes, std::size_t offset, std::string_view text) {
    return bytes.size() >= offset + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

struct Signature {
    std::size_t offset;
    std::string_view bytes;
    std::string_view extension;
};

using namespace std::string_view_literals;

/// Kinds that are certain from their first bytes. MPEG frames within such files don't count.
constexpr std::array STRONG_SIGNATURES = {
    Signature{8, "WAVE"sv, "wav"},
    Signature{8, "AVI "sv, "avi"},
    Signature{0, "OggS"sv, "ogg"},
    Signature{0, "fLaC"sv, "flac"},
    Signature{4, "ftypM4A"sv, "m4a"},
    Signature{4, "ftypqt"sv, "mov"},
    Signature{4, "ftyp"sv, "mp4"},
    Signature{4, "moov"sv, "mov"},
    Signature{4, "mdat"sv, "mov"},
    Signature{8, "AIFF"sv, "aiff"},
    Signature{8, "AIFC"sv, "aiff"},
    Signature{0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv, "wma"},
    Signature{0, "\x1A\x45\xDF\xA3"sv, "mkv"},
    Signature{0, "MThd"sv, "mid"},
    Signature{0, "MAC "sv, "ape"},
    Signature{0, "MPCK"sv, "mpc"},
    Signature{0, "MP+"sv, "mpc"},
    Signature{0, "wvpk"sv, "wv"},
    Signature{0, "TTA1"sv, "tta"},
    Signature{0, "#!AMR"sv, "amr"},
    Signature{0, ".snd"sv, "au"},
    Signature{0, "caff"sv, "caf"},
    Signature{0, "FLV\x01"sv, "flv"},
    Signature{0, "\x00\x00\x01\xBA"sv, "mpg"},
    Signature{0, "\x00\x00\x01\xB3"sv, "mpg"},
    Signature{0, "\xFF\xD8\xFF"sv, "jpg"},
    Signature{0, "\x89PNG\r\n\x1A\n"sv, "png"},
    Signature{0, "GIF8"sv, "gif"},
    Signature{8, "WEBP"sv, "webp"},
    Signature{0, "%PDF"sv, "pdf"},
    Signature{0, "PK\x03\x04"sv, "zip"},
    Signature{0, "PK\x05\x06"sv, "zip"},
    Signature{0, "\x1F\x8B\x08"sv, "gz"},
    Signature{0, "BZh"sv, "bz2"},
    Signature{0, "\xFD\x37zXZ\x00"sv, "xz"},
    Signature{0, "7z\xBC\xAF\x27\x1C"sv, "7z"},
    Signature{0, "Rar!\x1A\x07"sv, "rar"},
    Signature{257, "ustar"sv, "tar"},
    Signature{0,
              "\x7F"
              "ELF"sv,
              "elf"},
    Signature{0, "SQLite format 3"sv, "sqlite"},
    Signature{0, "riff\x2E\x91\xCF\x11"sv, "w64"},
    Signature{0, "!<arch>\ndebian-binary"sv, "deb"},
    Signature{0, "!<arch>\n"sv, "a"},
    Signature{4, "styp"sv, "m4s"},
    Signature{4, "moof"sv, "m4s"},
    Signature{4, "sidx"sv, "m4s"},
};

/// Kinds whose signatures are short. A run of frames outweighs them.
constexpr std::array WEAK_SIGNATURES = {
    Signature{0, "MZ"sv, "exe"},       Signature{0, "BM"sv, "bmp"},
    Signature{0, "II*\0"sv, "tif"},    Signature{0, "MM\0*"sv, "tif"},
    Signature{0, "\x0B\x77"sv, "ac3"}, Signature{0, "<!DOCTYPE html"sv, "html"},
    Signature{0, "<html"sv, "html"},   Signature{0, "<?xml"sv, "xml"},
    Signature{0, R"({\rtf)"sv, "rtf"}, Signature{0, "#EXTM3U"sv, "m3u"},
    Signature{0, "\xFF\xFE"sv, "txt"}, Signature{0, "\xFE\xFF"sv, "txt"},
};

template<std::size_t count>
std::string_view extensionBySignature(const std::array<Signature, count>& table, Bytes bytes) {
    for (const Signature& signature : table) {
        if (hasAt(bytes, signature.offset, signature.bytes)) {
            return signature.extension;
        }
    }
    return {};
}

/// Whether bytes are ASCII or could be UTF-8, without control characters other than white space.
bool looksLikeText(Bytes bytes) {
    return !bytes.empty() && std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) {
        return byte >= 0x20 ? byte != 0x7F && byte != 0xC0 && byte != 0xC1 && byte < 0xF5
                            : byte == '\t' || byte == '\r' || byte == '\n' || byte == '\f';
    });
}

/// Searches a part of a file for a run of frames.
class RunFinder {
public:
    RunFinder(const std::shared_ptr<const FileReader>& file, std::uint64_t begin, std::uint64_t end)
        : scanned_(file, BLOCK), frames_(file, BLOCK), begin_(begin), end_(end) {}

    struct Found {
        std::uint64_t offset;
        FrameHeader header;
        std::size_t freeFormatSize;
    };

    /// Returns the first run that begins at most so many bytes after the begin.
    std::optional<Found> find(std::uint64_t distance) {
        const std::uint64_t last = std::min(end_, begin_ + distance + 1);
        for (std::uint64_t offset = begin_; offset < last; offset += BLOCK) {
            const Bytes block = scanned_.bytes(
                offset, static_cast<std::size_t>(std::min<std::uint64_t>(BLOCK, last - offset)));
            for (auto at = std::ranges::find(block, 0xFF); at != block.end();
                 at = std::find(at + 1, block.end(), 0xFF)) {
                const auto place = offset + static_cast<std::uint64_t>(at - block.begin());
                if (const auto found = runAt(place)) {
                    return found;
                }
            }
        }
        return std::nullopt;
    }

private:
    std::optional<Found> runAt(std::uint64_t offset) {
        // Reads so much that the frame after this one is in the same block.
        const Bytes bytes = frames_.bytes(offset, static_cast<std::size_t>(std::min<std::uint64_t>(
                                                      2 * LONGEST_FRAME, end_ - offset)));
        const std::optional<FrameHeader> header = parseFrameHeader(bytes);
        if (!header || candidates_ == 0) {
            return std::nullopt;
        }
        candidates_ -= offset - begin_ > NEAR ? 1 : 0;
        if (!header->freeFormat()) {
            return proves(offset, *header, 0) ? std::optional(Found{offset, *header, 0})
                                              : std::nullopt;
        }
        const std::size_t size = freeFormatSize(offset, *header);
        return size != 0 ? std::optional(Found{offset, *header, size}) : std::nullopt;
    }

    /// Whether enough frames begin at an offset to rule out chance.
    bool proves(std::uint64_t offset, const FrameHeader& first, std::size_t freeFormatSize) {
        const int needed = provingRun(offset - begin_);
        const FrameRun run = frameRunAt(frames_, offset, end_, freeFormatSize, needed);
        const bool near = offset - begin_ <= NEAR;
        switch (run.ending) {
        case FrameRun::Ending::more:
            return true;
        case FrameRun::Ending::stream:
            // A whole file of a few frames. A single frame must be all that there is.
            return near && (run.frames >= 2 ||
                            (run.frames == 1 && offset == begin_ && !first.freeFormat()));
        case FrameRun::Ending::cut:
            return near && run.frames >= 2;
        case FrameRun::Ending::foreign:
            break;
        }
        return false;
    }

    /// Returns the frame length without padding that makes the free-format frames at an offset a
    /// run; 0 when no length does.
    std::size_t freeFormatSize(std::uint64_t offset, const FrameHeader& first) {
        // Each candidate costs a search for its length. The limit keeps files fast that consist of
        // candidates.
        if (freeFormatTries_ == 0 || first.layer != 3) {
            return 0;
        }
        --freeFormatTries_;
        const std::size_t shortest = first.mainDataOffset();
        for (std::size_t size = shortest; size <= LONGEST_FRAME; ++size) {
            const Bytes next = frames_.bytes(offset + size, 4);
            const std::optional<FrameHeader> header = parseFrameHeader(next);
            if (!header || !header->agrees(first)) {
                continue;
            }
            const std::size_t unpadded = size - (first.padded ? 1 : 0);
            if (proves(offset, first, unpadded)) {
                return unpadded;
            }
        }
        return 0;
    }

    ReadBuffer scanned_;
    ReadBuffer frames_;
    const std::uint64_t begin_;
    const std::uint64_t end_;
    int freeFormatTries_ = 64;
    /// Headers after NEAR that are looked at. Bytes without frames have one in 5000 bytes; the
    /// limit keeps files fast that consist of headers.
    int candidates_ = 20'000;
};

} // namespace

FileKind detectFileKind(const std::shared_ptr<const FileReader>& file) {
    if (!file || file->size() == 0) {
        return {};
    }
    const TagPlaces tags = findTags(*file);
    ReadBuffer buffer(file, HEAD);
    const Bytes head = buffer.bytes(tags.begin, HEAD);
    if (const auto extension = extensionBySignature(STRONG_SIGNATURES, head); !extension.empty()) {
        return {std::string(extension), std::nullopt};
    }
    std::string otherKind(extensionBySignature(WEAK_SIGNATURES, head));
    if (otherKind.empty() && tags.begin == 0 && looksLikeText(head)) {
        otherKind = "txt";
    }

    // Sound far within a file of another kind is a part of it.
    std::optional<RunFinder::Found> run =
        RunFinder(file, tags.begin, tags.end).find(otherKind.empty() ? FAR : NEAR);
    if (!run && tags.begin != 0) {
        // A tag that claims too many bytes may cover the first frames.
        run = RunFinder(file, 10, tags.end).find(NEAR);
    }
    if (run) {
        if (run->header.layer != 3) {
            return {run->header.layer == 2 ? "mp2" : "mp1", std::nullopt};
        }
        return {"mp3", Mp3Stream{run->offset, tags.end, run->header, run->freeFormatSize}};
    }
    return {std::move(otherKind), std::nullopt};
}

} // namespace zvonivec
