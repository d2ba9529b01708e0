#include "settings/number_text.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sstream>

namespace zvonivec {
namespace {

/// A line of the table: a text in quotes and its value as each type, "ERR" for none.
struct Row {
    std::string text;
    std::string single;
    std::string integer;
    std::string longInteger;
};

std::vector<Row> table() {
    std::ifstream file(std::string(TEST_DATA) + "/numbers.tsv");
    std::vector<Row> rows;
    std::string line;
    std::getline(file, line); // the heads
    while (std::getline(file, line)) {
        std::istringstream columns(line);
        Row row;
        std::getline(columns, row.text, '\t');
        row.text = row.text.substr(1, row.text.size() - 2);
        columns >> row.single >> row.integer >> row.longInteger;
        rows.push_back(row);
    }
    return rows;
}

TEST(NumberText, ReadsEveryTextOfTheTable) {
    const auto rows = table();
    ASSERT_EQ(rows.size(), 41U);
    for (const Row& row : rows) {
        SCOPED_TRACE('"' + row.text + '"');
        const auto single = toSingle(row.text);
        ASSERT_EQ(single.has_value(), row.single != "ERR");
        if (single) {
            EXPECT_EQ(*single, std::stof(row.single));
        }
        const auto integer = toInteger(row.text);
        ASSERT_EQ(integer.has_value(), row.integer != "ERR");
        if (integer) {
            EXPECT_EQ(*integer, std::stoi(row.integer));
        }
        const auto longInteger = toLong(row.text);
        ASSERT_EQ(longInteger.has_value(), row.longInteger != "ERR");
        if (longInteger) {
            EXPECT_EQ(*longInteger, std::stoi(row.longInteger));
        }
    }
}

TEST(NumberText, RefusesWhatIsNoNumberAsAWhole) {
    for (const char* text :
         {"+-1",  "-+1",    "--1", "++1",   "1-",    "e5",      "1e",       "1e+",
          ".",    ",",      "-",   "+",     "1 2",   "0x1p3",   "infinity", "+inf",
          "-nan", "nan(1)", "1f",  "1e999", "1.e5.", "\xC2\xA0"}) {
        EXPECT_EQ(toSingle(text), std::nullopt) << text;
        EXPECT_EQ(toLong(text), std::nullopt) << text;
    }
    EXPECT_EQ(toSingle(std::string_view("1\0", 2)), std::nullopt);
    EXPECT_EQ(toSingle(std::string(1000000, '9')), std::nullopt);
}

TEST(NumberText, ReadsExponentsAndSigns) {
    EXPECT_EQ(toSingle("1.5E2"), 150.0F);
    EXPECT_EQ(toSingle("-2,5e-1"), -0.25F);
    EXPECT_EQ(toInteger("3.2e4"), 32000);
    EXPECT_EQ(toLong("-1e9"), -1000000000);
}

TEST(NumberText, ReadsNumbersTooCloseToZeroAsZero) {
    const std::string zeros(400, '0');
    for (const std::string& text :
         {std::string("1e-400"), std::string("-1e-400"), "0," + zeros + "1", "." + zeros + "1e+5",
          "1e-" + std::string(50, '9'), "0" + zeros + "1e-800", zeros + "." + zeros + "1"}) {
        EXPECT_EQ(toSingle(text), 0.0F) << text;
        EXPECT_EQ(toInteger(text), 0) << text;
        EXPECT_EQ(toLong(text), 0) << text;
    }
    EXPECT_EQ(toSingle("1e-60"), 0.0F); // a double but no single
    EXPECT_EQ(toSingle("0." + zeros + "1e401"), 1.0F);
    EXPECT_EQ(toLong("1" + zeros + "e-400"), 1);
    for (const std::string& text :
         {std::string("1e400"), "1" + zeros, "0." + zeros + "1e+900", "1" + zeros + "e-1",
          "1e" + std::string(50, '9'), "1e+" + std::string(50, '9'), "1" + zeros + ".5e0"}) {
        EXPECT_EQ(toSingle(text), std::nullopt) << text;
        EXPECT_EQ(toLong(text), std::nullopt) << text;
    }
}

TEST(NumberText, WritesPlainDigits) {
    EXPECT_EQ(numberText(4807.5F, '.'), "4807.5");
    EXPECT_EQ(numberText(4807.5F, ','), "4807,5");
    EXPECT_EQ(numberText(-120.0F, ','), "-120");
    EXPECT_EQ(numberText(0.0F, ','), "0");
    EXPECT_EQ(numberText(1234567.0F, ','), "1234567");
    EXPECT_EQ(numberText(-0.001F, '.'), "-0.001");
    EXPECT_EQ(numberText(std::int32_t{-70}), "-70");
}

TEST(NumberText, ReadsBackWhatItWrites) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> places(-1e6F, 1e6F);
    for (int i = 0; i < 20000; ++i) {
        const float place = places(random);
        ASSERT_EQ(toSingle(numberText(place, ',')), place);
        ASSERT_EQ(toSingle(numberText(place, '.')), place);
    }
    for (const float limit :
         {std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()}) {
        EXPECT_EQ(toSingle(numberText(limit, '.')), limit);
    }
}

} // namespace
} // namespace zvonivec
