#include "engine/reading/file_kind.h"

#include "engine/reading/frame_run.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zvonivec {

namespace {

using Bytes = std::span<const std::uint8_t>;

/// Most foreign bytes between the tags and the first frame.
constexpr std::size_t JUNK_LIMIT = std::size_t{64} * 1024;
bool hasAt(Bytes bytes, std::size_t offset, std::string_view text) {
    return bytes.size() >= offset + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

std::uint32_t littleEndian32(Bytes bytes, std::size_t offset) {
    return std::uint32_t{bytes[offset]} | std::uint32_t{bytes[offset + 1]} << 8U |
           std::uint32_t{bytes[offset + 2]} << 16U | std::uint32_t{bytes[offset + 3]} << 24U;
}

std::uint64_t skipLeadingTags(ReadBuffer& buffer, std::uint64_t fileSize) {
    std::uint64_t offset = 0;
    constexpr int mostTags = 16;
    for (int i = 0; i < mostTags; ++i) {
        const std::uint64_t size = leadingTagSize(buffer.bytes(offset, 32));
        if (size == 0 || offset + size >= fileSize) {
            break; // no tag, or a tag that claims more bytes than the file has
        }
        offset += size;
    }
    return offset;
}

/// Returns where the tags at the end begin: ID3v1, APE, ID3v2 with a footer, in any order.
std::uint64_t audioEnd(ReadBuffer& buffer, std::uint64_t begin, std::uint64_t fileSize) {
    std::uint64_t end = fileSize;
    constexpr int mostTags = 4;
    for (int i = 0; i < mostTags; ++i) {
        const std::uint64_t room = end - begin;
        std::uint64_t size = 0;
        if (room >= 128 && hasAt(buffer.bytes(end - 128, 3), 0, "TAG")) {
            size = 128;
        } else if (room >= 32) {
            const Bytes footer = buffer.bytes(end - 32, 32);
            constexpr std::uint32_t apeHasHeader = 0x80000000;
            if (footer.size() == 32 && hasAt(footer, 0, "APETAGEX")) {
                const bool header = (littleEndian32(footer, 20) & apeHasHeader) != 0;
                size = std::uint64_t{littleEndian32(footer, 12)} + (header ? 32 : 0);
            } else if (footer.size() == 32 && hasAt(footer, 22, "3DI")) {
                size = (std::uint64_t{footer[28]} << 21U | std::uint64_t{footer[29]} << 14U |
                        std::uint64_t{footer[30]} << 7U | std::uint64_t{footer[31]}) +
                       20;
            }
        }
        if (size == 0 || size > room) {
            break;
        }
        end -= size;
    }
    return end;
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
    RunFinder(ReadBuffer& buffer, std::uint64_t begin, std::uint64_t end)
        : buffer_(buffer), begin_(begin), end_(end) {}

    struct Found {
        std::uint64_t offset;
        FrameHeader header;
        std::size_t freeFormatSize;
    };

    std::optional<Found> find() {
        const std::uint64_t last = std::min<std::uint64_t>(end_, begin_ + JUNK_LIMIT + 1);
        for (std::uint64_t offset = begin_; offset + 4 <= end_ && offset < last; ++offset) {
            const Bytes bytes = buffer_.bytes(offset, 4);
            if (bytes.empty()) {
                return std::nullopt;
            }
            const std::optional<FrameHeader> header = parseFrameHeader(bytes);
            if (!header) {
                continue;
            }
            if (!header->freeFormat()) {
                if (proves(offset, *header, 0)) {
                    return Found{offset, *header, 0};
                }
            } else if (const std::size_t size = freeFormatSize(offset, *header)) {
                return Found{offset, *header, size};
            }
        }
        return std::nullopt;
    }

private:
    /// Whether enough frames begin at an offset to rule out chance.
    bool proves(std::uint64_t offset, const FrameHeader& first, std::size_t freeFormatSize) {
        const FrameRun run = frameRunAt(buffer_, offset, end_, freeFormatSize);
        switch (run.ending) {
        case FrameRun::Ending::more:
            return true;
        case FrameRun::Ending::stream:
            // A whole file of a few frames. A single frame must be all that there is.
            return run.frames >= 2 || (run.frames == 1 && offset == begin_ && !first.freeFormat());
        case FrameRun::Ending::cut:
            return run.frames >= 2;
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
            const Bytes next = buffer_.bytes(offset + size, 4);
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

    ReadBuffer& buffer_;
    const std::uint64_t begin_;
    const std::uint64_t end_;
    int freeFormatTries_ = 64;
};

} // namespace

std::uint64_t leadingTagSize(Bytes bytes) {
    if (bytes.size() >= 10 && hasAt(bytes, 0, "ID3") && bytes[3] != 0xFF && bytes[4] != 0xFF &&
        (bytes[6] | bytes[7] | bytes[8] | bytes[9]) < 0x80) {
        const std::uint64_t body = std::uint64_t{bytes[6]} << 21U | std::uint64_t{bytes[7]} << 14U |
                                   std::uint64_t{bytes[8]} << 7U | std::uint64_t{bytes[9]};
        const bool footer = (bytes[5] & 0x10U) != 0;
        return 10 + body + (footer ? 10 : 0);
    }
    constexpr std::uint32_t apeIsHeader = 0x20000000;
    if (bytes.size() >= 32 && hasAt(bytes, 0, "APETAGEX") &&
        (littleEndian32(bytes, 20) & apeIsHeader) != 0) {
        return 32 + std::uint64_t{littleEndian32(bytes, 12)};
    }
    return 0;
}

FileKind detectFileKind(const std::shared_ptr<const FileReader>& file) {
    if (!file || file->size() == 0) {
        return {};
    }
    ReadBuffer buffer(file, JUNK_LIMIT + LONGEST_FRAME * static_cast<std::size_t>(PROVING_RUN + 1));
    const std::uint64_t begin = skipLeadingTags(buffer, file->size());
    const Bytes head = buffer.bytes(begin, 4096);
    if (const auto extension = extensionBySignature(STRONG_SIGNATURES, head); !extension.empty()) {
        return {std::string(extension), std::nullopt};
    }

    ReadBuffer tail(file, 256);
    const std::uint64_t end = audioEnd(tail, begin, file->size());
    std::optional<RunFinder::Found> run = RunFinder(buffer, begin, end).find();
    if (!run && begin != 0) {
        // A tag that claims too many bytes may cover the first frames.
        run = RunFinder(buffer, 10, end).find();
    }
    if (run) {
        if (run->header.layer != 3) {
            return {run->header.layer == 2 ? "mp2" : "mp1", std::nullopt};
        }
        return {"mp3", Mp3Stream{run->offset, end, run->header, run->freeFormatSize}};
    }

    const Bytes rest = buffer.bytes(begin, 4096);
    if (const auto extension = extensionBySignature(WEAK_SIGNATURES, rest); !extension.empty()) {
        return {std::string(extension), std::nullopt};
    }
    if (begin == 0 && looksLikeText(rest)) {
        return {"txt", std::nullopt};
    }
    return {};
}

} // namespace zvonivec
