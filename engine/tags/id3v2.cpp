#include "engine/tags/id3v2.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <zlib.h>

namespace zvonivec {

namespace {

/// Bytes of a frame that are read: the longest text that is kept, in any encoding, and blanks.
constexpr std::size_t TEXT_BYTES = std::size_t{16} * 1024;
/// Frames that are looked at, and texts that are kept. Real tags have some dozens.
constexpr int MOST_FRAMES = 10'000;
constexpr std::size_t MOST_TEXTS = 64;
/// Bytes of a tag that are searched for inserted NULs.
constexpr std::uint64_t MOST_UNSYNCHRONISED = std::uint64_t{8} << 20U;

/// Kinds of frames that are read, with their names in version 2.2.
constexpr std::array<std::pair<std::string_view, std::string_view>, 10> READ_FRAMES = {{
    {"TPE1", "TP1"},
    {"TIT2", "TT2"},
    {"TALB", "TAL"},
    {"COMM", "COM"},
    {"TCON", "TCO"},
    {"TDRC", "TRD"},
    {"TYER", "TYE"},
    {"TDRL", ""},
    {"TORY", "TOR"},
    {"TDOR", ""},
}};

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes) {
        number = number << 8U | byte;
    }
    return number;
}

std::uint32_t syncSafe(std::span<const std::uint8_t> bytes) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes) {
        number = number << 7U | (byte & 0x7FU);
    }
    return number;
}

/// Removes the NULs that unsynchronisation puts after every 0xFF.
std::string synchronised(std::string_view bytes) {
    std::string result;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        result += bytes[i];
        if (bytes[i] == '\xFF' && i + 1 < bytes.size() && bytes[i + 1] == '\0') {
            ++i;
        }
    }
    return result;
}

/// Inflates the first bytes of a zlib stream; nothing when it is broken.
std::optional<std::string> inflated(std::string_view compressed) {
    std::string result(TEXT_BYTES, '\0');
    std::string input(compressed);
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK) {
        return std::nullopt;
    }
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    const int code = inflate(&stream, Z_SYNC_FLUSH);
    result.erase(stream.total_out);
    inflateEnd(&stream);
    const bool good = code == Z_OK || code == Z_STREAM_END || code == Z_BUF_ERROR;
    return good ? std::optional(std::move(result)) : std::nullopt;
}

/// The body of a tag, read in order. Removes the NULs of unsynchronisation on the way when the
/// whole tag is unsynchronised.
class Body {
public:
    Body(const std::shared_ptr<const FileReader>& file, std::uint64_t begin, std::uint64_t end,
         bool unsynchronised)
        : buffer_(file, BLOCK), position_(begin), end_(end), unsynchronised_(unsynchronised) {
        if (unsynchronised_) {
            end_ = std::min(end_, begin + MOST_UNSYNCHRONISED);
        }
    }

    /// Reads bytes; fewer at the end of the tag.
    std::string take(std::size_t wanted) {
        std::string result;
        walk(wanted, [&result](std::uint8_t byte) { result += static_cast<char>(byte); });
        return result;
    }

    void skip(std::uint64_t count) {
        if (unsynchronised_) {
            walk(count, [](std::uint8_t) {});
        } else {
            position_ += std::min(count, left());
        }
    }

    /// Returns bytes at a distance without taking them. Only for tags that aren't unsynchronised.
    std::span<const std::uint8_t> peek(std::uint64_t distance, std::size_t wanted) {
        const std::uint64_t at = std::min(end_, position_ + distance);
        return buffer_.bytes(at,
                             static_cast<std::size_t>(std::min<std::uint64_t>(wanted, end_ - at)));
    }

    /// Bytes of the file to the end of the tag.
    [[nodiscard]] std::uint64_t left() const { return end_ - position_; }

private:
    /// Passes the next bytes of the body to a function, without the NULs of unsynchronisation.
    template<class Function>
    void walk(std::uint64_t count, const Function& function) {
        while (count != 0 && position_ < end_) {
            const auto block = buffer_.bytes(
                position_, static_cast<std::size_t>(std::min<std::uint64_t>(BLOCK, left())));
            if (block.empty()) {
                position_ = end_; // the disk has failed
            }
            for (const std::uint8_t byte : block) {
                if (count == 0) {
                    break;
                }
                ++position_;
                if (afterMarker_ && byte == 0) {
                    afterMarker_ = false;
                    continue;
                }
                afterMarker_ = unsynchronised_ && byte == 0xFF;
                function(byte);
                --count;
            }
        }
    }

    static constexpr std::size_t BLOCK = std::size_t{4} * 1024;

    ReadBuffer buffer_;
    std::uint64_t position_;
    std::uint64_t end_;
    bool unsynchronised_;
    bool afterMarker_ = false; ///< the last byte was 0xFF
};

struct Frame {
    std::string id; ///< as in the file
    std::uint64_t size = 0;
    bool grouped = false;
    bool compressed = false;
    bool encrypted = false;
    bool unsynchronised = false;
    bool hasLength = false;
};

class Id3v2Reader {
public:
    Id3v2Reader(const std::shared_ptr<const FileReader>& file, const TagPlace& place)
        : header_(headerOf(*file, place)), version_(header_[3]),
          body_(file, place.begin + 10, place.begin + place.size - footerSize(),
                version_ < 4 && (header_[5] & 0x80U) != 0) {}

    std::vector<Id3v2Text> read() {
        constexpr std::uint8_t extended = 0x40;
        if (version_ < 2 || version_ > 4) {
            return {};
        }
        if ((header_[5] & extended) != 0) {
            if (version_ == 2) {
                return {}; // a compressed tag, which nobody ever defined
            }
            skipExtendedHeader();
        }
        std::vector<Id3v2Text> texts;
        for (int i = 0; i < MOST_FRAMES && texts.size() < MOST_TEXTS; ++i) {
            const std::optional<Frame> frame = nextFrame();
            if (!frame) {
                break;
            }
            if (auto text = readText(*frame)) {
                texts.push_back(std::move(*text));
            }
        }
        return texts;
    }

private:
    using Header = std::array<std::uint8_t, 10>;

    static Header headerOf(const FileReader& file, const TagPlace& place) {
        Header header{};
        static_cast<void>(file.readAt(place.begin, header)); // all NULs are no version
        return header;
    }

    static std::span<const std::uint8_t> asBytes(std::string_view text) {
        return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
    }

    [[nodiscard]] std::uint64_t footerSize() const {
        return version_ == 4 && (header_[5] & 0x10U) != 0 ? 10 : 0;
    }

    void skipExtendedHeader() {
        const std::string size = body_.take(4);
        if (version_ == 3) {
            body_.skip(bigEndian(asBytes(size))); // counts the bytes after itself
        } else {
            const std::uint32_t whole = syncSafe(asBytes(size));
            body_.skip(whole >= 4 ? whole - 4 : 0);
        }
    }

    /// Reads the header of the next frame; nothing when padding or the end of the tag follows.
    std::optional<Frame> nextFrame() {
        const std::size_t idSize = version_ == 2 ? 3 : 4;
        const std::string header = body_.take(version_ == 2 ? 6 : 10);
        if (header.size() < (version_ == 2 ? 6U : 10U) || header[0] == '\0') {
            return std::nullopt;
        }
        const auto bytes = asBytes(header);
        Frame frame;
        frame.id = header.substr(0, idSize);
        if (std::ranges::any_of(bytes.first(3), [](std::uint8_t byte) { return byte < 0x20; })) {
            return std::nullopt; // no name at all
        }
        if (version_ == 2) {
            frame.size = bigEndian(bytes.subspan(3, 3));
        } else if (version_ == 3) {
            frame.size = bigEndian(bytes.subspan(4, 4));
            frame.compressed = (bytes[9] & 0x80U) != 0;
            frame.encrypted = (bytes[9] & 0x40U) != 0;
            frame.grouped = (bytes[9] & 0x20U) != 0;
            frame.hasLength = frame.compressed;
        } else {
            frame.size = sizeOfVersion4(bytes.subspan(4, 4));
            frame.grouped = (bytes[9] & 0x40U) != 0;
            frame.compressed = (bytes[9] & 0x08U) != 0;
            frame.encrypted = (bytes[9] & 0x04U) != 0;
            frame.unsynchronised = (bytes[9] & 0x02U) != 0 || (header_[5] & 0x80U) != 0;
            frame.hasLength = (bytes[9] & 0x01U) != 0;
        }
        return frame.size <= body_.left() ? std::optional(std::move(frame)) : std::nullopt;
    }

    /// Version 2.4 writes sizes with seven bits a byte. Some writers use all eight, as before: they
    /// are recognised by the next frame, which begins where one of both sizes says.
    std::uint64_t sizeOfVersion4(std::span<const std::uint8_t> bytes) {
        const std::uint32_t plain = bigEndian(bytes);
        const std::uint32_t safe = syncSafe(bytes);
        if (((bytes[0] | bytes[1] | bytes[2] | bytes[3]) & 0x80U) != 0) {
            return plain;
        }
        return plain != safe && !frameFollows(safe) && frameFollows(plain) ? plain : safe;
    }

    bool frameFollows(std::uint64_t distance) {
        if (distance == body_.left()) {
            return true;
        }
        const auto id = body_.peek(distance, 4);
        const bool padding = id.size() == 4 && bigEndian(id) == 0;
        return padding || (id.size() == 4 && std::ranges::all_of(id, [](std::uint8_t byte) {
                               return (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
                           }));
    }

    /// Returns the name that a frame has in version 2.4, empty when it isn't read. Some writers use
    /// the names of version 2.2 in later versions, with a NUL or a blank after them.
    [[nodiscard]] std::string_view wantedId(const Frame& frame) const {
        const std::string_view id(frame.id);
        for (const auto& [name, oldName] : READ_FRAMES) {
            const bool old = !oldName.empty() && id.starts_with(oldName) &&
                             (id.size() == 3 || id[3] == '\0' || id[3] == ' ');
            if ((version_ != 2 && id == name) || old) {
                return name;
            }
        }
        return {};
    }

    /// Reads a frame's text, or skips it.
    std::optional<Id3v2Text> readText(const Frame& frame) {
        const std::string_view id = wantedId(frame);
        if (id.empty() || frame.encrypted || frame.size == 0) {
            body_.skip(frame.size);
            return std::nullopt;
        }
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(frame.size, TEXT_BYTES));
        std::string data = body_.take(wanted);
        body_.skip(frame.size - wanted);
        const std::size_t extra = (frame.grouped ? 1U : 0U) + (frame.hasLength ? 4U : 0U);
        if (data.size() <= extra) {
            return std::nullopt;
        }
        data.erase(0, extra);
        if (frame.unsynchronised) {
            data = synchronised(data);
        }
        if (frame.compressed) {
            auto text = inflated(data);
            if (!text || text->empty()) {
                return std::nullopt;
            }
            data = std::move(*text);
        }
        Id3v2Text text{std::string(id), data[0], {}};
        if (text.encoding < 0 || text.encoding > 3) {
            text.encoding = 0; // the writer has left the encoding out
            text.bytes = std::move(data);
            return text;
        }
        const std::size_t begin = id == "COMM" ? 4 : 1; // a language follows
        text.bytes = data.size() > begin ? data.substr(begin) : std::string();
        return text;
    }

    Header header_;
    int version_;
    Body body_;
};

} // namespace

std::vector<Id3v2Text> readId3v2(const std::shared_ptr<const FileReader>& file,
                                 const TagPlace& place) {
    return Id3v2Reader(file, place).read();
}

} // namespace zvonivec
