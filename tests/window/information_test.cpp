// The texts of the properties box and the About box.

#include "contact.h"
#include "tests/window/player_test.h"

namespace zvonivec {
namespace {

class Information : public PlayerTest {
protected:
    void SetUp() override { start(); }

    std::string propertiesOf(const FakeEngine::Track& track) {
        engine().tracks["/music/a.mp3"] = track;
        open("/music/a.mp3");
        return player().BuildPropertiesText();
    }
};

TEST_F(Information, AFileWithoutTagsHasRateLengthAndPath) {
    EXPECT_EQ(propertiesOf({}), "Přehrávání: 128 kb/s\r\n"
                                "Délka skladby: 03:00\r\n"
                                "\r\n"
                                "URL: /music/a.mp3");
}

TEST_F(Information, EveryTagHasItsLineInOrder) {
    EXPECT_EQ(propertiesOf({.attributes = {{"Filetype", "mp3"},
                                           {"Bitrate", "187000"},
                                           {"Author", "Interpret & spol."},
                                           {"Title", "Píseň"},
                                           {"Album", "Deska"},
                                           {"Description", "Poznámka"},
                                           {"Genre", "Rock"},
                                           {"WM/Year", "2004"}},
                            .durationString = "101:05"}),
              "Přehrávání: 187 kb/s\r\n"
              "Délka skladby: 101:05\r\n"
              "Interpret: Interpret & spol.\r\n"
              "Skladba: Píseň\r\n"
              "Album: Deska\r\n"
              "Komentář: Poznámka\r\n"
              "Žánr: Rock\r\n"
              "Rok: 2004\r\n"
              "\r\n"
              "URL: /music/a.mp3");
}

TEST_F(Information, AYearAloneStandsBeforeTheEmptyLine) {
    EXPECT_EQ(propertiesOf(
                  {.attributes = {{"Filetype", "mp3"}, {"Bitrate", "44100"}, {"WM/Year", "2004"}}}),
              "Přehrávání: 44100 b/s\r\n"
              "Délka skladby: 03:00\r\n"
              "Rok: 2004\r\n"
              "\r\n"
              "URL: /music/a.mp3");
}

TEST_F(Information, PropertiesWaitUntilTheRateIsKnown) {
    open("/music/a.mp3");
    engine().questionsForBitrate = 0;
    engine().answersUntilBitrateIsKnown = 5;
    engine().calls.clear();
    static_cast<void>(player().BuildPropertiesText());
    EXPECT_EQ(engine().count("isReadOnlyItem Bitrate"), 5);
}

TEST_F(Information, TheBoxesHaveTheirTitlesAndTheInformationIcon) {
    open("/music/a.mp3");
    player().ShowPropertiesBox();
    player().ShowAboutBox();
    ASSERT_EQ(boxes().boxes.size(), 2U);
    EXPECT_EQ(boxes().boxes[0].title, "Zvonivec MP3 Player 0.0.7 - vlastnosti souboru MP3");
    EXPECT_EQ(boxes().boxes[1].title, "O programu Zvonivec MP3 Player 0.0.7");
    EXPECT_EQ(boxes().boxes[0].style, 64);
    EXPECT_EQ(boxes().boxes[1].style, 64);
}

TEST_F(Information, TheAboutBoxNamesToolsGraphicsAndAddresses) {
    player().ShowAboutBox();
    const std::string text = boxes().boxes.at(0).text;
    const std::size_t drawing = text.find("\r\n\r\n");
    ASSERT_NE(drawing, std::string::npos);
    const std::size_t addresses = text.find("\r\n\r\n", drawing + 4);
    ASSERT_NE(addresses, std::string::npos);
    EXPECT_EQ(text.find("\r\n\r\n", addresses + 4), std::string::npos);
    EXPECT_NE(text.substr(0, drawing).find("Qt"), std::string::npos);
    EXPECT_NE(text.substr(drawing, addresses - drawing).find("Grafika"), std::string::npos);
    EXPECT_EQ(text.substr(addresses + 4),
              "E-mail:\t\t" ZVONIVEC_EMAIL "\r\nHome page:\t" ZVONIVEC_HOME_PAGE);
    EXPECT_STRNE(ZVONIVEC_EMAIL, "");
    EXPECT_STRNE(ZVONIVEC_HOME_PAGE, "");
}

} // namespace
} // namespace zvonivec
