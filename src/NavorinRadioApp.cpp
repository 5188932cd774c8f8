#include "NavorinRadioApp.h"

#include "DemoBackendProcess.h"
#include "DeveloperFlags.h"
#include "Platform/Audio/DesktopAudioSession.h"
#include "Platform/Audio/GstMediaPlayer.h"
#include "Platform/Desktop/DebugLine.h"
#include "Platform/Desktop/DesktopMediaLibrary.h"
#include "Platform/Desktop/DesktopShareSheet.h"
#include "Platform/Desktop/DesktopSuspendInhibitor.h"
#include "Platform/Desktop/DesktopUrlOpener.h"
#include "Platform/Desktop/MprisService.h"
#include "Platform/Desktop/SleepMonitor.h"
#include "Platform/Desktop/TerminationSignals.h"
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
#include "Services/Story/StoryVideoRenderer.h"
#include "Views/ViewSetup.h"

#include <QDebug>
#include <QGuiApplication>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QThreadPool>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int exitUsage = 64; // as in sysexits.h
constexpr int exitSoftware = 70;
constexpr int exitConfiguration = 78;
const QString versionText = QStringLiteral(NAVORIN_VERSION);

QStringList argumentsOf(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

QString configured(const char *variable, const QString &builtIn)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariable(variable) : builtIn;
}

QString adHost()
{
    return configured("NAVORIN_AD_HOST", QStringLiteral(NAVORIN_AD_HOST));
}

QString adSite()
{
    return configured("NAVORIN_AD_SITE", QStringLiteral(NAVORIN_AD_SITE));
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

    QtMainQueue queue;
    QtFileStore files;
    SettingsUserDefaults defaults{queue};
    QtHttpSession http;
    SecretServiceStore secrets;
    DesktopUrlOpener urlOpener;
    QtHttpSession downloadHttp{OfflineStore::sessionConfiguration()};
    QtHttpSession artworkHttp{ArtworkLoader::sessionConfiguration()};
    GstMediaPlayer player{queue};
    DesktopAudioSession audioSession{queue};
    SleepMonitor sleep{QDBusConnection::systemBus()};
    MprisService mpris;
    DesktopSuspendInhibitor suspend{QDBusConnection::sessionBus()};
    GstMediaExporter exporter;
    DesktopShareSheet shareSheet{QDBusConnection::sessionBus()};
    DesktopMediaLibrary mediaLibrary;
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
    prepareViews(*m_engine, surroundings);
    m_engine->load(QUrl(u"qrc:/qt/qml/Navorin/Main.qml"_s));
    if (m_engine->rootObjects().isEmpty())
        return false;
    if (auto *window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst()))
        traceStart(*window, store);

    QObject::connect(&player, &RadioPlayer::isPlayingChanged, m_engine.get(),
                     [this, &player] { m_platform->suspend.setInhibited(player.isPlaying()); });
    m_platform->queue.post([&store] { detach(store.load(false), "loading the catalogue at start"); });
    m_platform->queue.post([this, &store, &player] {
        applyDeveloperFlags(m_options, m_platform->queue, store, player, OfflineStore::shared());
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
}

void NavorinRadioApp::open(const QUrl &address)
{
    if (asksForRecognition(address))
        raiseWindow();
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

int NavorinRadioApp::run(int argc, char *argv[])
{
    const auto informed = LaunchOptions::parse(argumentsOf(argc, argv));
    if (informed.help || informed.version) {
        printDebugLine(informed.help ? LaunchOptions::helpText() : u"navorin "_s + versionText);
        return 0;
    }

    QCoreApplication::setApplicationName(u"navorin"_s);
    QGuiApplication::setApplicationDisplayName(u"ناورین"_s);
    QCoreApplication::setApplicationVersion(versionText);
    QGuiApplication::setDesktopFileName(u"ir.navorin.NavorinRadio"_s);
    QQuickStyle::setStyle(u"Basic"_s);
    // A web view that is loaded later can only then share the window's graphics.
    if (!adHost().isEmpty())
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QGuiApplication application(argc, argv);
    const auto options = LaunchOptions::parse(QCoreApplication::arguments().sliced(1));
    if (!options.unknown.isEmpty()) {
        qCritical().noquote() << "navorin: unknown argument" << options.unknown << "- see navorin --help";
        return exitUsage;
    }

    DemoBackendProcess demo;
    const auto baseUrl = options.demo ? demo.start()
                                      : backendAddress(qEnvironmentVariable("NAVORIN_BASE_URL"),
                                                       QStringLiteral(NAVORIN_BASE_URL));
    if (!baseUrl) {
        qCritical() << "navorin: no usable backend address (https, or http to this machine, without a path)";
        return exitConfiguration;
    }

    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::asked, &application, &QGuiApplication::quit);
    NavorinRadioApp app(*baseUrl, options);
    return app.showWindow() ? QGuiApplication::exec() : exitSoftware;
}

} // namespace navorin
