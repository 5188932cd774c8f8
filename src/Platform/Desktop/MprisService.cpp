#include "Platform/Desktop/MprisService.h"

#include "Platform/Desktop/DebugLine.h"
#include "Platform/Desktop/MprisMetadata.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDebug>
#include <QPointer>
#include <QUrl>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

// The bus's own numbers.
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint ownedByAnother = 3;

QDBusMessage callToBus(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                          u"org.freedesktop.DBus"_s, method);
}

QVariantMap difference(const QVariantMap &before, const QVariantMap &now)
{
    QVariantMap changed;
    for (const auto &[name, value] : now.asKeyValueRange()) {
        if (before.value(name) != value)
            changed.insert(name, value);
    }
    return changed;
}

bool samePicture(const std::shared_ptr<const EncodedPicture> &one,
                 const std::shared_ptr<const EncodedPicture> &other)
{
    return one == other || (one && other && *one == *other);
}

} // namespace

MprisService::MprisService(MainQueue &queue, FileStore &files, const QDBusConnection &connection,
                           const QString &artworkFolder, MprisHooks hooks)
    : m_queue(queue)
    , m_connection(connection)
    , m_player(new MprisPlayerAdaptor(this, m_state, connection))
    , m_told(m_player->changingProperties())
    , m_artworkFolder(queue, files, artworkFolder)
{
    new MprisRootAdaptor(this, std::move(hooks));
    if (!m_connection.isConnected()) {
        printDebugLine(u"[MPRIS] no session bus: running without media keys"_s);
        return;
    }
    // Before the name, so that whoever sees the name finds the object.
    m_connection.registerObject(objectPath, this);
    requestName(busName);
}

MprisService::~MprisService()
{
    if (!m_connection.isConnected())
        return;
    m_connection.unregisterObject(objectPath);
    m_connection.send(callToBus(u"ReleaseName"_s) << m_requestedName);
}

void MprisService::requestName(const QString &name)
{
    m_requestedName = name;
    // QDBusConnection::registerService() would wait for the answer.
    const auto call = m_connection.asyncCall(callToBus(u"RequestName"_s) << name << doNotQueue);
    auto *watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        nameAnswered(watcher->reply());
    });
}

void MprisService::nameAnswered(const QDBusMessage &answer)
{
    const auto result =
        answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toUInt() : 0;
    if (result == primaryOwner)
        return;
    const QString ownName = busName + u".instance"_s + QString::number(QCoreApplication::applicationPid());
    if (result == ownedByAnother && m_requestedName != ownName)
        requestName(ownName);
    else if (m_connection.isConnected())
        qWarning() << "[MPRIS] the bus gave no name:" << answer.errorMessage();
}

void MprisService::setNowPlayingInfo(const NowPlayingInfo &info)
{
    const bool sameArtwork = samePicture(m_state.info.artwork, info.artwork);
    m_state.info = info;
    if (!sameArtwork) {
        m_state.artUrl.clear();
        writeArtwork();
    }
    scheduleTelling();
}

void MprisService::setPlaybackState(const PlaybackState &state)
{
    m_state.playback = state;
    scheduleTelling();
}

void MprisService::setPositionSource(std::function<double()> position)
{
    m_state.position = std::move(position);
}

void MprisService::announceJump(double seconds)
{
    m_jump = mprisMicroseconds(seconds);
    scheduleTelling();
}

void MprisService::setCommands(RemoteCommands commands)
{
    m_state.commands = std::move(commands);
}

void MprisService::scheduleTelling()
{
    if (m_tellingScheduled || !m_connection.isConnected())
        return;
    m_tellingScheduled = true;
    m_queue.post([self = QPointer(this)] {
        if (self)
            self->tell();
    });
}

/// What changed goes first: a jump to the start of a new track belongs to that track.
void MprisService::tell()
{
    m_tellingScheduled = false;
    const auto jump = std::exchange(m_jump, std::nullopt);
    if (!m_connection.isConnected())
        return;
    tellChanges();
    if (jump)
        Q_EMIT m_player->Seeked(*jump);
}

void MprisService::tellChanges()
{
    auto properties = m_player->changingProperties();
    const auto changed = difference(m_told, properties);
    if (changed.isEmpty())
        return;
    m_told = std::move(properties);
    auto signal =
        QDBusMessage::createSignal(objectPath, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
    m_connection.send(signal << MprisPlayerAdaptor::interfaceName << changed << QStringList());
}

void MprisService::writeArtwork()
{
    const auto picture = m_state.info.artwork;
    if (!picture || !m_connection.isConnected())
        return;
    m_artworkFolder.write(picture, [this, picture](const QString &path) {
        if (!samePicture(m_state.info.artwork, picture))
            return;
        m_state.artUrl = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
        scheduleTelling();
    });
}

} // namespace navorin
