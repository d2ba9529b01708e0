// make_corpus FOLDER: writes small files to begin with into FOLDER, one folder for each target.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace {

std::string number(std::uint32_t value, int bytes, int bits = 8) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        text.push_back(static_cast<char>(value >> static_cast<unsigned>(i * bits) &
                                         ((1U << static_cast<unsigned>(bits)) - 1)));
    }
    return text;
}

/// Frames of 128 kb/s and 44.1 kHz without sound.
std::string frames(int count, const std::string& start = {}) {
    constexpr std::size_t size = 417;
    std::string all;
    for (int i = 0; i < count; ++i) {
        std::string frame = "\xFF\xFB\x90\x04";
        frame.resize(size, '\0');
        if (i == 0) {
            frame.replace(36, start.size(), start);
        }
        all += frame;
    }
    return all;
}

std::string id3v2(char version) {
    const auto text = [version](const char* name, const std::string& value) {
        return name + number(static_cast<std::uint32_t>(value.size()), 4, version == 4 ? 7 : 8) +
               std::string(2, '\0') + value;
    };
    const std::string body =
        text("TIT2", std::string("\0T\xEDtul", 6)) + text("TPE1", "\x03Interpret") +
        text("TALB", std::string("\x01\xFF\xFE"
                                 "A\0",
                                 5)) +
        text("TCON", std::string("\0(17)Rock", 9)) + text("COMM", std::string("\0cze\0note", 9)) +
        text("TYER", std::string("\0"
                                 "2004",
                                 5));
    return std::string("ID3") + version + std::string(2, '\0') +
           number(static_cast<std::uint32_t>(body.size()), 4, 7) + body;
}

std::string id3v1() {
    std::string tag = "TAGTitle";
    tag.resize(33, ' ');
    tag += "Artist";
    tag.resize(127, '\0');
    return tag + '\x11';
}

std::string ape() {
    const auto little = [](std::uint32_t value) {
        std::string text = number(value, 4);
        return std::string(text.rbegin(), text.rend());
    };
    const std::string item = little(5) + little(0) + std::string("Title\0Titul", 11);
    return item + "APETAGEX" + little(2000) + little(static_cast<std::uint32_t>(item.size() + 32)) +
           little(1) + little(0) + std::string(8, '\0');
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    const std::string xing = "Xing" + number(15, 4) + number(9, 4) + number(4000, 4) +
                             std::string(104, '\1') + "LAME3.100" + std::string(30, '\2');
    const std::string vbri = "VBRI" + number(1, 2) + number(576, 2) + number(75, 2) +
                             number(4000, 4) + number(9, 4) + std::string(20, '\0');
    const std::map<std::string, std::string> music = {
        {"plain", frames(8)},
        {"xing", frames(9, xing)},
        {"vbri", frames(9, vbri)},
        {"id3v2.3", id3v2(3) + frames(4) + id3v1()},
        {"id3v2.4", id3v2(4) + frames(4) + ape() + id3v1()},
        {"riff", "RIFF" + std::string(4, '\x7F') + "WAVEfmt " + frames(4)},
        {"ogg", "OggS" + std::string(60, '\0')},
        {"flac", "fLaC" + std::string(60, '\0')},
    };
    const std::map<std::string, std::string> settings = {
        {"own", "[General]\r\nLeft=4807,5\r\nTop=-120\r\nOnTop=1\r\nRepeat=0\r\nVolume=70\r\n"},
        {"utf16", std::string("\xFF\xFE[\0G\0e\0n\0e\0r\0a\0l\0]\0\n\0T\0o\0p\0=\0"
                              "1\0",
                              32)},
        {"odd", "\xEF\xBB\xBF;x\r[gENERAL]\nTop = \"5\"\n[Other]\nLeft=1"},
    };
    const std::map<std::string, std::string> texts = {
        {"czech", "\x8Elu\x9Dou\xE8k\xFD k\xF9\xF2"},
        {"utf8", "Žluťoučký kůň"},
        {"genres", "(17)(RX)Rock/Pop;4"},
    };
    const std::map<std::string, std::string> numbers = {
        {"a", "4807,5"}, {"b", "-1.5e-400"}, {"c", "+1e5"}, {"d", " 00050 "}};
    const std::map<std::string, std::map<std::string, std::string>> corpora = {
        {"kind", music},      {"frames", music},      {"decoder", music},  {"tags", music},
        {"tag_texts", texts}, {"settings", settings}, {"numbers", numbers}};
    for (const auto& [target, files] : corpora) {
        const std::filesystem::path folder = std::filesystem::path(argv[1]) / target;
        std::filesystem::create_directories(folder);
        for (const auto& [name, bytes] : files) {
            std::ofstream(folder / name, std::ios::binary) << bytes;
        }
    }
    return 0;
}
