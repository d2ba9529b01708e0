#include "engine/tags/tags.h"

#include "engine/tags/tag_text.h"

#include <algorithm>
#include <apetag.h>
#include <array>
#include <commentsframe.h>
#include <cstddef>
#include <cstdint>
#include <id3v1genres.h>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <initializer_list>
#include <mpegfile.h>
#include <optional>
#include <span>
#include <string_view>
#include <taglib.h>
#include <textidentificationframe.h>
#include <tiostream.h>
#include <utility>
#include <vector>

namespace zvonivec {

namespace {

#if TAGLIB_MAJOR_VERSION >= 2
using StreamOffset = TagLib::offset_t;
using StreamSize = std::size_t;
using StreamStart = TagLib::offset_t;
#else
using StreamOffset = long;
using StreamSize = unsigned long;
using StreamStart = unsigned long;
#endif

/// A file whose ID3v2.2 tag ends with ten bytes of padding more than it has.
///
/// TagLib 2 stops ten bytes before the end of a tag. That is the length of an empty frame in later
/// versions; in this one a whole frame may be as short, and would be left out.
class PaddedFile final : public FileReader {
public:
    explicit PaddedFile(std::shared_ptr<const FileReader> file) : file_(std::move(file)) {
        if (file_->readAt(0, header_) != header_.size() || header_[0] != 'I' || header_[1] != 'D' ||
            header_[2] != '3' || header_[3] != 2) {
            return;
        }
        // Seven bits in each of the last four bytes.
        std::uint32_t size = 0;
        for (std::size_t at = 6; at < header_.size(); ++at) {
            size = (size << 7U) | (header_[at] & 0x7FU);
        }
        tagEnd_ = header_.size() + size;
        size += padding;
        for (std::size_t at = header_.size(); at-- > 6; size >>= 7U) {
            header_[at] = static_cast<std::uint8_t>(size & 0x7FU);
        }
    }

    [[nodiscard]] std::uint64_t size() const override {
        return file_->size() + (tagEnd_ > 0 ? padding : 0);
    }

    [[nodiscard]] std::optional<std::size_t> readAt(std::uint64_t offset,
                                                    std::span<std::uint8_t> target) const override {
        if (tagEnd_ == 0) {
            return file_->readAt(offset, target);
        }
        std::size_t count = 0;
        while (count < target.size()) {
            const std::uint64_t at = offset + count;
            const std::span<std::uint8_t> rest = target.subspan(count);
            if (at < header_.size()) {
                rest[0] = header_[static_cast<std::size_t>(at)];
                ++count;
            } else if (at >= tagEnd_ && at < tagEnd_ + padding) {
                rest[0] = 0;
                ++count;
            } else {
                const bool before = at < tagEnd_;
                const std::uint64_t limit = before ? tagEnd_ - at : rest.size();
                const auto read = file_->readAt(before ? at : at - padding,
                                                rest.first(static_cast<std::size_t>(
                                                    std::min<std::uint64_t>(limit, rest.size()))));
                if (!read) {
                    return std::nullopt;
                }
                count += *read;
                if (*read < std::min<std::uint64_t>(limit, rest.size())) {
                    break;
                }
            }
        }
        return count;
    }

private:
    static constexpr std::uint32_t padding = 10;

    const std::shared_ptr<const FileReader> file_;
    std::array<std::uint8_t, 10> header_{}; ///< of the tag, with the padding counted
    std::uint64_t tagEnd_ = 0;              ///< where the padding begins; 0: there is none
};

/// Lets TagLib read the file that is open already, and nothing else.
class TagStream final : public TagLib::IOStream {
public:
    explicit TagStream(std::shared_ptr<const FileReader> file) : file_(std::move(file)) {}

    [[nodiscard]] TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(StreamSize length) override {
        const StreamOffset left = std::max<StreamOffset>(0, this->length() - position_);
        const StreamSize wanted = std::min(length, static_cast<StreamSize>(left));
        buffer_.resize(wanted);
        const std::size_t count =
            file_->readAt(static_cast<std::uint64_t>(position_), buffer_).value_or(0);
        position_ += static_cast<StreamOffset>(count);
        return {reinterpret_cast<const char*>(buffer_.data()), static_cast<unsigned>(count)};
    }
    void writeBlock(const TagLib::ByteVector& /*data*/) override {}
    void insert(const TagLib::ByteVector& /*data*/, StreamStart /*start*/,
                StreamSize /*replace*/) override {}
    void removeBlock(StreamStart /*start*/, StreamSize /*length*/) override {}
    [[nodiscard]] bool readOnly() const override { return true; }
    [[nodiscard]] bool isOpen() const override { return true; }
    void seek(StreamOffset offset, Position from) override {
        const StreamOffset base = from == Beginning ? 0 : from == Current ? position_ : length();
        position_ = std::max<StreamOffset>(0, base + offset);
    }
    void clear() override {}
    [[nodiscard]] StreamOffset tell() const override { return position_; }
    StreamOffset length() override { return static_cast<StreamOffset>(file_->size()); }
    void truncate(StreamOffset /*length*/) override {}

private:
    const std::shared_ptr<const FileReader> file_;
    StreamOffset position_ = 0;
    std::vector<std::uint8_t> buffer_;
};

TagLib::String fromLatin1Claim(const TagLib::ByteVector& bytes) {
    return {textFromLatin1Claim({bytes.data(), bytes.size()}), TagLib::String::UTF8};
}

class Id3v2Text final : public TagLib::ID3v2::Latin1StringHandler {
public:
    [[nodiscard]] TagLib::String parse(const TagLib::ByteVector& bytes) const override {
        return fromLatin1Claim(bytes);
    }
};

/// Makes the name of a frame's header, which TagLib keeps to its frames, usable here.
struct FrameAccess : TagLib::ID3v2::Frame {
    using TagLib::ID3v2::Frame::Header;
};

constexpr const char* LEFT_OUT_ID = "ZZZZ";
/// Genres go under the name of a text that isn't read: as genres, TagLib would take every text in
/// brackets at their start for a number and drop it.
constexpr const char* GENRE_ID = "TIT3";

/// Lets TagLib look into the frames that are read and into no others. For one tag.
///
/// Frames may be compressed, and TagLib inflates them without a limit, whatever length they state.
/// Nothing inflates to more than some thousand times its size, so a limit to what is compressed
/// bounds memory and time. It is more than texts of the length that is read can need.
class FrameSelection final : public TagLib::ID3v2::FrameFactory {
protected:
    bool updateFrame(FrameAccess::Header* header) const override {
        const bool known = FrameFactory::updateFrame(header);
        const TagLib::ByteVector id = header->frameID();
        const bool wanted =
            std::ranges::any_of(READ_IDS, [&id](const char* readId) { return id == readId; });
        if (!known || !wanted || !spend(*header)) {
            const unsigned size = header->frameSize();
            header->setData(header->render(), header->version()); // drops the flags
            header->setFrameSize(size);
            header->setFrameID(LEFT_OUT_ID);
            return false;
        }
        if (id == "TCON") {
            header->setFrameID(GENRE_ID);
        }
        return true;
    }

private:
    static constexpr std::array READ_IDS = {"TPE1", "TIT2", "TALB", "COMM", "TCON", "TDRC"};

    bool spend(const FrameAccess::Header& header) const {
        if (!header.compression()) {
            return true;
        }
        const bool enough = header.frameSize() <= compressedLeft_;
        compressedLeft_ -= enough ? header.frameSize() : 0;
        return enough;
    }

    mutable unsigned compressedLeft_ = 4096; ///< bytes
};

/// TagLib takes it for the whole process.
void setTextHandler() {
    static const Id3v2Text handler;
    static const bool done = [] {
        TagLib::ID3v2::Tag::setLatin1StringHandler(&handler);
        return true;
    }();
    static_cast<void>(done);
}

std::string tidy(const TagLib::String& text) {
    return tidyText(text.to8Bit(true));
}

/// Several values become one line.
std::string joined(const std::vector<std::string>& values) {
    std::string line;
    for (const std::string& value : values) {
        if (!value.empty()) {
            line += (line.empty() ? "" : ", ") + value;
        }
    }
    return tidyText(line);
}

std::string joined(const TagLib::StringList& values) {
    std::vector<std::string> texts;
    for (const TagLib::String& value : values) {
        texts.push_back(tidy(value));
    }
    return joined(texts);
}

/// The genre of a number of ID3v1's list, or of one of ID3v2's two abbreviations; else nothing.
std::string genreOfCode(std::string_view code) {
    if (code == "RX") {
        return "Remix";
    }
    if (code == "CR") {
        return "Cover";
    }
    const bool isNumber =
        !code.empty() && code.size() <= 3 &&
        std::ranges::all_of(code, [](char digit) { return digit >= '0' && digit <= '9'; });
    return isNumber ? tidy(TagLib::ID3v1::genre(std::stoi(std::string(code)))) : std::string();
}

/// Adds the genres of one text: a code, or codes in brackets and a text that refines them, as in
/// "(4)Eurodisco". Such a text's own bracket is written twice. Other brackets belong to a name.
void addGenres(std::vector<std::string>& names, std::string_view text) {
    const auto add = [&names](std::string name) {
        if (!name.empty() && std::ranges::find(names, name) == names.end()) {
            names.push_back(std::move(name));
        }
    };
    while (text.starts_with('(')) {
        if (text.starts_with("((")) {
            text.remove_prefix(1);
            break;
        }
        const std::size_t end = text.find(')');
        std::string name =
            end == std::string_view::npos ? std::string() : genreOfCode(text.substr(1, end - 1));
        if (name.empty()) {
            break;
        }
        add(std::move(name));
        text.remove_prefix(end + 1);
    }
    std::string name = genreOfCode(text);
    add(name.empty() ? tidyText(text) : std::move(name));
}

std::string genreNames(const TagLib::StringList& values) {
    std::vector<std::string> names;
    for (const TagLib::String& value : values) {
        addGenres(names, tidy(value));
    }
    return joined(names);
}

/// The year of a date such as 2004-05-01.
std::string yearOf(const std::string& date) {
    const auto isDigit = [](char digit) { return digit >= '0' && digit <= '9'; };
    const bool year = date.size() > 4 && std::all_of(date.begin(), date.begin() + 4, isDigit) &&
                      !isDigit(date[4]);
    return year ? date.substr(0, 4) : date;
}

TagLib::StringList id3v2Values(const TagLib::ID3v2::Tag& tag, const char* frameId) {
    for (const auto* frame : tag.frameList(frameId)) {
        if (const auto* text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame)) {
            return text->fieldList();
        }
    }
    return {};
}

/// The comment without a description before others; none that a program wrote for itself.
std::string id3v2Comment(const TagLib::ID3v2::Tag& tag) {
    std::string other;
    for (const auto* frame : tag.frameList("COMM")) {
        const auto* comment = dynamic_cast<const TagLib::ID3v2::CommentsFrame*>(frame);
        if (comment == nullptr || comment->description().startsWith("iTun")) {
            continue;
        }
        std::string text = tidy(comment->text());
        if (!text.empty() && comment->description().isEmpty()) {
            return text;
        }
        if (other.empty()) {
            other = std::move(text);
        }
    }
    return other;
}

TrackTags fromId3v2(const TagLib::ID3v2::Tag& tag) {
    return {.author = joined(id3v2Values(tag, "TPE1")),
            .title = joined(id3v2Values(tag, "TIT2")),
            .album = joined(id3v2Values(tag, "TALB")),
            .description = id3v2Comment(tag),
            .genre = genreNames(id3v2Values(tag, GENRE_ID)),
            .year = yearOf(joined(id3v2Values(tag, "TDRC")))};
}

TrackTags fromApe(const TagLib::APE::Tag& tag) {
    const TagLib::APE::ItemListMap& items = tag.itemListMap();
    const auto values = [&items](const char* key) {
        const auto found = items.find(key);
        const bool text = found != items.end() && found->second.type() == TagLib::APE::Item::Text;
        return text ? found->second.values() : TagLib::StringList();
    };
    return {.author = joined(values("ARTIST")),
            .title = joined(values("TITLE")),
            .album = joined(values("ALBUM")),
            .description = joined(values("COMMENT")),
            .genre = genreNames(values("GENRE")),
            .year = yearOf(joined(values("YEAR")))};
}

/// Read without TagLib, which takes some of the texts for Latin-1 whatever it is told.
TrackTags fromId3v1(const FileReader& file) {
    std::array<std::uint8_t, 128> bytes{};
    if (file.size() < bytes.size() ||
        file.readAt(file.size() - bytes.size(), bytes) != bytes.size()) {
        return {};
    }
    const std::string_view tag(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!tag.starts_with("TAG")) {
        return {};
    }
    const auto text = [&tag](std::size_t offset, std::size_t size) {
        return tidyText(textFromLatin1Claim(tag.substr(offset, size)));
    };
    // A comment that ends early may be followed by the number of the track.
    return {.author = text(33, 30),
            .title = text(3, 30),
            .album = text(63, 30),
            .description = text(97, bytes[125] == 0 ? 28 : 30),
            .genre = tidy(TagLib::ID3v1::genre(bytes[127])),
            .year = text(93, 4)};
}

void fillIn(TrackTags& tags, TrackTags&& lesser) {
    for (std::string TrackTags::*text :
         {&TrackTags::author, &TrackTags::title, &TrackTags::album, &TrackTags::description,
          &TrackTags::genre, &TrackTags::year}) {
        if ((tags.*text).empty()) {
            tags.*text = std::move(lesser.*text);
        }
    }
}

} // namespace

TrackTags readTags(const std::shared_ptr<const FileReader>& file) {
    setTextHandler();
    TagStream stream(std::make_shared<PaddedFile>(file));
    FrameSelection frames;
#if TAGLIB_MAJOR_VERSION >= 2
    TagLib::MPEG::File tagged(&stream, false, TagLib::MPEG::Properties::Average, &frames);
#else
    TagLib::MPEG::File tagged(&stream, &frames, false);
#endif
    TrackTags tags;
    if (tagged.hasID3v2Tag()) {
        fillIn(tags, fromId3v2(*tagged.ID3v2Tag()));
    }
    if (tagged.hasAPETag()) {
        fillIn(tags, fromApe(*tagged.APETag()));
    }
    fillIn(tags, fromId3v1(*file));
    return tags;
}

} // namespace zvonivec
