#include "engine/tags/genres.h"

#include "engine/tags/tag_text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace zvonivec {

namespace {

/// The list of ID3v1, and those after 79 that players have added to it.
constexpr std::array<std::string_view, 192> NAMES = {
    "Blues",
    "Classic Rock",
    "Country",
    "Dance",
    "Disco",
    "Funk",
    "Grunge",
    "Hip-Hop",
    "Jazz",
    "Metal",
    "New Age",
    "Oldies",
    "Other",
    "Pop",
    "R&B",
    "Rap",
    "Reggae",
    "Rock",
    "Techno",
    "Industrial",
    "Alternative",
    "Ska",
    "Death Metal",
    "Pranks",
    "Soundtrack",
    "Euro-Techno",
    "Ambient",
    "Trip-Hop",
    "Vocal",
    "Jazz-Funk",
    "Fusion",
    "Trance",
    "Classical",
    "Instrumental",
    "Acid",
    "House",
    "Game",
    "Sound Clip",
    "Gospel",
    "Noise",
    "Alternative Rock",
    "Bass",
    "Soul",
    "Punk",
    "Space",
    "Meditative",
    "Instrumental Pop",
    "Instrumental Rock",
    "Ethnic",
    "Gothic",
    "Darkwave",
    "Techno-Industrial",
    "Electronic",
    "Pop-Folk",
    "Eurodance",
    "Dream",
    "Southern Rock",
    "Comedy",
    "Cult",
    "Gangsta",
    "Top 40",
    "Christian Rap",
    "Pop/Funk",
    "Jungle",
    "Native American",
    "Cabaret",
    "New Wave",
    "Psychedelic",
    "Rave",
    "Showtunes",
    "Trailer",
    "Lo-Fi",
    "Tribal",
    "Acid Punk",
    "Acid Jazz",
    "Polka",
    "Retro",
    "Musical",
    "Rock & Roll",
    "Hard Rock",
    "Folk",
    "Folk Rock",
    "National Folk",
    "Swing",
    "Fast Fusion",
    "Bebop",
    "Latin",
    "Revival",
    "Celtic",
    "Bluegrass",
    "Avant-garde",
    "Gothic Rock",
    "Progressive Rock",
    "Psychedelic Rock",
    "Symphonic Rock",
    "Slow Rock",
    "Big Band",
    "Chorus",
    "Easy Listening",
    "Acoustic",
    "Humour",
    "Speech",
    "Chanson",
    "Opera",
    "Chamber Music",
    "Sonata",
    "Symphony",
    "Booty Bass",
    "Primus",
    "Porn Groove",
    "Satire",
    "Slow Jam",
    "Club",
    "Tango",
    "Samba",
    "Folklore",
    "Ballad",
    "Power Ballad",
    "Rhythmic Soul",
    "Freestyle",
    "Duet",
    "Punk Rock",
    "Drum Solo",
    "A Cappella",
    "Euro-House",
    "Dancehall",
    "Goa",
    "Drum & Bass",
    "Club-House",
    "Hardcore Techno",
    "Terror",
    "Indie",
    "Britpop",
    "Worldbeat",
    "Polsk Punk",
    "Beat",
    "Christian Gangsta Rap",
    "Heavy Metal",
    "Black Metal",
    "Crossover",
    "Contemporary Christian",
    "Christian Rock",
    "Merengue",
    "Salsa",
    "Thrash Metal",
    "Anime",
    "Jpop",
    "Synthpop",
    "Abstract",
    "Art Rock",
    "Baroque",
    "Bhangra",
    "Big Beat",
    "Breakbeat",
    "Chillout",
    "Downtempo",
    "Dub",
    "EBM",
    "Eclectic",
    "Electro",
    "Electroclash",
    "Emo",
    "Experimental",
    "Garage",
    "Global",
    "IDM",
    "Illbient",
    "Industro-Goth",
    "Jam Band",
    "Krautrock",
    "Leftfield",
    "Lounge",
    "Math Rock",
    "New Romantic",
    "Nu-Breakz",
    "Post-Punk",
    "Post-Rock",
    "Psytrance",
    "Shoegaze",
    "Space Rock",
    "Trop Rock",
    "World Music",
    "Neoclassical",
    "Audiobook",
    "Audio Theatre",
    "Neue Deutsche Welle",
    "Podcast",
    "Indie Rock",
    "G-Funk",
    "Dubstep",
    "Garage Rock",
    "Psybient",
};

/// Returns the genre of a number or of one of ID3v2's two abbreviations; nothing for other texts.
/// 255 means that there is no genre.
std::optional<std::string_view> genreOfCode(std::string_view code) {
    if (code == "RX") {
        return "Remix";
    }
    if (code == "CR") {
        return "Cover";
    }
    const bool isNumber =
        !code.empty() && code.size() <= 3 &&
        std::ranges::all_of(code, [](char digit) { return digit >= '0' && digit <= '9'; });
    if (!isNumber) {
        return std::nullopt;
    }
    const int number = std::stoi(std::string(code));
    const std::string_view name = genreName(number);
    return !name.empty() || number == 255 ? std::optional(name) : std::nullopt;
}

} // namespace

std::string_view genreName(int number) {
    return number >= 0 && number < static_cast<int>(NAMES.size())
               ? NAMES[static_cast<std::size_t>(number)]
               : std::string_view();
}

void addGenres(std::vector<std::string>& names, std::string_view text) {
    const auto add = [&names](std::string_view name) {
        if (!name.empty() && std::ranges::find(names, name) == names.end()) {
            names.emplace_back(name);
        }
    };
    while (text.starts_with('(')) {
        if (text.starts_with("((")) {
            text.remove_prefix(1);
            break;
        }
        const std::size_t end = text.find(')');
        const auto name =
            end == std::string_view::npos ? std::nullopt : genreOfCode(text.substr(1, end - 1));
        if (!name) {
            break;
        }
        add(*name);
        text.remove_prefix(end + 1);
    }
    if (const auto name = genreOfCode(text)) {
        add(*name);
    } else {
        add(tidyText(text));
    }
}

} // namespace zvonivec
