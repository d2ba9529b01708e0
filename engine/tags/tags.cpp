#include "engine/tags/tags.h"

#include "engine/reading/tag_places.h"
#include "engine/tags/ape_tag.h"
#include "engine/tags/genres.h"
#include "engine/tags/id3v2.h"
#include "engine/tags/tag_text.h"
#include "engine/tags/unicode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace zvonivec {

namespace {

/// A text that is decoded already, or bytes of an unknown alphabet.
struct Text {
    std::string bytes;
    bool decoded = false;
};

/// The texts of one tag. Decides by all of them which alphabet the undecoded texts are in.
class Decoder {
public:
    void consider(const Text& text) {
        if (!text.decoded && undecoded_.size() < ENOUGH && !utf8Text(text.bytes)) {
            undecoded_.push_back(text.bytes);
        }
    }
    void decide() { alphabet_ = alphabetOf(undecoded_); }

    [[nodiscard]] std::string tidy(const Text& text) const {
        return tidyText(text.decoded ? text.bytes : textFromLatin1Claim(text.bytes, alphabet_));
    }

private:
    static constexpr std::size_t ENOUGH = 32; ///< texts that decide; a file may have thousands

    std::vector<std::string_view> undecoded_;
    Alphabet alphabet_ = Alphabet::windows1250;
};

std::string joined(const std::vector<std::string>& values, std::string_view separator) {
    std::string line;
    for (const std::string& value : values) {
        if (!value.empty()) {
            line += (line.empty() ? "" : std::string(separator)) + value;
        }
    }
    return tidyText(line);
}

/// The year of a date such as 2004-05-01, of four digits; empty when there is none.
std::string yearOf(std::string_view date) {
    const auto isDigit = [](char digit) { return digit >= '0' && digit <= '9'; };
    const bool year = date.size() >= 4 && std::all_of(date.begin(), date.begin() + 4, isDigit) &&
                      (date.size() == 4 || !isDigit(date[4]));
    return year ? std::string(date.substr(0, 4)) : std::string();
}

// --- ID3v2 ------------------------------------------------------------------------------------

/// Whether UTF-16 without a byte order mark has the high byte first. Most letters have a high byte
/// of 0 to 5, few a low byte.
bool looksBigEndian(std::string_view bytes) {
    int low = 0;
    int high = 0;
    for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) {
        high += static_cast<unsigned char>(bytes[i]) < 6 ? 1 : 0;
        low += static_cast<unsigned char>(bytes[i + 1]) < 6 ? 1 : 0;
    }
    return high > low;
}

/// Splits a frame's text at NULs into values. Decodes UTF-16.
std::vector<Text> valuesOf(const Id3v2Text& frame) {
    std::vector<Text> values;
    const std::string_view bytes(frame.bytes);
    const bool wide = frame.encoding == 1 || frame.encoding == 2;
    const std::size_t unit = wide ? 2 : 1;
    bool bigEndian = frame.encoding == 2;
    if (frame.encoding == 1 && !bytes.starts_with("\xFF\xFE") && !bytes.starts_with("\xFE\xFF")) {
        bigEndian = looksBigEndian(bytes);
    }
    for (std::size_t begin = 0; begin <= bytes.size();) {
        std::size_t end = begin;
        while (end + unit <= bytes.size() &&
               (bytes[end] != '\0' || (wide && bytes[end + 1] != '\0'))) {
            end += unit;
        }
        std::string_view value = bytes.substr(begin, std::min(end, bytes.size()) - begin);
        if (wide) {
            if (value.starts_with("\xFF\xFE") || value.starts_with("\xFE\xFF")) {
                bigEndian = value[0] == '\xFE';
                value.remove_prefix(2);
            }
            values.push_back({fromUtf16(value, bigEndian), true});
        } else {
            values.push_back({std::string(value), frame.encoding == 3});
        }
        begin = end + unit;
    }
    return values;
}

/// The frames of a tag, split into values and grouped by name.
class Id3v2Texts {
public:
    explicit Id3v2Texts(const std::vector<Id3v2Text>& frames) {
        for (const Id3v2Text& frame : frames) {
            frames_.emplace_back(frame.id, valuesOf(frame));
        }
        for (const auto& [id, values] : frames_) {
            std::ranges::for_each(values, [this](const Text& text) { decoder_.consider(text); });
        }
        decoder_.decide();
    }

    /// Several values of a frame are joined by a comma, several frames by a slash.
    [[nodiscard]] std::string line(std::string_view id) const {
        std::vector<std::string> lines;
        for (const auto& [frameId, values] : frames_) {
            if (frameId == id) {
                lines.push_back(joined(tidied(values), ", "));
            }
        }
        return joined(lines, " / ");
    }

    [[nodiscard]] std::string genre() const {
        std::vector<std::string> lines;
        for (const auto& [id, values] : frames_) {
            if (id == "TCON") {
                std::vector<std::string> names;
                for (const std::string& value : tidied(values)) {
                    addGenres(names, value);
                }
                lines.push_back(joined(names, ", "));
            }
        }
        return joined(lines, " / ");
    }

    /// The year of the recording, else of the release, else of the original release.
    [[nodiscard]] std::string year() const {
        for (const std::string_view id : {"TDRC", "TYER", "TDRL", "TDOR", "TORY"}) {
            for (const auto& [frameId, values] : frames_) {
                if (frameId == id && !values.empty()) {
                    if (std::string year = yearOf(decoder_.tidy(values.front())); !year.empty()) {
                        return year;
                    }
                }
            }
        }
        return {};
    }

    /// The comment without a description, else the first of the others. Leaves out comments that
    /// a program has written for itself.
    [[nodiscard]] std::string comment() const {
        std::string other;
        for (const auto& [id, values] : frames_) {
            if (id != "COMM" || values.size() < 2) {
                continue;
            }
            const std::string description = decoder_.tidy(values[0]);
            std::string text = decoder_.tidy(values[1]);
            if (description.starts_with("iTun") || text.empty()) {
                continue;
            }
            if (description.empty()) {
                return text;
            }
            if (other.empty()) {
                other = std::move(text);
            }
        }
        return other;
    }

private:
    [[nodiscard]] std::vector<std::string> tidied(const std::vector<Text>& values) const {
        std::vector<std::string> texts;
        std::ranges::transform(values, std::back_inserter(texts),
                               [this](const Text& text) { return decoder_.tidy(text); });
        return texts;
    }

    std::vector<std::pair<std::string, std::vector<Text>>> frames_;
    Decoder decoder_;
};

TrackTags fromId3v2(const std::shared_ptr<const FileReader>& file, const TagPlace& place) {
    const std::vector<Id3v2Text> frames = readId3v2(file, place);
    const Id3v2Texts texts(frames);
    return {.author = texts.line("TPE1"),
            .title = texts.line("TIT2"),
            .album = texts.line("TALB"),
            .description = texts.comment(),
            .genre = texts.genre(),
            .year = texts.year()};
}

// --- APE --------------------------------------------------------------------------------------

TrackTags fromApe(const std::shared_ptr<const FileReader>& file, const TagPlace& place) {
    const std::vector<ApeText> items = readApeTag(file, place);
    std::vector<std::pair<std::string_view, std::vector<Text>>> texts;
    for (const ApeText& item : items) {
        std::vector<Text> values;
        std::string_view rest(item.bytes);
        for (bool more = true; more;) {
            const std::size_t end = rest.find('\0');
            values.push_back({std::string(rest.substr(0, end)), false});
            more = end != std::string_view::npos;
            rest.remove_prefix(more ? end + 1 : 0);
        }
        texts.emplace_back(item.key, std::move(values));
    }
    Decoder decoder;
    for (const auto& [key, values] : texts) {
        std::ranges::for_each(values, [&](const Text& text) { decoder.consider(text); });
    }
    decoder.decide();

    const auto valuesOfKey = [&](std::string_view key) {
        std::vector<std::string> lines;
        const auto found =
            std::ranges::find(texts, key, [](const auto& text) { return text.first; });
        if (found != texts.end()) {
            for (const Text& value : found->second) {
                lines.push_back(decoder.tidy(value));
            }
        }
        return lines;
    };
    std::vector<std::string> genres;
    for (const std::string& genre : valuesOfKey("GENRE")) {
        addGenres(genres, genre);
    }
    return {.author = joined(valuesOfKey("ARTIST"), ", "),
            .title = joined(valuesOfKey("TITLE"), ", "),
            .album = joined(valuesOfKey("ALBUM"), ", "),
            .description = joined(valuesOfKey("COMMENT"), ", "),
            .genre = joined(genres, ", "),
            .year = yearOf(joined(valuesOfKey("YEAR"), ", "))};
}

// --- ID3v1 ------------------------------------------------------------------------------------

TrackTags fromId3v1(const FileReader& file, const TagPlace& place) {
    std::array<std::uint8_t, 128> bytes{};
    if (file.readAt(place.begin, bytes) != bytes.size()) {
        return {};
    }
    const std::string_view tag(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto field = [&tag](std::size_t offset, std::size_t size) {
        const std::string_view text = tag.substr(offset, size);
        return Text{std::string(text.substr(0, text.find('\0'))), false};
    };
    const Text title = field(3, 30);
    const Text author = field(33, 30);
    const Text album = field(63, 30);
    // A NUL in the last byte but one is followed by the number of the track.
    const Text comment = field(97, bytes[125] == 0 ? 28 : 30);
    Decoder decoder;
    for (const Text* text : {&title, &author, &album, &comment}) {
        decoder.consider(*text);
    }
    decoder.decide();
    return {.author = decoder.tidy(author),
            .title = decoder.tidy(title),
            .album = decoder.tidy(album),
            .description = decoder.tidy(comment),
            .genre = std::string(genreName(bytes[127])),
            .year = yearOf(tag.substr(93, 4))};
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
    TrackTags tags;
    if (!file) {
        return tags;
    }
    const TagPlaces places = findTags(*file);
    using Kind = TagPlace::Kind;
    for (const Kind kind : {Kind::id3v2, Kind::ape, Kind::id3v1}) {
        for (const TagPlace& place : places.tags) {
            if (place.kind != kind) {
                continue;
            }
            fillIn(tags, kind == Kind::id3v2 ? fromId3v2(file, place)
                         : kind == Kind::ape ? fromApe(file, place)
                                             : fromId3v1(*file, place));
        }
    }
    return tags;
}

} // namespace zvonivec
