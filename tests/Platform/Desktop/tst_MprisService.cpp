#include "Platform/Desktop/MprisMetadata.h"
#include "Platform/Desktop/MprisService.h"
#include "Platform/Desktop/PrivateBus.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/QtMainQueue.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QDir>
#include <QTest>
#include <QUrl>

#include <cmath>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto player = u"org.mpris.MediaPlayer2.Player"_s;
const auto properties = u"org.freedesktop.DBus.Properties"_s;

QVariantMap unpacked(const QVariant &value)
{
    return qdbus_cast<QVariantMap>(value);
}

QString typesOf(const QVariantMap &map)
{
    QStringList types;
    for (const auto &[name, value] : map.asKeyValueRange())
        types << name + u' ' + QString::fromLatin1(value.typeName());
    return types.join(u", ");
}

std::shared_ptr<const EncodedPicture> picture(const QByteArray &bytes)
{
    return std::make_shared<EncodedPicture>(EncodedPicture{bytes, u"jpeg"_s, QSize(1, 1)});
}

NowPlayingInfo song(const QString &identity, const std::shared_ptr<const EncodedPicture> &artwork = {})
{
    return {.title = u"ترانه"_s, .duration = 180.5, .artwork = artwork, .identity = identity};
}

} // namespace

class tst_MprisService : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void propertiesChanged(const QString &, const QVariantMap &changed, const QStringList &)
    {
        m_changes << changed;
    }
    void seeked(qlonglong position) { m_changes << QVariantMap{{u"Seeked"_s, position}}; }

private Q_SLOTS:
    void init();
    void cleanup();
    void showsWhoItIs();
    void metadata();
    void tellsOnlyWhatChanged();
    void jumpsFollowTheirTrack();
    void commands();
    void artworkFollowsItsRecord();
    void nameAlreadyTaken();
    void withoutABus();

private:
    QDBusMessage send(const QString &interface, const QString &method, const QVariantList &arguments = {})
    {
        auto message = QDBusMessage::createMethodCall(MprisService::busName, MprisService::objectPath,
                                                      interface, method);
        message.setArguments(arguments);
        return ask(m_client, message);
    }
    QVariantMap all(const QString &interface)
    {
        return unpacked(send(properties, u"GetAll"_s, {interface}).arguments().value(0));
    }
    QVariantMap shown() { return unpacked(all(player)[u"Metadata"_s]); }
    QString waitForArtwork();
    RemoteCommands recordingCommands();

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_artwork;
    QDBusConnection m_client{QString()};
    QtMainQueue m_queue;
    QtFileStore m_files;
    std::unique_ptr<MprisService> m_service;
    QList<QVariantMap> m_changes;
    QStringList m_asked;
};

void tst_MprisService::init()
{
    m_bus = std::make_unique<PrivateBus>();
    m_folder = std::make_unique<QTemporaryDir>();
    m_artwork = m_folder->filePath(u"now playing/پوشه"_s);
    m_client = m_bus->connect();
    const QString anyone;
    QVERIFY(m_client.connect(anyone, MprisService::objectPath, properties, u"PropertiesChanged"_s, this,
                             SLOT(propertiesChanged(QString, QVariantMap, QStringList))));
    QVERIFY(m_client.connect(anyone, MprisService::objectPath, player, u"Seeked"_s, this,
                             SLOT(seeked(qlonglong))));
    const auto log = [this](const QString &what) { return [this, what] { m_asked << what; }; };
    m_service = std::make_unique<MprisService>(m_queue, m_files, m_bus->connect(), m_artwork,
                                               MprisHooks{log(u"raise"_s), log(u"quit"_s)});
    QTRY_VERIFY(m_client.interface()->isServiceRegistered(MprisService::busName).value());
}

void tst_MprisService::cleanup()
{
    m_service.reset();
    m_bus.reset();
    m_changes.clear();
    m_asked.clear();
}

RemoteCommands tst_MprisService::recordingCommands()
{
    const auto plain = [this](const QString &what) {
        return [this, what] {
            m_asked << what;
            return RemoteCommandResult::CommandFailed; // which the desktop is not to hear of
        };
    };
    const auto timed = [this](const QString &what) {
        return [this, what](std::optional<double> seconds) {
            m_asked << what + u' ' + QString::number(*seconds);
            return RemoteCommandResult::Success;
        };
    };
    return {.play = plain(u"play"_s),
            .pause = plain(u"pause"_s),
            .togglePlayPause = plain(u"toggle"_s),
            .nextTrack = plain(u"next"_s),
            .previousTrack = plain(u"previous"_s),
            .skipForward = timed(u"forward"_s),
            .skipBackward = timed(u"backward"_s),
            .changePlaybackPosition = timed(u"position"_s),
            .changeVolume = [this](double gain) { m_asked << u"volume "_s + QString::number(gain); }};
}

void tst_MprisService::showsWhoItIs()
{
    const auto root = u"org.mpris.MediaPlayer2"_s;
    const QVariantMap expected{{u"CanQuit"_s, true},
                               {u"CanRaise"_s, true},
                               {u"HasTrackList"_s, false},
                               {u"Identity"_s, u"ناورین"_s},
                               {u"DesktopEntry"_s, u"ir.navorin.NavorinRadio"_s},
                               {u"SupportedUriSchemes"_s, QStringList()},
                               {u"SupportedMimeTypes"_s, QStringList()}};
    QCOMPARE(all(root), expected);
    for (const auto &method : {u"Raise"_s, u"Quit"_s})
        QCOMPARE(send(root, method).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(m_asked, (QStringList{u"raise"_s, u"quit"_s}));
}

void tst_MprisService::metadata()
{
    const auto initial = all(player);
    QCOMPARE(typesOf(initial), u"CanControl bool, CanGoNext bool, CanGoPrevious bool, CanPause bool, "
                               "CanPlay bool, CanSeek bool, MaximumRate double, Metadata QDBusArgument, "
                               "MinimumRate double, PlaybackStatus QString, Position qlonglong, "
                               "Rate double, Volume double"_s);
    QCOMPARE(initial[u"PlaybackStatus"_s], u"Stopped"_s);

    m_service->setPositionSource([] { return 1.5; });
    m_service->setNowPlayingInfo({.title = u"ترانه"_s + QChar(0xd800), // half a character, as servers send
                                  .artist = u"خواننده"_s,
                                  .albumTitle = u"آلبوم"_s,
                                  .duration = 12.345678,
                                  .identity = u"۱/a b"_s});
    m_service->setPlaybackState({PlaybackState::Status::Playing, 0.25, true});
    QCOMPARE(all(player)[u"Position"_s], 1500000);
    const auto full = shown();
    QCOMPARE(typesOf(full), u"mpris:length qlonglong, mpris:trackid QDBusObjectPath, xesam:album QString, "
                            "xesam:artist QStringList, xesam:title QString"_s);
    QCOMPARE(full[u"mpris:length"_s], 12345678);
    QCOMPARE(full[u"xesam:artist"_s], QStringList{u"خواننده"_s});
    QCOMPARE(full[u"xesam:title"_s].toString().first(5), u"ترانه"_s);

    const auto trackId = [this] { return shown()[u"mpris:trackid"_s].value<QDBusObjectPath>(); };
    QSet<QString> ids{trackId().path()};
    for (const auto &identity : {u"۱/a c"_s, u""_s}) {
        m_service->setNowPlayingInfo({.title = u"ناورین رادیو"_s, .duration = NAN, .identity = identity});
        QCOMPARE(typesOf(shown()), u"mpris:trackid QDBusObjectPath, xesam:title QString"_s);
        ids << trackId().path();
        QVERIFY(!trackId().path().startsWith(u"/org/mpris"));
    }
    QCOMPARE(ids.size(), 3);
    QCOMPARE(all(player)[u"PlaybackStatus"_s], u"Playing"_s);
}

void tst_MprisService::tellsOnlyWhatChanged()
{
    double position = 0;
    m_service->setPositionSource([&] { return position; });
    const auto burst = [&](const QString &identity, const PlaybackState &state) {
        for (int i = 0; i < 50; ++i) {
            m_service->setNowPlayingInfo(song(identity));
            m_service->setPlaybackState(state);
            position += 0.5;
        }
        all(player);
        deliverAll(m_client);
        return std::exchange(m_changes, {});
    };
    const auto first = burst(u"a"_s, {PlaybackState::Status::Playing, 0.5, true});
    QCOMPARE(first.size(), 1);
    QCOMPARE(first[0].keys(), (QStringList{u"CanSeek"_s, u"Metadata"_s, u"PlaybackStatus"_s, u"Volume"_s}));
    QCOMPARE(unpacked(first[0][u"Metadata"_s])[u"mpris:length"_s], 180500000);
    QVERIFY(burst(u"a"_s, {PlaybackState::Status::Playing, 0.5, true}).isEmpty());
    QCOMPARE(burst(u"a"_s, {PlaybackState::Status::Paused, 0.5, true}),
             (QList<QVariantMap>{{{u"PlaybackStatus"_s, u"Paused"_s}}}));
    QCOMPARE(burst(u"a"_s, {PlaybackState::Status::Paused, 0.75, true}),
             (QList<QVariantMap>{{{u"Volume"_s, 0.75}}}));
    QCOMPARE(burst(u"b"_s, {PlaybackState::Status::Paused, 0.75, true}).value(0).keys(),
             QStringList{u"Metadata"_s});
}

void tst_MprisService::jumpsFollowTheirTrack()
{
    m_service->announceJump(90);
    m_service->announceJump(0.25);
    m_service->setNowPlayingInfo(song(u"next"_s));
    QTRY_COMPARE(m_changes.size(), 2);
    QVERIFY(m_changes[0].contains(u"Metadata"_s));
    QCOMPARE(m_changes[1], (QVariantMap{{u"Seeked"_s, 250000}}));
    QCOMPARE(typesOf(m_changes[1]), u"Seeked qlonglong"_s);
}

void tst_MprisService::commands()
{
    const auto id = [](const QString &identity) { return QVariant::fromValue(mprisTrackId(identity)); };
    const auto set = [](const QString &name, double value) {
        return QVariantList{player, name, QVariant::fromValue(QDBusVariant(value))};
    };
    const struct
    {
        QString method;
        QVariantList arguments;
        QString asked;
    } table[] = {
        {u"Play"_s, {}, u"play"_s},
        {u"Pause"_s, {}, u"pause"_s},
        {u"Stop"_s, {}, u"pause"_s},
        {u"PlayPause"_s, {}, u"toggle"_s},
        {u"Next"_s, {}, u"next"_s},
        {u"Previous"_s, {}, u"previous"_s},
        {u"Seek"_s, {10500000LL}, u"forward 10.5"_s},
        {u"Seek"_s, {-5000000LL}, u"backward 5"_s},
        {u"Seek"_s, {0LL}, {}},
        {u"SetPosition"_s, {id(u"now"_s), 0LL}, u"position 0"_s},
        {u"SetPosition"_s, {id(u"now"_s), 180500000LL}, u"position 180.5"_s},
        {u"SetPosition"_s, {id(u"now"_s), 180500001LL}, {}},
        {u"SetPosition"_s, {id(u"now"_s), -1LL}, {}},
        {u"SetPosition"_s, {id(u"before"_s), 1000000LL}, {}},
        {u"Set"_s, set(u"Volume"_s, 0.3), u"volume 0.3"_s},
        {u"Set"_s, set(u"Volume"_s, 7), u"volume 1"_s},
        {u"Set"_s, set(u"Volume"_s, -HUGE_VAL), u"volume 0"_s},
        {u"Set"_s, set(u"Volume"_s, NAN), {}},
        {u"Set"_s, set(u"Rate"_s, 0), u"pause"_s},
        {u"Set"_s, set(u"Rate"_s, 2), {}},
    };
    m_service->setNowPlayingInfo(song(u"now"_s));
    for (const bool handled : {true, false}) {
        m_service->setCommands(handled ? recordingCommands() : RemoteCommands{});
        for (const auto &[method, arguments, asked] : table) {
            const auto answer = send(method == u"Set" ? properties : player, method, arguments);
            QVERIFY2(answer.type() == QDBusMessage::ReplyMessage, qPrintable(answer.errorMessage()));
            const auto expected = handled && !asked.isEmpty() ? QStringList{asked} : QStringList();
            QCOMPARE(std::exchange(m_asked, {}), expected);
        }
    }
    QCOMPARE(send(player, u"OpenUri"_s, {u"file:///x"_s}).errorName(),
             u"org.freedesktop.DBus.Error.NotSupported"_s);
}

/// The path of the file that the record, as last told, names.
QString tst_MprisService::waitForArtwork()
{
    const auto url = [this] {
        return unpacked(m_changes.value(m_changes.size() - 1)[u"Metadata"_s])[u"mpris:artUrl"_s].toString();
    };
    [&] { QTRY_VERIFY(!url().isEmpty()); }();
    return QUrl(url(), QUrl::StrictMode).toLocalFile();
}

void tst_MprisService::artworkFollowsItsRecord()
{
    m_service->setNowPlayingInfo(song(u"a"_s, picture("first")));
    const auto file = waitForArtwork();
    QCOMPARE(m_changes.size(), 2);
    QVERIFY(!unpacked(m_changes[0][u"Metadata"_s]).contains(u"mpris:artUrl"_s));
    QCOMPARE(m_files.read(file), "first"_ba);

    m_changes.clear();
    m_service->setNowPlayingInfo(song(u"b"_s, picture("first"))); // the same picture is there already
    QCOMPARE(waitForArtwork(), file);
    QCOMPARE(m_changes.size(), 1);

    m_service->setNowPlayingInfo(song(u"c"_s, picture("late")));
    m_service->setNowPlayingInfo(song(u"d"_s));
    QTRY_COMPARE(QDir(m_artwork).entryList({u"*.jpeg"_s}).size(), 2);
    deliverAll(m_client);
    QVERIFY(!shown().contains(u"mpris:artUrl"_s));
}

void tst_MprisService::nameAlreadyTaken()
{
    const auto registered = [this](const QString &name) {
        return m_client.interface()->isServiceRegistered(name).value();
    };
    const QString own =
        MprisService::busName + u".instance"_s + QString::number(QCoreApplication::applicationPid());
    {
        const MprisService second(m_queue, m_files, m_bus->connect(), {}, {});
        QTRY_VERIFY(registered(own));
    }
    QTRY_VERIFY(!registered(own));
    QVERIFY(registered(MprisService::busName));
}

void tst_MprisService::withoutABus()
{
    const auto useAll = [](MprisService &service) {
        service.setNowPlayingInfo(song(u"a"_s, picture("bytes")));
        service.setPlaybackState({PlaybackState::Status::Playing, 1, true});
        service.announceJump(1);
        QCoreApplication::processEvents();
    };
    MprisService never(m_queue, m_files, QDBusConnection(u"nowhere"_s), m_artwork, {});
    useAll(never);
    m_service->announceJump(1); // not told yet when the bus goes
    m_bus->stop();
    for (int i = 0; i < 3; ++i)
        useAll(*m_service);
    QTRY_VERIFY(!m_client.isConnected());
    useAll(*m_service);
}

QTEST_GUILESS_MAIN(tst_MprisService)
#include "tst_MprisService.moc"
