// engine_probe FILE...: what the engine makes of each file, one JSON object a line. For scripts and
// tests; it plays nothing, and reads nothing but its arguments.

#include "engine/loaded_file.h"
#include "engine/mp3_decoder.h"
#include "playback/PlayerEngine.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace {

using namespace zvonivec;

/// JSON text; bytes that are no UTF-8, as a file's name may have, are written as Latin-1 would be.
std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned byte = static_cast<unsigned char>(text[i]);
        const std::size_t length = byte < 0x80   ? 1
                                   : byte < 0xC2 ? 0
                                   : byte < 0xE0 ? 2
                                   : byte < 0xF0 ? 3
                                   : byte < 0xF5 ? 4
                                                 : 0;
        bool valid = length != 0 && i + length <= text.size();
        for (std::size_t k = 1; valid && k < length; ++k) {
            valid = (static_cast<unsigned char>(text[i + k]) & 0xC0U) == 0x80;
        }
        if (byte == '"' || byte == '\\') {
            result += {'\\', text[i]};
        } else if (byte < 0x20 || !valid) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", byte);
            result += escape;
        } else {
            result += text.substr(i, length);
            i += length - 1;
        }
    }
    return result + "\"";
}

class Object {
public:
    void add(std::string_view name, std::string_view text) { put(name, quoted(text)); }
    void add(std::string_view name, std::int64_t number) { put(name, std::to_string(number)); }
    void add(std::string_view name, double number) {
        char text[64];
        std::snprintf(text, sizeof text, "%.6f", number);
        put(name, text);
    }
    [[nodiscard]] std::string line() const { return "{" + members_ + "}\n"; }

private:
    void put(std::string_view name, std::string_view value) {
        members_ += members_.empty() ? "" : ", ";
        members_ += quoted(name);
        members_ += ": ";
        members_ += value;
    }
    std::string members_;
};

/// Decodes the whole track as playing it would.
void addSamples(Object& object, const std::string& path) {
    LoadedFile file(path);
    if (!file.measure()) {
        object.add("error", file.reader() ? "not an MP3 file" : "can't be opened");
        return;
    }
    Mp3Decoder decoder(file.reader(), *file.kind().stream, *file.measure());
    QCryptographicHash hash(QCryptographicHash::Sha256);
    std::int64_t count = 0;
    auto block =
        decoder.seek(0) ? decoder.read() : Mp3Decoder::Block{Mp3Decoder::Result::failed, {}};
    for (; block.result == Mp3Decoder::Result::samples; block = decoder.read()) {
        QByteArray bytes;
        for (const std::int16_t sample : block.samples) {
            bytes.append(static_cast<char>(sample & 0xFF));
            bytes.append(static_cast<char>(sample >> 8 & 0xFF));
        }
        hash.addData(bytes);
        count += static_cast<std::int64_t>(block.samples.size()) / decoder.channels();
    }
    object.add("samples", count);
    object.add("rate", static_cast<std::int64_t>(decoder.sampleRate()));
    object.add("channels", static_cast<std::int64_t>(decoder.channels()));
    object.add("sha256", hash.result().toHex().toStdString());
    if (block.result == Mp3Decoder::Result::failed) {
        object.add("error", "can't be decoded to its end");
    }
}

std::string probe(const std::string& path) {
    // Nothing is played, so no event comes and nothing is ever posted.
    const std::unique_ptr<PlayerEngine> engine = createPlayerEngine({});
    engine->settings().setAutoStart(false);
    engine->setURL(path);
    const PlayerEngine::Media& media = engine->currentMedia();
    while (!media.isReadOnlyItem("Bitrate")) {
    }
    Object object;
    object.add("file", path);
    for (const char* name : {"Filetype", "Bitrate"}) {
        object.add(name, media.getItemInfo(name));
    }
    object.add("duration", media.duration());
    object.add("durationString", media.durationString());
    for (const char* name : {"Author", "Title", "Album", "Description", "Genre", "WM/Year"}) {
        object.add(name, media.getItemInfo(name));
    }
    addSamples(object, path);
    return object.line();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs(
            "usage: engine_probe FILE...\n"
            "Prints what the player's engine makes of each file, one JSON object a line.\n"
            "sha256 is of the decoded samples: 16 bits, little-endian, channels alternating.\n",
            stderr);
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        std::fputs(probe(argv[i]).c_str(), stdout);
    }
    return 0;
}
