// Which alphabet tags are taken to be in. The pairs of artist and title are put together from word
// lists, a file for each language in tests/data/alphabets.

#include "engine/tags/alphabet.h"

#include "tests/support/process.h"

#include <cctype>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zvonivec {

namespace {

using Pair = std::pair<std::string, std::string>;

/// Lists of words by name: first names, family names, two halves of a title, whole titles.
std::map<std::string, std::vector<std::string>> wordsOf(const std::string& language) {
    std::map<std::string, std::vector<std::string>> lists;
    std::istringstream file(
        support::readFile(std::string(ALPHABET_WORDS) + "/" + language + ".txt"));
    for (std::string line; std::getline(file, line);) {
        const std::size_t tab = line.find('\t');
        std::istringstream words(line.substr(tab + 1));
        for (std::string word; std::getline(words, word, '|');) {
            lists[line.substr(0, tab)].push_back(word);
        }
    }
    return lists;
}

std::vector<Pair> pairsOf(const std::string& language) {
    auto lists = wordsOf(language);
    const auto& whole = lists["extra"];
    std::vector<Pair> pairs;
    std::size_t i = 0;
    for (const std::string& first : lists["first"]) {
        for (const std::string& last : lists["last"]) {
            std::string title = whole[i / 3 % whole.size()];
            if (i % 3 != 0) {
                title = lists["left"][i % lists["left"].size()] + " " +
                        lists["right"][i / 7 % lists["right"].size()];
            }
            pairs.emplace_back(first + " " + last, title);
            ++i;
        }
    }
    // Titles without an artist, which give the least to go by.
    for (const std::string& left : lists["left"]) {
        for (std::size_t k = 0; k < 5; ++k) {
            pairs.emplace_back("", left + " " + lists["right"][(i + k) % lists["right"].size()]);
        }
        ++i;
    }
    for (const std::string& title : whole) {
        pairs.emplace_back("", title);
    }
    return pairs;
}

/// Bytes of a text in an alphabet; nothing when it has no room for a letter.
std::optional<std::string> encode(std::string_view text, Alphabet alphabet) {
    static std::map<std::pair<Alphabet, std::string>, char> bytes;
    if (bytes.empty()) {
        for (const Alphabet each :
             {Alphabet::windows1250, Alphabet::iso88592, Alphabet::windows1252}) {
            for (int byte = 0x80; byte < 0x100; ++byte) {
                const char character = static_cast<char>(byte);
                bytes[{each, decode(std::string_view(&character, 1), each)}] = character;
            }
        }
    }
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const auto first = static_cast<unsigned char>(text[i]);
        const std::size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : 3;
        const std::string letter(text.substr(i, size));
        if (size == 1) {
            result += letter;
        } else if (const auto found = bytes.find({alphabet, letter}); found != bytes.end()) {
            result += found->second;
        } else {
            return std::nullopt;
        }
        i += size;
    }
    return result;
}

struct Row {
    const char* language;
    Alphabet alphabet;
    double most; ///< per cent of pairs that may be wrong
};

class Alphabets : public testing::TestWithParam<Row> {};

TEST_P(Alphabets, AreRecognised) {
    const Row& row = GetParam();
    const std::vector<Pair> pairs = pairsOf(row.language);
    EXPECT_GE(pairs.size(), 500U);
    int wrong = 0;
    std::string examples;
    for (const auto& [artist, title] : pairs) {
        const auto first = encode(artist, row.alphabet);
        const auto second = encode(title, row.alphabet);
        ASSERT_TRUE(first && second) << artist << ", " << title;
        const std::vector<std::string_view> texts = {*first, *second};
        const Alphabet found = alphabetOf(texts);
        if (decode(*first, found) != artist || decode(*second, found) != title) {
            ++wrong;
            examples += "\n" + artist + ", " + title + ": " + decode(*first, found) + ", " +
                        decode(*second, found);
        }
    }
    const double percent = 100.0 * wrong / static_cast<double>(pairs.size());
    RecordProperty("pairs", static_cast<int>(pairs.size()));
    RecordProperty("wrong", wrong);
    EXPECT_LE(percent, row.most) << wrong << " of " << pairs.size() << examples;
}

INSTANTIATE_TEST_SUITE_P(
    All, Alphabets,
    testing::Values(Row{"czech", Alphabet::windows1250, 0}, Row{"czech", Alphabet::iso88592, 0},
                    Row{"polish", Alphabet::windows1250, 2}, Row{"polish", Alphabet::iso88592, 2},
                    Row{"spanish", Alphabet::windows1252, 2},
                    Row{"french", Alphabet::windows1252, 2},
                    Row{"german", Alphabet::windows1252, 2},
                    Row{"scandinavian", Alphabet::windows1252, 2}),
    [](const auto& tested) {
        const std::string language = tested.param.language;
        return static_cast<char>(std::toupper(language[0])) + language.substr(1) +
               (tested.param.alphabet == Alphabet::iso88592 ? "InIso88592" : "InWindows");
    });

TEST(Alphabet, OfPlainTextIsWindows1250) {
    EXPECT_EQ(alphabetOf({}), Alphabet::windows1250);
    const std::vector<std::string_view> plain = {"Plain", ""};
    EXPECT_EQ(alphabetOf(plain), Alphabet::windows1250);
}

TEST(Alphabet, OfAllTextsOfATagIsOne) {
    // The title alone could be French; the artist tells.
    const std::vector<std::string_view> texts = {"Ji\xF8\xED \x8A\x9D"
                                                 "astn\xFD",
                                                 "Pr\xE8s"};
    EXPECT_EQ(alphabetOf(texts), Alphabet::windows1250);
}

TEST(Alphabet, OfCapitalsIsFoundToo) {
    const std::string artist = encode("ŁUKASZ WOŹNIAK", Alphabet::iso88592).value_or("");
    const std::string title = encode("IDŹ JUŻ SPAĆ", Alphabet::iso88592).value_or("");
    const std::vector<std::string_view> texts = {artist, title};
    EXPECT_EQ(alphabetOf(texts), Alphabet::iso88592);
}

TEST(Alphabet, DecodesEveryByte) {
    EXPECT_EQ(decode("\x8A\xA3\xF8", Alphabet::windows1250), "ŠŁř");
    EXPECT_EQ(decode("\xA9\xB5\xF8", Alphabet::iso88592), "Šľř");
    EXPECT_EQ(decode("\x9C\xBF\xF8", Alphabet::windows1252), "œ¿ø");
    EXPECT_EQ(decode("\x81", Alphabet::windows1252), "\xEF\xBF\xBD");
}

} // namespace

} // namespace zvonivec
