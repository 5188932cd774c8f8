#include "Accounts/AccountSide.h"
#include "AdRoutes.h"
#include "ArtworkStore.h"
#include "Catalogue.h"
#include "Clock.h"
#include "FaultRoutes.h"
#include "Faults.h"
#include "HttpServer.h"
#include "Lyrics/LyricsRoutes.h"
#include "MediaRoutes.h"
#include "Options.h"
#include "Recognition/PieceFinder.h"
#include "Recognition/Plays.h"
#include "Recognition/RecognitionRoutes.h"
#include "Routes.h"
#include "StopToken.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <thread>
#include <unistd.h>

namespace {

using namespace navorin::demo;

sigset_t endingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

/// Returns when a signal asks for the end, or when the parent has gone and that was to be watched.
void waitForEnd(const sigset_t &signals, bool watchesParent)
{
    const pid_t parent = ::getppid();
    const timespec interval{0, 200'000'000};
    while (sigtimedwait(&signals, nullptr, &interval) < 0) {
        if (watchesParent && ::getppid() != parent)
            return;
    }
}

int serve(const Options &options, const sigset_t &signals)
{
    const auto accounts = AccountSide::open(options);
    if (!accounts)
        return 1;
    StopToken stop;
    Faults faults;
    for (const Fault &fault : options.faults)
        faults.add(fault);
    Routes routes;
    HttpServer server(stop, faults, [&routes](const httplib::Request &r) { return routes.answer(r); });
    server.setLogging(options.logs);
    const int port = server.bindTo(options.address, options.port);
    if (port <= 0) {
        std::fprintf(stderr, "cannot listen on %s:%d\n", options.address.c_str(), options.port);
        return 1;
    }
    const Clock clock(options.timeScale);
    MediaStore media(options.cacheFolder);
    ArtworkStore artwork;
    const std::string ownAddress = "http://" + options.address + ":" + std::to_string(port);
    const Catalogue catalogue(makeStations(options.stations, options.archiveTracks), clock, ownAddress);
    Plays plays;
    PieceFinder finder;
    addMediaRoutes(routes, catalogue, media, artwork, plays, clock, stop);
    addRecognitionRoutes(routes, catalogue, plays, finder);
    accounts->addTo(routes, options, catalogue, ownAddress);
    addLyricsRoutes(routes, catalogue);
    addFaultRoutes(routes, faults);
    addAdRoutes(routes);
    std::printf("PORT %d\n", port);
    std::fflush(stdout);

    std::thread serving([&server] { server.run(); });
    waitForEnd(signals, options.watchesParent);
    stop.stop();
    media.cancel();
    server.interrupt();
    serving.join();
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // blocked before any thread starts, so that only the waiting one below takes them
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("navorin-demo-backend"));
    const auto options = Options::parse(QCoreApplication::arguments());
    return options ? serve(*options, signals) : 2;
}
