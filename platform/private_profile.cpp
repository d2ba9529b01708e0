#include "platform/private_profile.h"

#include <algorithm>
#include <cstddef>

namespace zvonivec::private_profile {

namespace {

// --- Bytes and characters ---------------------------------------------------------------------

enum class Encoding { bytes, utf16LittleEndian, utf16BigEndian };

/// A file as units of text of one byte each, or of two bytes in UTF-16.
struct Text {
    std::string_view mark; ///< byte order mark
    Encoding encoding = Encoding::bytes;
    std::u16string units;
    std::string_view rest; ///< bytes that aren't read: half a unit, or half a line of a beginning
};

/// Leaves an unfinished last line to the rest.
void keepWholeLines(Text& text, std::string_view file) {
    std::u16string_view units = text.units;
    if (units.ends_with(u'\r')) {
        units.remove_suffix(1); // its LF may have been cut off
    }
    const std::size_t count = units.find_last_of(u"\r\n") + 1; // 0 without a line end
    text.units.resize(count);
    text.rest = file.substr(count * (text.encoding == Encoding::bytes ? 1 : 2));
}

Text decode(std::string_view file, Extent extent) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
    constexpr std::string_view littleEndianMark = "\xFF\xFE";
    constexpr std::string_view bigEndianMark = "\xFE\xFF";
    Text text;
    for (const auto& [mark, encoding] : {std::pair(utf8Mark, Encoding::bytes),
                                         std::pair(littleEndianMark, Encoding::utf16LittleEndian),
                                         std::pair(bigEndianMark, Encoding::utf16BigEndian)}) {
        if (file.starts_with(mark)) {
            text.mark = file.substr(0, mark.size());
            text.encoding = encoding;
            break;
        }
    }
    file.remove_prefix(text.mark.size());
    const auto byte = [&file](std::size_t i) {
        return static_cast<char16_t>(static_cast<unsigned char>(file[i]));
    };
    if (text.encoding == Encoding::bytes) {
        text.units.reserve(file.size());
        for (std::size_t i = 0; i < file.size(); ++i) {
            text.units.push_back(byte(i));
        }
    } else {
        const bool little = text.encoding == Encoding::utf16LittleEndian;
        for (std::size_t i = 0; i + 1 < file.size(); i += 2) {
            const char16_t low = byte(little ? i : i + 1);
            const char16_t high = byte(little ? i + 1 : i);
            text.units.push_back(static_cast<char16_t>(high << 8U | low));
        }
        text.rest = file.substr(file.size() - file.size() % 2);
    }
    if (extent == Extent::beginning) {
        keepWholeLines(text, file);
    }
    return text;
}

std::string encode(const Text& text) {
    std::string file(text.mark);
    for (const char16_t unit : text.units) {
        const char low = static_cast<char>(unit & 0xFFU);
        const char high = static_cast<char>(unit >> 8U);
        switch (text.encoding) {
        case Encoding::bytes:
            file.push_back(low);
            break;
        case Encoding::utf16LittleEndian:
            file.append({low, high});
            break;
        case Encoding::utf16BigEndian:
            file.append({high, low});
            break;
        }
    }
    return file.append(text.rest);
}

std::u16string widened(std::string_view text) {
    std::u16string units;
    for (const char character : text) {
        units.push_back(static_cast<unsigned char>(character));
    }
    return units;
}

std::string narrowed(std::u16string_view units, Encoding encoding) {
    const char16_t last = encoding == Encoding::bytes ? 0xFF : 0x7F;
    std::string text;
    for (const char16_t unit : units) {
        text.push_back(unit <= last ? static_cast<char>(unit) : '?');
    }
    return text;
}

// --- Lines ------------------------------------------------------------------------------------

std::u16string_view trimmed(std::u16string_view text) {
    constexpr std::u16string_view blanks = u" \t\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::u16string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool sameName(std::u16string_view a, std::u16string_view b) {
    const auto lowered = [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    };
    return std::ranges::equal(a, b, {}, lowered, lowered);
}

/// The places of a line in the text.
struct Line {
    std::size_t begin = 0;
    std::size_t end = 0;  ///< where the line end begins
    std::size_t next = 0; ///< behind the line end

    [[nodiscard]] std::u16string_view in(std::u16string_view text) const {
        return text.substr(begin, end - begin);
    }
};

/// Returns the line that begins at a place.
Line lineAt(std::u16string_view text, std::size_t begin) {
    const std::size_t end = std::min(text.find_first_of(u"\r\n", begin), text.size());
    std::size_t next = std::min(end + 1, text.size());
    if (text.substr(end).starts_with(u"\r\n")) {
        next = end + 2;
    }
    return {begin, end, next};
}

std::optional<std::u16string_view> sectionName(std::u16string_view line) {
    line = trimmed(line);
    const std::size_t end = line.rfind(u']');
    if (!line.starts_with(u'[') || end == std::u16string_view::npos) {
        return std::nullopt;
    }
    return trimmed(line.substr(1, end - 1));
}

/// The place of a key's value, or the place for a new line with the key.
struct Place {
    bool hasSection = false;
    bool hasKey = false;
    bool hasOthers = false; ///< there is any section
    std::size_t begin = 0;  ///< behind the "=", or where the new line begins
    std::size_t end = 0;    ///< of an existing value
};

Place placeOf(std::u16string_view text, std::u16string_view section, std::u16string_view key,
              Extent extent) {
    Place place{.begin = extent == Extent::beginning ? 0 : text.size()};
    for (std::size_t next = 0; next < text.size();) {
        const Line line = lineAt(text, next);
        next = line.next;
        const std::u16string_view content = line.in(text);
        if (const auto name = sectionName(content)) {
            if (place.hasSection) {
                break;
            }
            place.hasSection = sameName(*name, section);
            if (place.hasSection) {
                place.begin = line.next;
            } else if (extent == Extent::beginning && !place.hasOthers) {
                place.begin = line.begin;
            }
            place.hasOthers = true;
        } else if (place.hasSection) {
            const std::size_t equals = content.find(u'=');
            if (equals != std::u16string_view::npos &&
                sameName(trimmed(content.substr(0, equals)), key)) {
                return {.hasSection = true,
                        .hasKey = true,
                        .begin = line.begin + equals + 1,
                        .end = line.end};
            }
        }
        if (extent == Extent::wholeFile && place.hasSection && !trimmed(content).empty()) {
            place.begin = line.next;
        }
    }
    return place;
}

std::u16string_view withoutQuotes(std::u16string_view value) {
    if (value.size() >= 2 && value.front() == value.back() &&
        (value.front() == u'"' || value.front() == u'\'')) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}

std::u16string lineEndOf(std::u16string_view text) {
    const Line first = lineAt(text, 0);
    return first.next > first.end ? std::u16string(text.substr(first.end, first.next - first.end))
                                  : u"\r\n";
}

} // namespace

std::optional<std::string> value(std::string_view file, std::string_view section,
                                 std::string_view key, Extent extent) {
    const Text text = decode(file, extent);
    const Place place = placeOf(text.units, widened(section), widened(key), extent);
    if (!place.hasKey) {
        return std::nullopt;
    }
    const std::u16string_view units(text.units);
    return narrowed(withoutQuotes(trimmed(units.substr(place.begin, place.end - place.begin))),
                    text.encoding);
}

std::string withValue(std::string_view file, std::string_view section, std::string_view key,
                      std::string_view value, Extent extent) {
    Text text = decode(file, extent);
    const Place place = placeOf(text.units, widened(section), widened(key), extent);
    if (place.hasKey) {
        text.units.replace(place.begin, place.end - place.begin, widened(value));
        return encode(text);
    }
    const std::u16string lineEnd = lineEndOf(text.units);
    std::u16string added;
    if (place.begin > 0 && text.units[place.begin - 1] != u'\n' &&
        text.units[place.begin - 1] != u'\r') {
        added += lineEnd; // the file's last line has no line end
    }
    if (!place.hasSection) {
        added += u"[" + widened(section) + u"]" + lineEnd;
    }
    added += widened(key) + u"=" + widened(value) + lineEnd;
    text.units.insert(place.begin, added);
    return encode(text);
}

} // namespace zvonivec::private_profile
