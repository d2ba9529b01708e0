#include "playback/engine/tags.h"

#include "playback/engine/tag_text.h"

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

/// A genre of a list of ID3v1 by its number, which may stand in brackets; else the text itself.
std::string genreName(const std::string& text) {
    std::string_view number = text;
    if (number.size() > 2 && number.front() == '(' && number.back() == ')') {
        number = number.substr(1, number.size() - 2);
    }
    const bool isNumber =
        !number.empty() && number.size() <= 3 &&
        std::ranges::all_of(number, [](char digit) { return digit >= '0' && digit <= '9'; });
    if (isNumber) {
        const std::string name = tidy(TagLib::ID3v1::genre(std::stoi(std::string(number))));
        return name.empty() ? text : name;
    }
    return number == "RX" ? "Remix" : number == "CR" ? "Cover" : text;
}

std::string genreNames(const TagLib::StringList& values) {
    std::vector<std::string> names;
    for (const TagLib::String& value : values) {
        std::string text = tidy(value);
        // "(17)(18)" or "(17)Rock": numbers in front of a text that may refine them.
        while (text.size() > 2 && text.front() == '(' && text.find(')') + 1 < text.size() &&
               text.find(')') != std::string::npos) {
            const std::size_t end = text.find(')') + 1;
            const std::string name = genreName(text.substr(0, end));
            if (name == text.substr(0, end)) {
                break; // brackets that are part of a name
            }
            names.push_back(name);
            text.erase(0, end);
        }
        names.push_back(genreName(text));
    }
    std::vector<std::string> unique;
    for (const std::string& name : names) {
        if (std::ranges::find(unique, name) == unique.end()) {
            unique.push_back(name);
        }
    }
    return joined(unique);
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
            .genre = genreNames(id3v2Values(tag, "TCON")),
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
    TagStream stream(file);
#if TAGLIB_MAJOR_VERSION >= 2
    TagLib::MPEG::File tagged(&stream, false);
#else
    TagLib::MPEG::File tagged(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
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
