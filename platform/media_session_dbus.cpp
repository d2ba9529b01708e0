// MPRIS 2.2: the player as an object on the session's message bus.

#include "platform/file_names.h"
#include "platform/media_session.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QUrl>
#include <QVariantMap>
#include <algorithm>
#include <cmath>
#include <utility>

namespace zvonivec {

namespace {

const QString PLAYER_PATH = QStringLiteral("/org/mpris/MediaPlayer2");
const QString ROOT_INTERFACE = QStringLiteral("org.mpris.MediaPlayer2");
const QString PLAYER_INTERFACE = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString PROPERTIES_INTERFACE = QStringLiteral("org.freedesktop.DBus.Properties");
const QString NAME = QStringLiteral("org.mpris.MediaPlayer2.zvonivec");

constexpr double MICROSECONDS = 1e6; ///< in a second

constexpr const char* DESCRIPTION = R"(
  <interface name="org.mpris.MediaPlayer2">
    <method name="Raise"/>
    <method name="Quit"/>
    <property name="CanQuit" type="b" access="read"/>
    <property name="CanRaise" type="b" access="read"/>
    <property name="HasTrackList" type="b" access="read"/>
    <property name="Identity" type="s" access="read"/>
    <property name="DesktopEntry" type="s" access="read"/>
    <property name="SupportedUriSchemes" type="as" access="read"/>
    <property name="SupportedMimeTypes" type="as" access="read"/>
  </interface>
  <interface name="org.mpris.MediaPlayer2.Player">
    <method name="Next"/>
    <method name="Previous"/>
    <method name="Pause"/>
    <method name="PlayPause"/>
    <method name="Stop"/>
    <method name="Play"/>
    <method name="Seek"><arg name="Offset" type="x" direction="in"/></method>
    <method name="SetPosition">
      <arg name="TrackId" type="o" direction="in"/>
      <arg name="Position" type="x" direction="in"/>
    </method>
    <method name="OpenUri"><arg name="Uri" type="s" direction="in"/></method>
    <signal name="Seeked"><arg name="Position" type="x"/></signal>
    <property name="PlaybackStatus" type="s" access="read"/>
    <property name="LoopStatus" type="s" access="readwrite"/>
    <property name="Rate" type="d" access="readwrite"/>
    <property name="Metadata" type="a{sv}" access="read"/>
    <property name="Volume" type="d" access="readwrite"/>
    <property name="Position" type="x" access="read">
      <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
    </property>
    <property name="MinimumRate" type="d" access="read"/>
    <property name="MaximumRate" type="d" access="read"/>
    <property name="CanGoNext" type="b" access="read"/>
    <property name="CanGoPrevious" type="b" access="read"/>
    <property name="CanPlay" type="b" access="read"/>
    <property name="CanPause" type="b" access="read"/>
    <property name="CanSeek" type="b" access="read"/>
    <property name="CanControl" type="b" access="read">
      <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
    </property>
  </interface>
  <interface name="org.freedesktop.DBus.Properties">
    <method name="Get">
      <arg name="interface_name" type="s" direction="in"/>
      <arg name="property_name" type="s" direction="in"/>
      <arg name="value" type="v" direction="out"/>
    </method>
    <method name="Set">
      <arg name="interface_name" type="s" direction="in"/>
      <arg name="property_name" type="s" direction="in"/>
      <arg name="value" type="v" direction="in"/>
    </method>
    <method name="GetAll">
      <arg name="interface_name" type="s" direction="in"/>
      <arg name="properties" type="a{sv}" direction="out"/>
    </method>
    <signal name="PropertiesChanged">
      <arg name="interface_name" type="s"/>
      <arg name="changed_properties" type="a{sv}"/>
      <arg name="invalidated_properties" type="as"/>
    </signal>
  </interface>
)";

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

qlonglong toMicroseconds(double seconds) {
    return std::llround(seconds * MICROSECONDS);
}

QString toText(MediaSession::Status status) {
    switch (status) {
    case MediaSession::Status::playing:
        return QStringLiteral("Playing");
    case MediaSession::Status::paused:
        return QStringLiteral("Paused");
    case MediaSession::Status::stopped:
        break;
    }
    return QStringLiteral("Stopped");
}

} // namespace

struct MediaSession::Desktop : QDBusVirtualObject {
    Desktop(const std::string& wantedTitle, Commands wanted)
        : title(text(wantedTitle)), commands(std::move(wanted)),
          bus(QDBusConnection::sessionBus()) {
        if (bus.isConnected() &&
            bus.registerVirtualObject(PLAYER_PATH, this, QDBusConnection::SingleNode)) {
            takeName(NAME);
        }
    }
    ~Desktop() override {
        if (bus.isConnected()) {
            bus.unregisterObject(PLAYER_PATH);
            if (!name.isEmpty()) {
                QDBusMessage release = toBus(QStringLiteral("ReleaseName"));
                release << name;
                bus.send(release);
            }
        }
    }

    // --- The name on the bus --------------------------------------------------------------------
    static QDBusMessage toBus(const QString& method) {
        return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                              QStringLiteral("/org/freedesktop/DBus"),
                                              QStringLiteral("org.freedesktop.DBus"), method);
    }
    /// Asks for a name without waiting for the answer. When another copy of the player has it, asks
    /// for a name of this copy's own.
    void takeName(const QString& wanted) {
        constexpr uint doNotQueue = 4;
        constexpr uint isOwner = 1;
        QDBusMessage request = toBus(QStringLiteral("RequestName"));
        request << wanted << doNotQueue;
        auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(request), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, wanted] {
            const QDBusPendingReply<uint> reply = *answer;
            answer->deleteLater();
            if (reply.isError()) {
                return;
            }
            if (reply.value() == isOwner) {
                name = wanted;
            } else if (wanted == NAME) {
                takeName(NAME + QStringLiteral(".instance") +
                         QString::number(QCoreApplication::applicationPid()));
            }
        });
    }

    // --- Properties -----------------------------------------------------------------------------
    [[nodiscard]] QVariantMap rootProperties() const {
        return {{QStringLiteral("CanQuit"), true},
                {QStringLiteral("CanRaise"), true},
                {QStringLiteral("HasTrackList"), false},
                {QStringLiteral("Identity"), title},
                {QStringLiteral("DesktopEntry"), QStringLiteral("zvonivec")},
                {QStringLiteral("SupportedUriSchemes"), QStringList{QStringLiteral("file")}},
                {QStringLiteral("SupportedMimeTypes"), QStringList{QStringLiteral("audio/mpeg")}}};
    }
    [[nodiscard]] QDBusObjectPath trackId() const {
        return QDBusObjectPath(QStringLiteral("/org/zvonivec/track/") + QString::number(track));
    }
    [[nodiscard]] QVariantMap metadata() const {
        if (!state.fileIsLoaded) {
            return {};
        }
        QVariantMap data{{QStringLiteral("mpris:trackid"), QVariant::fromValue(trackId())},
                         {QStringLiteral("mpris:length"), toMicroseconds(state.length)},
                         {QStringLiteral("xesam:url"), text(fileUrl(state.path))}};
        const auto add = [&data](const QString& key, const std::string& value, bool isList) {
            if (!value.empty()) {
                data.insert(key, isList ? QVariant(QStringList{text(value)}) : text(value));
            }
        };
        add(QStringLiteral("xesam:title"), state.title, false);
        add(QStringLiteral("xesam:artist"), state.artist, true);
        add(QStringLiteral("xesam:album"), state.album, false);
        add(QStringLiteral("xesam:genre"), state.genre, true);
        return data;
    }
    /// Returns the properties whose changes are sent.
    [[nodiscard]] QVariantMap changingProperties() const {
        return {{QStringLiteral("PlaybackStatus"), toText(state.status)},
                {QStringLiteral("LoopStatus"),
                 state.repeat ? QStringLiteral("Track") : QStringLiteral("None")},
                {QStringLiteral("Metadata"), metadata()},
                {QStringLiteral("Volume"), state.volume / 100.0},
                {QStringLiteral("CanGoNext"), state.fileIsLoaded},
                {QStringLiteral("CanPlay"), state.fileIsLoaded},
                {QStringLiteral("CanPause"), state.fileIsLoaded},
                {QStringLiteral("CanSeek"), state.fileIsLoaded}};
    }
    [[nodiscard]] QVariantMap playerProperties() const {
        QVariantMap all = changingProperties();
        all.insert(QStringLiteral("Position"), toMicroseconds(commands.position()));
        for (const char* rate : {"Rate", "MinimumRate", "MaximumRate"}) {
            all.insert(QString::fromLatin1(rate), 1.0);
        }
        all.insert(QStringLiteral("CanGoPrevious"), false);
        all.insert(QStringLiteral("CanControl"), true);
        return all;
    }
    void show(const State& newState) {
        if (newState == state) {
            return;
        }
        const QVariantMap before = changingProperties();
        track +=
            newState.path != state.path || newState.fileIsLoaded != state.fileIsLoaded ? 1U : 0U;
        state = newState;
        QVariantMap changed = changingProperties();
        for (auto property = changed.begin(); property != changed.end();) {
            property = before.value(property.key()) == property.value() ? changed.erase(property)
                                                                        : std::next(property);
        }
        if (!changed.isEmpty() && bus.isConnected()) {
            QDBusMessage signal = QDBusMessage::createSignal(PLAYER_PATH, PROPERTIES_INTERFACE,
                                                             QStringLiteral("PropertiesChanged"));
            signal << PLAYER_INTERFACE << changed << QStringList();
            bus.send(signal);
        }
    }
    void seeked() const {
        if (bus.isConnected()) {
            QDBusMessage signal =
                QDBusMessage::createSignal(PLAYER_PATH, PLAYER_INTERFACE, QStringLiteral("Seeked"));
            signal << toMicroseconds(commands.position());
            bus.send(signal);
        }
    }

    // --- Calls ----------------------------------------------------------------------------------
    [[nodiscard]] QString introspect(const QString& /*path*/) const override {
        return QString::fromLatin1(DESCRIPTION);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& from) override {
        if (message.interface() == PROPERTIES_INTERFACE) {
            return handleProperties(message, from);
        }
        const std::function<void()> command = commandOf(message);
        if (!command) {
            return false; // the library answers that there is no such method
        }
        from.send(message.createReply());
        // Later, because a command may show a box, and the caller waits no longer for the answer.
        QMetaObject::invokeMethod(this, command, Qt::QueuedConnection);
        return true;
    }

    /// Returns the command of a call, or nothing when there is no such method.
    std::function<void()> commandOf(const QDBusMessage& message) {
        const QString& method = message.member();
        const QString& interface = message.interface();
        if (message.signature().isEmpty() && (interface.isEmpty() || interface == ROOT_INTERFACE)) {
            if (method == QStringLiteral("Raise")) {
                return commands.raise;
            }
            if (method == QStringLiteral("Quit")) {
                return commands.quit;
            }
        }
        return interface.isEmpty() || interface == PLAYER_INTERFACE
                   ? playerCommand(method, message.signature(), message.arguments())
                   : nullptr;
    }
    std::function<void()> playerCommand(const QString& method, const QString& signature,
                                        const QVariantList& arguments) {
        const auto withFile = [this](std::function<void()> command) {
            return [this, command = std::move(command)] {
                if (state.fileIsLoaded) {
                    command();
                }
            };
        };
        if (signature.isEmpty()) {
            if (method == QStringLiteral("Play")) {
                return withFile(commands.play);
            }
            if (method == QStringLiteral("Pause")) {
                return withFile(commands.pause);
            }
            if (method == QStringLiteral("PlayPause")) {
                return withFile([this] {
                    (state.status == Status::playing ? commands.pause : commands.play)();
                });
            }
            if (method == QStringLiteral("Stop")) {
                return withFile(commands.stop);
            }
            if (method == QStringLiteral("Next")) {
                return withFile(commands.forward);
            }
            if (method == QStringLiteral("Previous")) {
                return [] {}; // there is no track before
            }
        } else if (method == QStringLiteral("Seek") && signature == QStringLiteral("x")) {
            return withFile([this, offset = arguments.at(0).toLongLong()] { seekBy(offset); });
        } else if (method == QStringLiteral("SetPosition") && signature == QStringLiteral("ox")) {
            return withFile([this, id = arguments.at(0).value<QDBusObjectPath>(),
                             position = arguments.at(1).toLongLong()] {
                if (id == trackId() && position >= 0 && position <= toMicroseconds(state.length)) {
                    commands.seekTo(static_cast<double>(position) / MICROSECONDS);
                }
            });
        } else if (method == QStringLiteral("OpenUri") && signature == QStringLiteral("s")) {
            return [this, path = localPath(QUrl(arguments.at(0).toString()))] {
                if (path) {
                    commands.open(*path);
                }
            };
        }
        return nullptr;
    }
    void seekBy(qlonglong offset) const {
        const double target = commands.position() + static_cast<double>(offset) / MICROSECONDS;
        if (target > state.length) {
            commands.forward();
        } else {
            commands.seekTo(std::max(0.0, target));
        }
    }

    bool handleProperties(const QDBusMessage& message, const QDBusConnection& from) {
        const QVariantList arguments = message.arguments();
        const QString interface = arguments.value(0).toString();
        const bool ofRoot = interface == ROOT_INTERFACE;
        if (!ofRoot && interface != PLAYER_INTERFACE) {
            return false;
        }
        const QVariantMap all = ofRoot ? rootProperties() : playerProperties();
        const QString property = arguments.value(1).toString();
        if (message.member() == QStringLiteral("GetAll")) {
            from.send(message.createReply(all));
        } else if (!all.contains(property)) {
            from.send(message.createErrorReply(QDBusError::UnknownProperty, property));
        } else if (message.member() == QStringLiteral("Get")) {
            from.send(message.createReply(QVariant::fromValue(QDBusVariant(all.value(property)))));
        } else if (message.member() == QStringLiteral("Set")) {
            const QVariant value = arguments.value(2).value<QDBusVariant>().variant();
            from.send(!ofRoot && set(property, value)
                          ? message.createReply()
                          : message.createErrorReply(QDBusError::PropertyReadOnly, property));
        } else {
            return false;
        }
        return true;
    }
    /// Sets a property, or returns false when it can't be set.
    [[nodiscard]] bool set(const QString& property, const QVariant& value) const {
        if (property == QStringLiteral("Volume")) {
            const double part = value.toDouble();
            if (!std::isnan(part)) {
                commands.setVolume(
                    static_cast<std::int32_t>(std::lround(std::clamp(part, 0.0, 1.0) * 100)));
            }
            return true;
        }
        if (property == QStringLiteral("LoopStatus")) {
            commands.setRepeat(value.toString() != QStringLiteral("None"));
            return true;
        }
        return property == QStringLiteral("Rate"); // it has only one value
    }

    QString title;
    Commands commands;
    QDBusConnection bus;
    QString name; ///< empty until the bus has given it
    State state;
    std::uint32_t track = 0;
};

MediaSession::MediaSession(const std::string& title, Commands commands)
    : desktop_(std::make_unique<Desktop>(title, std::move(commands))) {}

MediaSession::~MediaSession() = default;

void MediaSession::show(const State& state) {
    desktop_->show(state);
}

void MediaSession::seeked() {
    desktop_->seeked();
}

} // namespace zvonivec
