// The desktop's calls over the message bus: each is answered, and no command gets a value out of
// its range. Runs on a session bus of its own.
#include "platform/media_session.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEventLoop>
#include <bit>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>
#include <limits>

namespace {

using zvonivec::MediaSession;

constexpr double LENGTH = 200;     ///< seconds
constexpr double POSITION = 60;    ///< seconds
constexpr int ANSWER_TIME = 20000; ///< milliseconds
const QString SERVICE = QStringLiteral("org.mpris.MediaPlayer2.zvonivec");

void check(bool isTrue) {
    if (!isTrue) {
        std::abort();
    }
}

MediaSession::Commands commands() {
    const auto nothing = [] {};
    return {.raise = nothing,
            .quit = nothing,
            .play = nothing,
            .pause = nothing,
            .stop = nothing,
            .forward = nothing,
            .seekTo = [](double seconds) { check(seconds >= 0 && seconds <= LENGTH); },
            .setVolume = [](std::int32_t percent) { check(percent >= 0 && percent <= 100); },
            .setRepeat = [](bool /*on*/) {},
            .open = [](const std::string& path) { check(path.starts_with('/')); },
            .position = [] { return POSITION; }};
}

/// Returns a text without the zero bytes that no message may hold.
QString text(FuzzedDataProvider& bytes) {
    return QString::fromStdString(bytes.ConsumeRandomLengthString(40)).remove(QChar::Null);
}

QString oneOf(FuzzedDataProvider& bytes, std::initializer_list<const char*> known) {
    const std::vector<const char*> all(known);
    const auto choice = bytes.ConsumeIntegralInRange<std::size_t>(0, all.size());
    return choice < all.size() ? QString::fromLatin1(all[choice]) : text(bytes);
}

/// Returns a track's number on the bus: the present one is among them.
QVariant track(FuzzedDataProvider& bytes) {
    return QVariant::fromValue(
        QDBusObjectPath(QStringLiteral("/org/zvonivec/track/") +
                        QString::number(bytes.ConsumeIntegralInRange(0, 3))));
}

QVariant value(FuzzedDataProvider& bytes, int depth = 0) {
    switch (bytes.ConsumeIntegralInRange(0, depth < 3 ? 8 : 5)) {
    case 0:
        return bytes.ConsumeIntegral<qlonglong>();
    case 1:
        return std::bit_cast<double>(bytes.ConsumeIntegral<std::uint64_t>());
    case 2:
        return bytes.ConsumeBool();
    case 3:
        return bytes.ConsumeIntegral<uint>();
    case 4:
        return QVariant::fromValue(
            QDBusObjectPath(QStringLiteral("/org/zvonivec/track/") +
                            QString::number(bytes.ConsumeIntegralInRange(0, 3))));
    case 5:
        return oneOf(bytes, {"org.mpris.MediaPlayer2", "org.mpris.MediaPlayer2.Player", "Volume",
                             "LoopStatus", "Rate", "Position", "Metadata", "Identity", "None",
                             "file:///tmp/a.mp3"});
    case 6:
        return QStringList{text(bytes), text(bytes)};
    case 7:
        return QVariantMap{{text(bytes), value(bytes, depth + 1)}};
    default:
        return QVariant::fromValue(QDBusVariant(value(bytes, depth + 1)));
    }
}

QDBusMessage callOf(const char* interface, const QString& method, const QVariantList& values) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        SERVICE, QStringLiteral("/org/mpris/MediaPlayer2"), QString::fromLatin1(interface), method);
    call.setArguments(values);
    return call;
}

constexpr const char* PLAYER = "org.mpris.MediaPlayer2.Player";
constexpr const char* PROPERTIES = "org.freedesktop.DBus.Properties";

/// Returns a call that the player knows, with any values.
QDBusMessage knownCallFrom(FuzzedDataProvider& bytes) {
    switch (bytes.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return callOf(PLAYER, QStringLiteral("Seek"), {bytes.ConsumeIntegral<qlonglong>()});
    case 1:
        return callOf(PLAYER, QStringLiteral("SetPosition"),
                      {track(bytes), bytes.ConsumeIntegral<qlonglong>()});
    case 2:
        return callOf(PLAYER, QStringLiteral("OpenUri"),
                      {QStringLiteral("file:///") + text(bytes)});
    default:
        return callOf(PROPERTIES, QStringLiteral("Set"),
                      {QString::fromLatin1(PLAYER), oneOf(bytes, {"Volume", "LoopStatus", "Rate"}),
                       QVariant::fromValue(QDBusVariant(value(bytes)))});
    }
}

/// Returns a call with any interface, method and values.
QDBusMessage anyCallFrom(FuzzedDataProvider& bytes) {
    const QString interface = oneOf(bytes, {"org.mpris.MediaPlayer2", PLAYER, PROPERTIES,
                                            "org.freedesktop.DBus.Introspectable", ""});
    const QString method =
        oneOf(bytes, {"Seek", "SetPosition", "OpenUri", "Set", "Get", "GetAll", "Play", "PlayPause",
                      "Pause", "Stop", "Next", "Previous", "Raise", "Quit", "Introspect"});
    QVariantList values;
    for (int rest = bytes.ConsumeIntegralInRange(0, 4); rest > 0; --rest) {
        values << value(bytes);
    }
    return callOf(interface.toLatin1().constData(), method, values);
}

void waitFor(const QDBusPendingCall& call) {
    QDBusPendingCallWatcher watcher(call);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished()) {
        loop.exec();
    }
    const QDBusError::ErrorType error = QDBusPendingReply<>(call).error().type();
    check(error != QDBusError::NoReply && error != QDBusError::Timeout &&
          error != QDBusError::Disconnected);
}

MediaSession::State stateFrom(FuzzedDataProvider& bytes) {
    return {.fileIsLoaded = bytes.ConsumeBool(),
            .status =
                bytes.ConsumeBool() ? MediaSession::Status::playing : MediaSession::Status::stopped,
            .volume = bytes.ConsumeIntegralInRange(0, 100),
            .repeat = bytes.ConsumeBool(),
            .path = "/" + bytes.ConsumeRandomLengthString(40),
            .title = bytes.ConsumeRandomLengthString(40),
            .artist = bytes.ConsumeRandomLengthString(40),
            .length = LENGTH};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int count = 1;
    static char name[] = "media_session";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
    static const QDBusConnection desktop =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("desktop"));

    MediaSession session("Zvonivec", commands());
    while (!desktop.interface()->isServiceRegistered(SERVICE)) {
        QCoreApplication::processEvents();
    }
    FuzzedDataProvider bytes(data, size);
    session.show(stateFrom(bytes));
    while (bytes.remaining_bytes() > 0) {
        waitFor(desktop.asyncCall(bytes.ConsumeBool() ? knownCallFrom(bytes) : anyCallFrom(bytes),
                                  ANSWER_TIME));
        QCoreApplication::processEvents(); // the commands come after the answers
    }
    return 0;
}
