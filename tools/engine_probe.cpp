// engine_probe FILE...: prints what the engine makes of each file, one JSON object a line. For
// scripts and tests. Plays nothing and reads nothing but the files.

#include "engine/decoding/mp3_decoder.h"
#include "engine/failure.h"
#include "engine/loaded_file.h"
#include "playback/PlayerEngine.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringDecoder>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace {

using namespace zvonivec;

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// The name of a file, which may be any bytes: as Latin-1 when it isn't valid UTF-8.
QString nameText(std::string_view name) {
    const QByteArrayView bytes(name.data(), static_cast<qsizetype>(name.size()));
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString decoded = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : decoded;
}

void addFailure(QJsonObject& object, const Failure& failure) {
    object["failure"] = text(causeName(failure.cause));
    if (!failure.text.empty()) {
        object["failureText"] = text(failure.text);
    }
}

/// Decodes the whole track, as playing it would.
void addSamples(QJsonObject& object, const std::string& path) {
    LoadedFile file(path);
    if (file.measure() == nullptr) {
        addFailure(object, file.failure());
        return;
    }
    Mp3Decoder decoder(file.reader(), *file.kind().stream, *file.measure());
    if (const auto failure = decoder.seek(0)) {
        addFailure(object, *failure);
        return;
    }
    QCryptographicHash hash(QCryptographicHash::Sha256);
    std::int64_t count = 0;
    auto block = decoder.read();
    for (; block.result == Mp3Decoder::Result::samples; block = decoder.read()) {
        QByteArray bytes;
        for (const std::int16_t sample : block.samples) {
            bytes.append(static_cast<char>(sample & 0xFF));
            bytes.append(static_cast<char>(sample >> 8 & 0xFF));
        }
        hash.addData(bytes);
        count += static_cast<std::int64_t>(block.samples.size()) / decoder.channels();
    }
    object["samples"] = static_cast<qint64>(count);
    object["rate"] = decoder.sampleRate();
    object["channels"] = decoder.channels();
    object["sha256"] = QString::fromLatin1(hash.result().toHex());
    if (decoder.silentFrames() != 0) {
        object["silentFrames"] = static_cast<qint64>(decoder.silentFrames());
    }
    if (block.result == Mp3Decoder::Result::failed) {
        addFailure(object, decoder.failure());
    }
}

QByteArray probe(const std::string& path) {
    // Nothing is played, so the engine posts no event.
    const std::unique_ptr<PlayerEngine> engine = createPlayerEngine({});
    engine->settings().setAutoStart(false);
    engine->setURL(path);
    const PlayerEngine::Media& media = engine->currentMedia();
    while (!media.isReadOnlyItem("Title")) {
        std::this_thread::sleep_for(std::chrono::microseconds(100)); // until it has been measured
    }
    QJsonObject object;
    object["file"] = nameText(path);
    object["duration"] = media.duration();
    object["durationString"] = text(media.durationString());
    for (const char* name :
         {"Filetype", "Bitrate", "Author", "Title", "Album", "Description", "Genre", "WM/Year"}) {
        object[name] = text(media.getItemInfo(name));
    }
    addSamples(object, path);
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs(
            "usage: engine_probe FILE...\n"
            "Prints what the player's engine makes of each file, one JSON object a line.\n"
            "sha256 is of the decoded samples: 16 bits, little-endian, channels alternating.\n"
            "failure says why the file can't be played, failureText is the library's message.\n",
            stderr);
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        std::fputs(probe(argv[i]).constData(), stdout);
    }
    return 0;
}
