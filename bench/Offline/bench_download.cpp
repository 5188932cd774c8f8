// Downloads into an offline library and tells what it took.
//
// usage: bench_download ADDRESS [COUNT]
//
// Prints the seconds from the first request to the last entry, the peak of resident memory in bytes, and the
// longest stretches of the UI thread in milliseconds: by the clock, and of its own work.

#include "../Support/Heartbeat.h"
#include "Platform/Http/QtHttpSession.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"

#include <QCoreApplication>

#include <cstdio>
#include <sys/resource.h>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

struct navorin::TestAccess
{
    static APIClient client(const QUrl &base, HttpSession &session) { return {base, session}; }
    static std::unique_ptr<OfflineStore> store(const OfflineStore::Surroundings &surroundings)
    {
        return std::unique_ptr<OfflineStore>(new OfflineStore(surroundings));
    }
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto address = QString::fromLocal8Bit(argv[1]);
    const auto count = argc > 2 ? QByteArray(argv[2]).toInt() : 1;
    QtMainQueue queue;
    QtFileStore files;
    QtHttpSession session(OfflineStore::sessionConfiguration());
    const auto client = TestAccess::client(QUrl(u"http://127.0.0.1:9"_s), session);
    const auto store = TestAccess::store({files, queue, session, client});
    QObject::connect(store.get(), &OfflineStore::lastErrorChanged, &application, [&store] {
        if (store->lastError())
            qFatal("%s", qPrintable(*store->lastError()));
    });
    QObject::connect(store.get(), &OfflineStore::entriesChanged, &application, [&store, count] {
        if (store->entries().size() == count)
            QCoreApplication::quit();
    });

    Heartbeat heartbeat;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        store->download({.trackID = QString::number(i), .streamURL = address});
    QCoreApplication::exec();
    const auto seconds = double(timer.nsecsElapsed()) / 1e9;
    heartbeat.beat();

    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.4f %lld %.2f %.2f\n", seconds, static_cast<long long>(usage.ru_maxrss) * 1024,
                heartbeat.longestMilliseconds(), heartbeat.mostWorkMilliseconds());
}
