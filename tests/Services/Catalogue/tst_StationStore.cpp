#include "Services/Backend/APIClient.h"
#include "Services/Catalogue/StationStore.h"
#include "Services/Catalogue/TrackCarryOver.h"
#include "Support/FakeHttpSession.h"

#include <QCoro/QCoroTask>
#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace navorin {
struct TestAccess
{
    FakeHttpSession session;
    std::unique_ptr<APIClient> client{new APIClient(QUrl(u"https://a.example"_s), session)};
    std::unique_ptr<StationStore> store{new StationStore(*client)};
};
} // namespace navorin

namespace {

QStringList genresOf(const QList<Station> &stations)
{
    QStringList genres;
    for (const auto &station : stations)
        genres.append(station.genre);
    return genres;
}

/// "g" without tracks, "g:" with an empty list, "g:ab" with tracks titled a and b.
QList<Station> stations(const QString &text)
{
    QList<Station> list;
    for (const auto &word : text.split(u' ', Qt::SkipEmptyParts)) {
        const auto parts = word.split(u':');
        auto &station = list.emplaceBack();
        station.genre = parts.first();
        if (parts.size() < 2)
            continue;
        station.tracks.emplace();
        for (const auto letter : parts.last())
            station.tracks->emplaceBack().title = QString(letter);
    }
    return list;
}

QString shown(const QList<Station> &list)
{
    QStringList words;
    for (const auto &station : list) {
        QString word = station.genre;
        if (station.tracks)
            word += u':';
        for (const auto &track : station.tracks.value_or(QList<PlaylistTrack>()))
            word += *track.title;
        words.append(word);
    }
    return words.join(u' ');
}

} // namespace

class tst_StationStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void carriesTracksOver_data();
    void carriesTracksOver();
    void publishesInOrder();
    void failures_data();
    void failures();
    void dropsASecondLoad();
    void filters();
};

void tst_StationStore::carriesTracksOver_data()
{
    QTest::addColumn<QString>("old");
    QTest::addColumn<QString>("fresh");
    QTest::addColumn<QString>("merged");
    QTest::newRow("empty list keeps the old") << u"a:xyz b"_s << u"b a:"_s << u"b a:xyz"_s;
    QTest::newRow("absent list drops the old") << u"a:xyz"_s << u"a"_s << u"a"_s;
    QTest::newRow("new entries replace the old") << u"a:xyz"_s << u"a:k"_s << u"a:k"_s;
    QTest::newRow("other genre") << u"a:xyz"_s << u"b:"_s << u"b:"_s;
    QTest::newRow("old had none") << u"a: a"_s << u"a:"_s << u"a:"_s;
    QTest::newRow("first load") << u""_s << u"a: b:k"_s << u"a: b:k"_s;
    QTest::newRow("all gone") << u"a:xyz"_s << u""_s << u""_s;
}

void tst_StationStore::carriesTracksOver()
{
    QFETCH(QString, old);
    QFETCH(QString, fresh);
    auto before = stations(fresh);
    for (auto &station : before)
        station.title = u"fresh"_s;
    const auto merged = withCarriedTracks(before, stations(old));
    QTEST(shown(merged), "merged");
    QVERIFY(std::ranges::all_of(merged, [](const Station &s) { return s.title == u"fresh"_s; }));
}

void tst_StationStore::publishesInOrder()
{
    TestAccess access;
    auto &store = *access.store;
    QStringList events;
    connect(&store, &StationStore::isLoadingChanged, this,
            [&] { events.append(store.isLoading() ? u"loading"_s : u"idle"_s); });
    connect(&store, &StationStore::stationsChanged, this,
            [&] { events.append(genresOf(store.stations()).join(u',')); });
    connect(&store, &StationStore::errorMessageChanged, this,
            [&] { events.append(store.errorMessage().value_or(u"no error"_s)); });

    store.load(false);
    QCOMPARE(events, QStringList(u"loading"_s));
    access.session.take().answer(R"({"data":[{"genre":"b","tracks":[{"id":1}]},{"genre":"a"}]})");
    QTRY_VERIFY(!store.isLoading());
    QCOMPARE(events, (QStringList{u"loading"_s, u"b,a"_s, u"idle"_s}));

    events.clear();
    store.load(true);
    access.session.take().fail();
    QTRY_VERIFY(!store.isLoading());
    const auto text = errorDescription(TransportError(TransportError::Kind::CannotConnect, {}));
    QCOMPARE(events, (QStringList{u"loading"_s, text, u"idle"_s}));

    events.clear(); // the message goes at once, the tracks stay
    store.load(false);
    access.session.take().answer(R"({"data":[{"genre":"b","tracks":[]}]})");
    QTRY_VERIFY(!store.isLoading());
    QCOMPARE(events, (QStringList{u"loading"_s, u"no error"_s, u"b"_s, u"idle"_s}));
    QCOMPARE(store.stations().first().tracks->size(), 1);
}

void tst_StationStore::failures_data()
{
    QTest::addColumn<bool>("filled");
    QTest::addColumn<bool>("force");
    QTest::addColumn<bool>("shown");
    QTest::newRow("first") << false << false << true;
    QTest::newRow("first, forced") << false << true << true;
    QTest::newRow("silent refresh") << true << false << false;
    QTest::newRow("forced refresh") << true << true << true;
}

void tst_StationStore::failures()
{
    QFETCH(bool, filled);
    QFETCH(bool, force);
    QFETCH(bool, shown);
    TestAccess access;
    auto &store = *access.store;
    if (filled) {
        store.load(false);
        access.session.take().answer(R"({"data":[{"genre":"a"}]})");
        QTRY_VERIFY(!store.isLoading());
    }
    const QSignalSpy changes(&store, &StationStore::stationsChanged);
    store.load(force);
    access.session.take().answer("{}", 200); // no data
    QTRY_VERIFY(!store.isLoading());
    QCOMPARE(store.errorMessage(),
             shown ? std::optional(errorDescription(APIError::decoding())) : std::nullopt);
    QCOMPARE(store.stations().size(), filled ? 1 : 0);
    QCOMPARE(changes.size(), 0);
}

void tst_StationStore::dropsASecondLoad()
{
    TestAccess access;
    access.store->load(false);
    access.store->load(true);
    QCOMPARE(access.session.exchanges.size(), 1U);
    access.session.take().answer(R"({"data":[]})");
    QTRY_VERIFY(!access.store->isLoading());
    auto load = access.store->load(false);
    QCOMPARE(access.session.exchanges.size(), 1U);
    access.store.reset(); // a store that goes before its answer comes
    access.session.take().fail();
    QCoro::waitFor(std::move(load));
}

void tst_StationStore::filters()
{
    TestAccess access;
    auto &store = *access.store;
    store.load(false);
    access.session.take().answer(R"({"data":[{"genre":"a","category":"iranian"},{"genre":"b"},
        {"genre":"c","category":"Iranian"},{"genre":"d","category":"instrumental","source":"iranian"},
        {"genre":"e","category":"iranian"},{"genre":"f","category":"international"}]})");
    QTRY_VERIFY(!store.isLoading());

    const QSignalSpy changes(&store, &StationStore::selectedCategoryChanged);
    QStringList tabs;
    for (const auto category : StationStore::categories()) {
        store.setSelectedCategory(category);
        store.setSelectedCategory(category);
        tabs.append(StationStore::label(category) + u' ' + genresOf(store.filteredStations()).join(u' '));
    }
    QCOMPARE(tabs, (QStringList{u"همه a b c d e f"_s, u"ایرانی a e"_s, u"بینالمللی f"_s, u"بیکلام d"_s}));
    QCOMPARE(changes.size(), 3); // All was selected already
    QVERIFY(access.session.exchanges.empty());
}

QTEST_GUILESS_MAIN(tst_StationStore)
#include "tst_StationStore.moc"
