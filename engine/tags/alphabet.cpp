#include "engine/tags/alphabet.h"

#include "engine/tags/unicode.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace zvonivec {

namespace {

/// Characters of Windows-1250 from 0x80 on.
constexpr std::array<std::uint16_t, 128> WINDOWS1250 = {
    0x20AC, 0xFFFD, 0x201A, 0xFFFD, 0x201E, 0x2026, 0x2020, 0x2021, 0xFFFD, 0x2030, 0x0160, 0x2039,
    0x015A, 0x0164, 0x017D, 0x0179, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0xFFFD, 0x2122, 0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A, 0x00A0, 0x02C7, 0x02D8, 0x0141,
    0x00A4, 0x0104, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B,
    0x00B0, 0x00B1, 0x02DB, 0x0142, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x0105, 0x015F, 0x00BB,
    0x013D, 0x02DD, 0x013E, 0x017C, 0x0154, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7,
    0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD, 0x00CE, 0x010E, 0x0110, 0x0143, 0x0147, 0x00D3,
    0x00D4, 0x0150, 0x00D6, 0x00D7, 0x0158, 0x016E, 0x00DA, 0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF,
    0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7, 0x010D, 0x00E9, 0x0119, 0x00EB,
    0x011B, 0x00ED, 0x00EE, 0x010F, 0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4, 0x0151, 0x00F6, 0x00F7,
    0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9,
};
/// Characters of ISO-8859-2 from 0x80 to 0xBF; the others are those of Windows-1250.
constexpr std::array<std::uint16_t, 64> ISO88592 = {
    0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD,
    0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD,
    0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD, 0x00A0,
    0x0104, 0x02D8, 0x0141, 0x00A4, 0x013D, 0x015A, 0x00A7, 0x00A8, 0x0160, 0x015E, 0x0164,
    0x0179, 0x00AD, 0x017D, 0x017B, 0x00B0, 0x0105, 0x02DB, 0x0142, 0x00B4, 0x013E, 0x015B,
    0x02C7, 0x00B8, 0x0161, 0x015F, 0x0165, 0x017A, 0x02DD, 0x017E, 0x017C,
};
/// Characters of Windows-1252 from 0x80 to 0x9F; the others have the numbers of their bytes.
constexpr std::array<std::uint16_t, 32> WINDOWS1252 = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

char32_t characterOf(unsigned char byte, Alphabet alphabet) {
    if (byte < 0x80) {
        return byte;
    }
    const std::size_t index = byte - 0x80U;
    switch (alphabet) {
    case Alphabet::iso88592:
        return index < ISO88592.size() ? ISO88592[index] : WINDOWS1250[index];
    case Alphabet::windows1252:
        return index < WINDOWS1252.size() ? WINDOWS1252[index] : byte;
    case Alphabet::windows1250:
        break;
    }
    return WINDOWS1250[index];
}

/// Where a language uses a letter.
struct Habit {
    char32_t letter; ///< in lower case
    std::string_view
        before; ///< letters that stand before it, without accents; ' ': it begins a word
    std::string_view after; ///< letters that stand after it; ' ': it ends a word
    bool consonant = false;
};

/// Letters that have the same byte in all three alphabets only have to belong to the language. The
/// others are in habits, apart from those that an alphabet lacks.
struct Language {
    std::u32string_view shared;
    std::span<const Habit> habits;
    /// A consonant between two others, of which the habits know but which is rare elsewhere.
    std::span<const std::string_view> clusters = {};
};

constexpr std::array CZECH_HABITS = {
    Habit{U'č', " aeiouyrlntvb", " aeiouykntl", true},
    Habit{U'ď', " aeiouyr", " aouktmjl", true},
    Habit{U'ě', "dtnbpmvf", " bcdhjklmnprstvz"},
    Habit{U'ň', " aeiouym", " aoukstmc", true},
    Habit{U'ř', " aeiouyptkbdhvmf", " aeiouysktnbmcl", true},
    Habit{U'š', " aeioulrnpktvdmbz", " aeiouytkpvcnlmr", true},
    Habit{U'ť', " aeiouysln", " aouknms", true},
    Habit{U'ů', "bcdhjklmnprstvz", " bcdhjklmnprstvz"},
    Habit{U'ž', " aeioudlrnmvsbkz", " aeiouydknlmvrhs", true},
};
/// Of ř alone: hřbitov, zahřmít, křtiny, vnitřní, kotřmelec, dřník, třpyt, třtina.
constexpr std::array<std::string_view, 8> CZECH_CLUSTERS = {"hřb", "hřm", "křt", "třn",
                                                            "třm", "dřn", "třp", "třt"};

constexpr std::array SLOVAK_HABITS = {
    Habit{U'č', " aeiouyrlntvb", " aeiouykntl", true},
    Habit{U'ď', " aeiouyr", " aouktmjl", true},
    Habit{U'ĺ', "tkhvmjdzsb", "pbcktdznsm", false},
    Habit{U'ľ', " aeiouybpvkhzmsd", " aouknmcstbdvz", true},
    Habit{U'ň', " aeiouym", " aoukstmc", true},
    Habit{U'ŕ', "vmktdhcszb", "bctkdnszv", false},
    Habit{U'š', " aeioulrnpktvdmbz", " aeiouytkpvcnlmr", true},
    Habit{U'ť', " aeiouysln", " aouknms", true},
    Habit{U'ž', " aeioudlrnmvsbkz", " aeiouydknlmvrhs", true},
};

constexpr std::array POLISH_HABITS = {
    Habit{U'ą', "bcdghiklmnprstwzj", " bcdgkljnpstwz"},
    Habit{U'ć', "aeiouysejn", " mwkpb", true},
    Habit{U'ę', "ibcdgklmnprstwzhj", " bcdgkpstzwl"},
    Habit{U'ł', " aeiouybcdghkmpstwz", " aeiouykdbtsmwzpnc", true},
    Habit{U'ń', "aeiouy", " csktdbmzg", true},
    Habit{U'ś', " aeiouyjrlpwn", " cmwlpnrbti", true},
    Habit{U'ź', " aeiouyr", " drnlb", true},
    Habit{U'ż', " aeiouydrlnzwkb", " aeiouydnmwtklrb", true},
};

constexpr std::array HUNGARIAN_HABITS = {
    Habit{U'ő', " bcdefghjklmnprstvyz", " bcdfghklmnprstvz"},
    Habit{U'ű', "bfgkmnrtyzvhd", " nzsvhkg"},
};

constexpr std::array WESTERN_HABITS = {
    Habit{U'à', " lcdjntrspgbmv", " "},
    Habit{U'ã', "ncmlsgrtdhpv", "oes"},
    Habit{U'å', " abdfghjklmnprstvy", " abdfghjklmnprstv"},
    Habit{U'æ', " bdfghjklmnprstv", " bdefghjklmnprstv"},
    Habit{U'è', "bcdfghijlmnoprstuvyz", "bcdglmnpqrstvxz"},
    Habit{U'ê', " bcdfghjlmnpqrstuv", "tmvlcnrphsuzgbq"},
    Habit{U'ì', "sdrtlpncm", " "},
    Habit{U'ï', "aoue", "vsfldnrtmckpze"},
    Habit{U'ñ', " aeiou", "aeiou", true},
    Habit{U'ò', "rldtncpms", " "},
    Habit{U'õ', "cslnptr", "e"},
    Habit{U'ø', " bdfghjklmnprstvy", " bdfghjklmnprstvy"},
    Habit{U'ù', "oiguqt", " "},
    Habit{U'û', "srgcblmpdqfot", "rtlmcneps"},
    Habit{U'œ', " bcfmnsv", "u"},
};

struct Candidate {
    Alphabet alphabet;
    Language language;
};

constexpr Language CZECH = {U"áéíóúý", CZECH_HABITS, CZECH_CLUSTERS};
constexpr Language SLOVAK = {U"áäéíóôúý", SLOVAK_HABITS};
constexpr Language POLISH = {U"ó", POLISH_HABITS};
constexpr Language HUNGARIAN = {U"áéíóöúü", HUNGARIAN_HABITS};
constexpr Language WESTERN = {U"áâäçéëíîóôöúüß", WESTERN_HABITS};

/// In the order in which ties are decided.
constexpr std::array CANDIDATES = {
    Candidate{Alphabet::windows1250, CZECH},   Candidate{Alphabet::windows1250, SLOVAK},
    Candidate{Alphabet::windows1250, POLISH},  Candidate{Alphabet::windows1250, HUNGARIAN},
    Candidate{Alphabet::iso88592, CZECH},      Candidate{Alphabet::iso88592, SLOVAK},
    Candidate{Alphabet::iso88592, POLISH},     Candidate{Alphabet::iso88592, HUNGARIAN},
    Candidate{Alphabet::windows1252, WESTERN},
};

// Points of a letter. A letter that a language doesn't have weighs more than an unusual neighbour.
constexpr int FITS = 1;
constexpr int UNUSUAL = -1;
constexpr int CROWDED = -2;
constexpr int FOREIGN_SHARED = -1;
constexpr int FOREIGN = -3;
constexpr int NO_CHARACTER = -8;

/// Letters with accents and the letters that they are without.
constexpr std::u32string_view ACCENTED = U"áàâäãåąæčćçďđéèêëěęíìîïĺľłñńňóòôöõőøœřŕśšßťúùûüůűýÿžźż";
constexpr std::string_view BASES = "aaaaaaaacccddeeeeeeiiiilllnnnoooooooorrssstuuuuuuyyzzz";

char32_t lowered(char32_t character) {
    if (character < 0x80) {
        return character >= 'A' && character <= 'Z' ? character + 0x20 : character;
    }
    if (character >= 0xC0 && character < 0xDF && character != 0xD7) {
        return character + 0x20;
    }
    // From U+0100 on a capital letter is followed by its small letter.
    const bool even =
        (character >= 0x100 && character < 0x138) || (character >= 0x14A && character < 0x178);
    const bool odd =
        (character >= 0x139 && character < 0x149) || (character >= 0x179 && character < 0x17F);
    return (even && character % 2 == 0) || (odd && character % 2 == 1) ? character + 1 : character;
}

/// Folds a character to a letter from a to z, or to ' ' when it is no letter.
char folded(char32_t character) {
    if (character >= 'a' && character <= 'z') {
        return static_cast<char>(character);
    }
    const std::size_t place = ACCENTED.find(character);
    return place < BASES.size() ? BASES[place] : ' ';
}

bool isVowel(char letter) {
    return std::string_view("aeiouy").find(letter) != std::string_view::npos;
}

bool has(std::string_view letters, char letter) {
    return letters.find(letter) != std::string_view::npos;
}

/// Punctuation that texts of every language have.
bool isPunctuation(char32_t character) {
    return (character >= 0x2010 && character <= 0x203A) ||
           std::u32string_view(U"\u00A0§¨«»´°·\u00AD€").find(character) !=
               std::u32string_view::npos;
}

/// One text in one alphabet.
class DecodedText {
public:
    DecodedText(std::string_view bytes, Alphabet alphabet) : bytes_(bytes), alphabet_(alphabet) {
        for (const char byte : bytes) {
            characters_.push_back(lowered(characterOf(static_cast<unsigned char>(byte), alphabet)));
        }
    }

    [[nodiscard]] int score(const Language& language) const {
        int points = 0;
        for (std::size_t i = 0; i < characters_.size(); ++i) {
            if (characters_[i] >= 0x80) {
                points += scoreAt(i, language);
            }
        }
        return points;
    }

private:
    [[nodiscard]] int scoreAt(std::size_t i, const Language& language) const {
        const char32_t character = characters_[i];
        for (const Habit& habit : language.habits) {
            if (habit.letter == character) {
                return scoreOf(habit, i, language);
            }
        }
        if (language.shared.find(character) != std::u32string_view::npos) {
            return 0;
        }
        if (character == REPLACEMENT) {
            return NO_CHARACTER;
        }
        if (character == U'¡' || character == U'¿') {
            return opensAQuestion(i) ? FITS : FOREIGN;
        }
        if (isPunctuation(character)) {
            return isPaired(i) ? FITS : 0;
        }
        return folded(character) != ' ' && isInAllAlphabets(i) ? FOREIGN_SHARED : FOREIGN;
    }

    [[nodiscard]] int scoreOf(const Habit& habit, std::size_t i, const Language& language) const {
        const char before = neighbour(i, -1);
        const char after = neighbour(i, 1);
        if (before == ' ' && after == ' ' && habit.letter != U'à') {
            return UNUSUAL;
        }
        int points = has(habit.before, before) ? FITS : UNUSUAL;
        points += has(habit.after, after) ? FITS : UNUSUAL;
        const bool crowded =
            habit.consonant && before != ' ' && after != ' ' && !isVowel(before) && !isVowel(after);
        if (crowded && !isKnownCluster(before, habit.letter, after, language)) {
            points += CROWDED;
        }
        return points;
    }

    static bool isKnownCluster(char before, char32_t letter, char after, const Language& language) {
        std::string cluster(1, before);
        append(cluster, letter);
        cluster += after;
        return std::ranges::find(language.clusters, cluster) != language.clusters.end();
    }

    [[nodiscard]] char neighbour(std::size_t i, int step) const {
        const std::size_t at = i + static_cast<std::size_t>(step); // wraps at the start
        return at < characters_.size() ? folded(characters_[at]) : ' ';
    }

    /// Whether the byte has the same character in all alphabets.
    [[nodiscard]] bool isInAllAlphabets(std::size_t i) const {
        const auto byte = static_cast<unsigned char>(bytes_[i]);
        const char32_t here = characterOf(byte, alphabet_);
        return here == characterOf(byte, Alphabet::windows1250) &&
               here == characterOf(byte, Alphabet::iso88592) &&
               here == characterOf(byte, Alphabet::windows1252);
    }

    /// Whether an inverted mark stands before a word and has its counterpart after it.
    [[nodiscard]] bool opensAQuestion(std::size_t i) const {
        const char32_t counterpart = characters_[i] == U'¡' ? U'!' : U'?';
        return neighbour(i, -1) == ' ' && neighbour(i, 1) != ' ' &&
               characters_.find(counterpart, i) != std::u32string::npos;
    }

    /// Whether a quotation mark « or » has its counterpart.
    [[nodiscard]] bool isPaired(std::size_t i) const {
        return (characters_[i] == U'«' && characters_.find(U'»', i) != std::u32string::npos) ||
               (characters_[i] == U'»' && characters_.rfind(U'«', i) != std::u32string::npos);
    }

    std::string_view bytes_;
    Alphabet alphabet_;
    std::u32string characters_;
};

} // namespace

Alphabet alphabetOf(std::span<const std::string_view> texts) {
    constexpr std::size_t enough = 1000; // bytes of a text that decide
    std::optional<int> best;
    Alphabet alphabet = Alphabet::windows1250;
    for (const Candidate& candidate : CANDIDATES) {
        int points = 0;
        for (const std::string_view text : texts) {
            points +=
                DecodedText(text.substr(0, enough), candidate.alphabet).score(candidate.language);
        }
        if (!best || points > *best) {
            best = points;
            alphabet = candidate.alphabet;
        }
    }
    return alphabet;
}

std::string decode(std::string_view bytes, Alphabet alphabet) {
    std::string text;
    for (const char byte : bytes) {
        append(text, characterOf(static_cast<unsigned char>(byte), alphabet));
    }
    return text;
}

} // namespace zvonivec
