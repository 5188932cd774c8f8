#include "NavorinRadioApp.h"

#include "AdSettings.h"
#include "DeveloperFlags.h"
#include "Platform/Audio/DesktopAudioSession.h"
#include "Platform/Audio/GstAudioRecorder.h"
#include "Platform/Audio/GstMediaPlayer.h"
#include "Platform/Desktop/DebugLine.h"
#include "Platform/Desktop/DesktopApplication.h"
#include "Platform/Desktop/DesktopMediaLibrary.h"
#include "Platform/Desktop/DesktopShareSheet.h"
#include "Platform/Desktop/DesktopSuspendInhibitor.h"
#include "Platform/Desktop/DesktopUrlOpener.h"
#include "Platform/Desktop/GlibBuses.h"
#include "Platform/Desktop/MprisService.h"
#include "Platform/Desktop/PortalDesktopSettings.h"
#include "Platform/Desktop/SleepMonitor.h"
#include "Platform/Desktop/SystemLog.h"
#include "Platform/Desktop/UiWatchdog.h"
#include "Platform/Http/QtHttpSession.h"
#include "Platform/Media/GstMediaExporter.h"
#include "Platform/Media/VideoWriter.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Storage/SecretServiceStore.h"
#include "Platform/Storage/SettingsUserDefaults.h"
#include "Platform/Tasks/Detached.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Services/Account/AuthStore.h"
#include "Services/Account/Keychain.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Equaliser/Equalizer.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Services/Recognition/ShazamManager.h"
#include "Services/Story/StoryVideoRenderer.h"
#include "Shared/ShazamIntents.h"
#include "Views/ViewSetup.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QIcon>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QThreadPool>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

double secondsSince1970()
{
    return double(QDateTime::currentMSecsSinceEpoch()) / 1000;
}

/// For measuring the start from outside: one line when the first frame is on the screen, one when stations
/// are.
void traceStart(QQuickWindow &window, StationStore &store)
{
    if (!qEnvironmentVariableIsSet("NAVORIN_TRACE_START"))
        return;
    QObject::connect(
        &window, &QQuickWindow::frameSwapped, &window, [] { printDebugLine(u"[App] first frame"_s); },
        Qt::SingleShotConnection);
    QObject::connect(&store, &StationStore::stationsChanged, &window, [&window, &store] {
        QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window,
            [&store] { printDebugLine(u"[App] grid filled "_s + QString::number(store.stations().size())); },
            Qt::SingleShotConnection);
    });
}

/// For desktops that do not find it by the name of the desktop file. It is drawn when the start is over.
void setIconWhenShown(QQuickWindow &window)
{
    const auto set = [&window] { window.setIcon(QIcon(u":/navorin/ir.navorin.NavorinRadio.svg"_s)); };
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, set, Qt::SingleShotConnection);
}

} // namespace

/// Everything that the desktop gives, alive for as long as any service is.
struct NavorinRadioApp::Platform
{
    explicit Platform(const MprisHooks &hooks)
        : mpris(queue, files, QDBusConnection::sessionBus(), nowPlayingFolder(), hooks)
    {
        QObject::connect(&player, &GstMediaPlayer::outputCorked, &audioSession,
                         &DesktopAudioSession::setCorked);
        QObject::connect(&sleep, &SleepMonitor::aboutToSleep, &audioSession,
                         &DesktopAudioSession::computerGoesToSleep);
        QObject::connect(&sleep, &SleepMonitor::wokeUp, &audioSession, &DesktopAudioSession::computerWokeUp);
    }
    static QString nowPlayingFolder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + u"/now-playing"_s;
    }
    /// X11 has one number for both, how fine the screen is and how large texts are wanted; Qt follows it.
    static double enlargement()
    {
        return QGuiApplication::platformName() == u"xcb" ? qGuiApp->devicePixelRatio() : 1;
    }

    GlibBuses buses;
    QtMainQueue queue;
    QtFileStore files;
    SettingsUserDefaults defaults{queue};
    QtHttpSession http;
    SecretServiceStore secrets;
    DesktopUrlOpener urlOpener;
    QtHttpSession downloadHttp{OfflineStore::sessionConfiguration()};
    QtHttpSession artworkHttp{ArtworkLoader::sessionConfiguration()};
    SyslogSocket shazamLog{u"ir.navorin.NavorinRadio"_s, u"shazam"_s};
    std::unique_ptr<UserDefaults> sharedSuite; ///< opened when it is first needed
    GstMediaPlayer player{queue};
    GstAudioRecorder recorder{queue};
    DesktopAudioSession audioSession{queue};
    SleepMonitor sleep{QDBusConnection::systemBus()};
    MprisService mpris;
    DesktopSuspendInhibitor suspend{QDBusConnection::sessionBus()};
    GstMediaExporter exporter;
    DesktopShareSheet shareSheet{QDBusConnection::sessionBus()};
    DesktopMediaLibrary mediaLibrary;
    PortalDesktopSettings settings{
        QDBusConnection::sessionBus(),
        DesktopSettingsOverride::parse(qEnvironmentVariable("NAVORIN_TEXT_SCALE"),
                                       qEnvironmentVariable("NAVORIN_REDUCED_MOTION")),
        enlargement()};
};

NavorinRadioApp::NavorinRadioApp(const QUrl &baseUrl, const LaunchOptions &options)
    : m_options(options)
    , m_platform(std::make_unique<Platform>(MprisHooks{[this] { raiseWindow(); }, &QCoreApplication::quit}))
{
    installServices(baseUrl);
}

NavorinRadioApp::~NavorinRadioApp()
{
    m_engine.reset();
    // Whoever still waits for the network or for an item gets a failure now, while all it uses is alive; so
    // does who asks only now.
    m_platform->player.replaceCurrentItem(nullptr);
    m_platform->http.close();
    m_platform->downloadHttp.close();
    StoryVideoRenderer::instance().reset();
    // A failure may start what fails in its turn.
    for (int round = 0; round < 3; ++round) {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }

    ShazamManager::instance().reset();
    RadioPlayer::instance().reset();
    AuthStore::instance().reset();
    Keychain::instance().reset();
    StationStore::instance().reset();
    setOfflineArtworkLookup({});
    OfflineStore::instance().reset();
    Equalizer::instance().reset();
    ArtworkLoader::instance().reset();
    APIClient::instance().reset();
}

void NavorinRadioApp::installServices(const QUrl &baseUrl)
{
    auto &platform = *m_platform;
    APIClient::instance().setMaker(
        [&platform, baseUrl] { return std::unique_ptr<APIClient>(new APIClient(baseUrl, platform.http)); });
    ArtworkLoader::instance().setMaker(
        [&platform] { return std::unique_ptr<ArtworkLoader>(new ArtworkLoader(platform.artworkHttp)); });
    OfflineStore::instance().setMaker([&platform] {
        return std::unique_ptr<OfflineStore>(
            new OfflineStore({platform.files, platform.queue, platform.downloadHttp, APIClient::shared()}));
    });
    StationStore::instance().setMaker(
        [] { return std::unique_ptr<StationStore>(new StationStore(APIClient::shared())); });
    RadioPlayer::instance().setMaker([&platform] {
        return std::unique_ptr<RadioPlayer>(
            new RadioPlayer({platform.player, platform.audioSession, platform.mpris, platform.mpris,
                             platform.queue, APIClient::shared(), OfflineStore::shared()}));
    });
    ShazamManager::instance().setMaker([this, &platform] {
        return std::unique_ptr<ShazamManager>(new ShazamManager(
            {platform.recorder, platform.files, platform.queue, platform.shazamLog, APIClient::shared(),
             RadioPlayer::shared(), [this] { return sharedSuite(); }, secondsSince1970}));
    });
    Keychain::instance().setMaker(
        [&platform] { return std::unique_ptr<Keychain>(new Keychain(platform.secrets)); });
    AuthStore::instance().setMaker([&platform] {
        return std::unique_ptr<AuthStore>(new AuthStore(APIClient::shared(), platform.queue));
    });
    // Made when its sheet first opens, and not before: saved settings are heard from then on.
    Equalizer::instance().setMaker(
        [&platform] { return std::unique_ptr<Equalizer>(new Equalizer(platform.defaults)); });
    StoryVideoRenderer::instance().setMaker([&platform] {
        return std::unique_ptr<StoryVideoRenderer>(
            new StoryVideoRenderer({platform.queue, platform.files, makeVideoWriter, platform.exporter,
                                    QStandardPaths::writableLocation(QStandardPaths::TempLocation)}));
    });
    setOfflineArtworkLookup(
        [](const PlaylistTrack &track) { return OfflineStore::shared().artworkPathString(track); });
}

bool NavorinRadioApp::showWindow()
{
    auto &store = StationStore::shared();
    auto &player = RadioPlayer::shared();
    m_engine = std::make_unique<QQmlApplicationEngine>();
    AuthStore::shared();
    ViewSurroundings surroundings{m_platform->queue, m_platform->urlOpener};
    surroundings.debugTelegram = m_options.debugTelegram;
    surroundings.debugLogin = m_options.debugLogin;
    if (m_options.debugDetail)
        surroundings.debugDetail = detailTestStation();
    surroundings.adNetwork = adNetwork(adHost(), adSite(), APIClient::shared().baseUrl());
    surroundings.shareSheet = &m_platform->shareSheet;
    surroundings.mediaLibrary = &m_platform->mediaLibrary;
    surroundings.settings = &m_platform->settings;
    prepareViews(*m_engine, surroundings);
    m_engine->load(QUrl(u"qrc:/qt/qml/Navorin/Main.qml"_s));
    if (m_engine->rootObjects().isEmpty())
        return false;
    if (auto *window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst())) {
        traceStart(*window, store);
        setIconWhenShown(*window);
#ifdef NAVORIN_TESTS
        // From the first frame on: before it the window may take its time.
        QObject::connect(
            window, &QQuickWindow::frameSwapped, window,
            [window] { UiWatchdog::startAsEnvironmentSays(*window); }, Qt::SingleShotConnection);
#endif
    }

    QObject::connect(&player, &RadioPlayer::isPlayingChanged, m_engine.get(),
                     [this, &player] { m_platform->suspend.setInhibited(player.isPlaying()); });
    m_platform->queue.post([&store] { detach(store.load(false), "loading the catalogue at start"); });
    m_platform->queue.post([this, &store, &player] {
        applyDeveloperFlags(m_options, m_platform->queue, store, player, OfflineStore::shared());
        if (!m_options.intent.isEmpty())
            comeForward();
        open(m_options.address);
    });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, m_engine.get(),
                     [this](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             sceneBecameActive();
                     });
    return true;
}

void NavorinRadioApp::sceneBecameActive()
{
    auto &store = StationStore::shared();
    if (store.stations().isEmpty())
        detach(store.load(false), "loading the catalogue on activation");
    ShazamManager::shared().checkPendingExternalRequest();
}

/// Tried anew at each need while it cannot be opened.
UserDefaults *NavorinRadioApp::sharedSuite()
{
    auto &suite = m_platform->sharedSuite;
    if (!suite)
        suite = SettingsUserDefaults::openSuite(m_platform->queue, ShazamRequest::suite);
    return suite.get();
}

void NavorinRadioApp::listenTo(DesktopApplication &application)
{
    application.setHooks({.activate = [this] { comeForward(); },
                          .open =
                              [this](const QStringList &addresses) {
                                  comeForward();
                                  for (const auto &address : addresses)
                                      open(address);
                              },
                          .activateAction = [this](const QString &name) { runAction(name); }});
}

/// A window that is in front already does not become active anew, and not every desktop lets it come forward.
void NavorinRadioApp::comeForward()
{
    raiseWindow();
    sceneBecameActive();
}

void NavorinRadioApp::open(const QString &address)
{
    if (!asksForRecognition(address))
        return;
    raiseWindow();
    ShazamManager::shared().requestOpen(true);
}

void NavorinRadioApp::runAction(const QString &name)
{
    if (NavorinDestinationQuery::suggestedEntities().contains(NavorinDestination{name}))
        ShazamAppIntent::perform(sharedSuite());
    comeForward();
}

void NavorinRadioApp::raiseWindow()
{
    if (!m_engine)
        return;
    for (auto *root : m_engine->rootObjects()) {
        if (auto *window = qobject_cast<QQuickWindow *>(root)) {
            window->show();
            window->raise();
            window->requestActivate();
        }
    }
}

} // namespace navorin
