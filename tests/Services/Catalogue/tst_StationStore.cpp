#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Catalogue/TrackCarryOver.h"
#include "Support/FakeHttpSession.h"
#include "Support/TestAccess.h"

#include <QCoro/QCoroTask>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Rig
{
    FakeHttpSession session;
    std::unique_ptr<APIClient> client = TestAccess::make<APIClient>(QUrl(u"https://a.example"_s), session);
    std::unique_ptr<StationStore> store = TestAccess::make<StationStore>(*client);

    void load(bool force, const QByteArray &answer, int status = 200)
    {
        auto task = store->load(force);
        session.take().answer(answer, status);
        QCoro::waitFor(std::move(task));
    }
};

/// "g" without tracks, "g:" with an empty list, "g:ab" with tracks titled a and b.
QList<Station> stations(const QString &text)
{
    QList<Station> list;
    for (const auto &word : text.split(u' ', Qt::SkipEmptyParts)) {
        auto &station = list.emplaceBack();
        station.genre = word.section(u':', 0, 0);
        if (!word.contains(u':'))
            continue;
        station.tracks.emplace();
        for (const auto letter : word.section(u':', 1))
            station.tracks->emplaceBack().title = QString(letter);
    }
    return list;
}

QString shown(const QList<Station> &list)
{
    QStringList words;
    for (const auto &station : list) {
        QString word = station.genre + (station.tracks ? u":"_s : u""_s);
        for (const auto &track : station.tracks.value_or(QList<PlaylistTrack>()))
            word += track.title.value_or(u"?"_s);
        words.append(word);
    }
    return words.join(u' ');
}

} // namespace

class tst_StationStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void carriesTracksOver();
    void publishesInOrder();
    void showsFailures();
    void dropsASecondLoad();
    void filters();
};

void tst_StationStore::carriesTracksOver()
{
    const std::array<QString, 3> cases[]{
        // old, fresh, merged
        {u"a:xyz b"_s, u"b a:"_s, u"b a:xyz"_s}, // empty: keeps the old
        {u"a:xyz"_s, u"a"_s, u"a"_s},            // absent: drops the old
        {u"a:xyz"_s, u"a:k"_s, u"a:k"_s},        // has entries: replaces the old
        {u"a:xyz"_s, u"b:"_s, u"b:"_s},
        {u"a: a"_s, u"a:"_s, u"a:"_s},
        {u""_s, u"a: b:k"_s, u"a: b:k"_s},
        {u"a:xyz"_s, u""_s, u""_s},
    };
    for (const auto &[old, fresh, expected] : cases) {
        auto list = stations(fresh);
        for (auto &station : list)
            station.title = u"fresh"_s;
        const auto merged = withCarriedTracks(list, stations(old));
        QCOMPARE(shown(merged), expected);
        QVERIFY(std::ranges::all_of(merged, [](const Station &s) { return s.title == u"fresh"_s; }));
    }
}

void tst_StationStore::publishesInOrder()
{
    Rig access;
    auto &store = *access.store;
    QStringList events;
    connect(&store, &StationStore::isLoadingChanged, this,
            [&] { events.append(store.isLoading() ? u"loading"_s : u"idle"_s); });
    connect(&store, &StationStore::stationsChanged, this, [&] { events.append(shown(store.stations())); });
    connect(&store, &StationStore::errorMessageChanged, this,
            [&] { events.append(store.errorMessage().value_or(u"no error"_s)); });

    access.load(false, R"({"data":[{"genre":"b","tracks":[{"id":1}]},{"genre":"a"}]})");
    access.load(true, {}, 503);
    access.load(false,
                R"({"data":[{"genre":"b","tracks":[]}]})"); // the message goes at once, the tracks stay
    QCOMPARE(events, (QStringList{u"loading"_s, u"b:? a"_s, u"idle"_s, u"loading"_s, u"خطای سرور (503)"_s,
                                  u"idle"_s, u"loading"_s, u"no error"_s, u"b:?"_s, u"idle"_s}));
}

void tst_StationStore::showsFailures()
{
    for (const auto &[filled, force, isShown] :
         {std::tuple(false, false, true), std::tuple(false, true, true), std::tuple(true, false, false),
          std::tuple(true, true, true)}) {
        Rig access;
        if (filled)
            access.load(false, R"({"data":[{"genre":"a"}]})");
        access.load(force, "{}"); // lacks the list
        QCOMPARE(access.store->errorMessage(),
                 isShown ? std::optional(errorDescription(APIError::decoding())) : std::nullopt);
        QCOMPARE(shown(access.store->stations()), filled ? u"a"_s : u""_s);
    }
}

void tst_StationStore::dropsASecondLoad()
{
    Rig access;
    auto first = access.store->load(false);
    QCoro::waitFor(access.store->load(true));
    QCOMPARE(access.session.exchanges.size(), 1U);
    access.store.reset(); // a store that goes before its answer comes
    access.session.take().fail();
    QCoro::waitFor(std::move(first));
}

void tst_StationStore::filters()
{
    Rig access;
    auto &store = *access.store;
    access.load(false, R"({"data":[{"genre":"a","category":"iranian"},{"genre":"b"},
        {"genre":"c","category":"Iranian"},{"genre":"d","category":"instrumental","source":"iranian"},
        {"genre":"e","category":"iranian"},{"genre":"f","category":"international"}]})");
    int changes = 0;
    connect(&store, &StationStore::selectedCategoryChanged, this, [&] { ++changes; });
    QStringList tabs;
    for (const auto category : StationStore::categories()) {
        store.setSelectedCategory(category);
        store.setSelectedCategory(category);
        tabs.append(StationStore::label(category) + u' ' + shown(store.filteredStations()));
    }
    QCOMPARE(tabs, (QStringList{u"همه a b c d e f"_s, u"ایرانی a e"_s, u"بینالمللی f"_s, u"بیکلام d"_s}));
    QCOMPARE(changes, 3); // the first was selected already
}

QTEST_GUILESS_MAIN(tst_StationStore)
#include "tst_StationStore.moc"
