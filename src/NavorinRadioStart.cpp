#include "AdSettings.h"
#include "DemoBackendProcess.h"
#include "NavorinRadioApp.h"
#include "Platform/Desktop/DebugLine.h"
#include "Platform/Desktop/DesktopApplication.h"
#include "Platform/Desktop/TerminationSignals.h"
#include "Platform/Storage/SettingsUserDefaults.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Shared/ShazamIntents.h"

#include <QDebug>
#include <QGuiApplication>
#include <QQuickStyle>

#include <malloc.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int exitUsage = 64; // as in sysexits.h
constexpr int exitSoftware = 70;
constexpr int exitTemporary = 75;
constexpr int exitConfiguration = 78;
const QString versionText = QStringLiteral(NAVORIN_VERSION);

/// Large blocks are mapped one by one and go back to the system when they are freed. Left to itself, the C
/// library raises its limit with the first large picture; what drawing frees then stays behind as holes.
void giveLargeBlocksBack()
{
    ::mallopt(M_MMAP_THRESHOLD, 1 << 20);
    ::mallopt(M_TRIM_THRESHOLD, 1 << 18);
}

QStringList argumentsOf(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

QStringList addressesOf(const LaunchOptions &options)
{
    return options.address.isEmpty() ? QStringList() : QStringList{options.address};
}

/// For this one moment, so that whoever reads the suite finds the stamp on the disk.
void leaveRequest()
{
    QtMainQueue queue;
    ShazamOpenIntent::perform(SettingsUserDefaults::openSuite(queue, ShazamRequest::suite).get());
}

/// The exit code, if another process is the application.
std::optional<int> leftToAnother(DesktopApplication &desktop, const LaunchOptions &options)
{
    if (!options.intent.isEmpty())
        leaveRequest();
    switch (desktop.start(addressesOf(options))) {
    case DesktopApplication::Start::GoesOn:
        return {};
    case DesktopApplication::Start::HandedOver:
        return 0;
    case DesktopApplication::Start::Unanswered:
        qCritical() << "navorin: it is running already and does not answer";
        return exitTemporary;
    }
    Q_UNREACHABLE();
}

} // namespace

int NavorinRadioApp::run(int argc, char *argv[])
{
    const auto informed = LaunchOptions::parse(argumentsOf(argc, argv));
    if (informed.help || informed.version) {
        printDebugLine(informed.help ? LaunchOptions::helpText() : u"navorin "_s + versionText);
        return 0;
    }
    giveLargeBlocksBack();

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

    DesktopApplication desktop(QDBusConnection::sessionBus());
    if (const auto code = leftToAnother(desktop, options))
        return *code;
    QObject::connect(&application, &QGuiApplication::aboutToQuit, &desktop, &DesktopApplication::release);

    DemoBackendProcess demo;
    const auto baseUrl = options.demo ? demo.start()
                                      : backendAddress(qEnvironmentVariable("NAVORIN_BASE_URL"),
                                                       QStringLiteral(NAVORIN_BASE_URL));
    if (!baseUrl) {
        if (!options.demo)
            qCritical()
                << "navorin: no usable backend address (https, or http to this machine, without a path)";
        return exitConfiguration;
    }

    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::asked, &application, &QGuiApplication::quit);
    NavorinRadioApp app(*baseUrl, options);
    app.listenTo(desktop);
    return app.showWindow() ? QGuiApplication::exec() : exitSoftware;
}

} // namespace navorin
