// Downloads and removes tracks without pause until it is killed: what offline_kill.py runs.
//
// usage: offline_worker BACKEND_ADDRESS

#include "Platform/Http/QtHttpSession.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/QtMainQueue.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <cstdio>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

struct navorin::TestAccess
{
    static APIClient client(const QUrl &base, HttpSession &session) { return {base, session}; }
    static std::unique_ptr<OfflineStore> store(const OfflineStore::Surroundings &surroundings)
    {
        return std::unique_ptr<OfflineStore>(new OfflineStore(surroundings));
    }
};

namespace {

constexpr int songs = 100'000;
constexpr qsizetype mostRunning = 6;
constexpr qsizetype mostKept = 12;

PlaylistTrack songOf(int number)
{
    return {.trackType = u"song"_s,
            .trackID = QString::number(number),
            .title = u"آهنگ | %1"_s.arg(number),
            .artworkURL = number % 2 ? std::optional(u"/art/%1"_s.arg(number)) : std::nullopt,
            .streamURL = u"/song/%1"_s.arg(number)};
}

void work(OfflineStore &store)
{
    auto &random = *QRandomGenerator::global();
    if (store.pendingMeta().size() < mostRunning)
        store.download(songOf(random.bounded(songs)));
    const auto entries = store.entries();
    if (entries.size() > mostKept)
        store.remove(entries.at(random.bounded(int(entries.size()))));
    if (random.bounded(200) == 0)
        store.removeAll();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QtMainQueue queue;
    QtFileStore files;
    QtHttpSession session(OfflineStore::sessionConfiguration());
    const auto client = TestAccess::client(QUrl(QString::fromLocal8Bit(argv[1])), session);
    const auto store = TestAccess::store({files, queue, session, client});
    std::printf("READY %lld\n", static_cast<long long>(store->entries().size()));
    std::fflush(stdout);
    const auto timer = queue.every(1ms, [&store] { work(*store); });
    return QCoreApplication::exec();
}
