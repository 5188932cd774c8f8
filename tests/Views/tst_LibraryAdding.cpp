#include "ScreenRig.h"
#include "Support/Columns.h"
#include "Views/Library/AddToPlaylistSheet.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto onePlaylist = R"([{"id":7,"title":"شب","track_count":3}])"_ba;

Station playing()
{
    return {.genre = u"g"_s, .title = u"A - B"_s, .streamURL = u"/stream/g"_s};
}

} // namespace

class tst_LibraryAdding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_rig = std::make_unique<ScreenRig>();
        m_rig->signIn(onePlaylist);
    }
    void cleanup()
    {
        m_sheet.reset();
        m_rig.reset();
    }

    void adds();
    void createsOnlyWithATitle_data();
    void createsOnlyWithATitle();
    void creates();
    void sheetClosedInTheMiddle();

private:
    void openSheet(const std::optional<Station> &station = playing())
    {
        m_sheet = std::make_unique<AddToPlaylistSheet>(station, *m_rig->auth, *m_rig->client,
                                                       m_rig->surroundings());
    }

    std::unique_ptr<ScreenRig> m_rig;
    std::unique_ptr<AddToPlaylistSheet> m_sheet;
};

void tst_LibraryAdding::adds()
{
    openSheet();
    const QSignalSpy finished(m_sheet.get(), &AddToPlaylistSheet::finished);
    QCOMPARE(m_sheet->playlists()->rows().at(0).line, u"پلیلیست · 3"_s);
    m_sheet->add(1);
    QVERIFY(m_rig->http.exchanges.empty());
    m_sheet->add(0);
    m_sheet->add(0);
    m_sheet->setNewTitle(u"x"_s);
    m_sheet->createPlaylist();
    QVERIFY(m_sheet->addingRow() == 0 && m_rig->http.exchanges.size() == 1U);
    QVERIFY(m_rig->answer(R"({"message":"هست"})", 409).startsWith(u"POST /api/playlists/7/tracks {"_s));
    QVERIFY(m_sheet->message() == u"هست"_s && m_sheet->messageIsFailure() && m_sheet->addingRow() == -1);
    m_sheet->add(0);
    QVERIFY(m_sheet->message().isEmpty());
    m_rig->answer("{}");
    m_rig->answerLibrary(onePlaylist);
    QCOMPARE(m_sheet->message(), u"به «شب» اضافه شد ✓"_s);
    m_rig->queue.advance(699ms);
    QVERIFY(finished.isEmpty() && m_sheet->isBusy());
    m_rig->queue.advance(1ms);
    m_rig->settle();
    QVERIFY(finished.count() == 1 && !m_sheet->isBusy());
}

void tst_LibraryAdding::createsOnlyWithATitle_data()
{
    addColumns<QString, bool, bool>("title", "hasStation", "signedIn");
    QTest::newRow("blanks") << u" \t "_s << true << true;
    QTest::newRow("nothing plays") << u"x"_s << false << true;
    QTest::newRow("signed out") << u"x"_s << true << false;
}

void tst_LibraryAdding::createsOnlyWithATitle()
{
    const auto [title, hasStation, signedIn] =
        fetched<QString, bool, bool>("title", "hasStation", "signedIn");
    if (!signedIn) {
        m_rig->auth->logout();
        m_rig->settle();
        m_rig->answer("{}");
    }
    openSheet(hasStation ? std::optional(playing()) : std::nullopt);
    QCOMPARE(m_sheet->isSignedIn(), signedIn);
    m_sheet->setNewTitle(title);
    m_sheet->createPlaylist();
    QVERIFY(m_rig->http.exchanges.empty() && !m_sheet->isCreating());
}

void tst_LibraryAdding::creates()
{
    for (const bool isAdded : {false, true}) {
        openSheet();
        const QSignalSpy finished(m_sheet.get(), &AddToPlaylistSheet::finished);
        m_sheet->setNewTitle(u" x "_s);
        m_sheet->createPlaylist();
        QVERIFY(m_sheet->isCreating() && !m_sheet->canCreate());
        QCOMPARE(m_rig->answer(R"({"data":{"id":8}})"),
                 u"POST /api/playlists {\"description\":\"\",\"title\":\"x\"}"_s);
        m_rig->answerLibrary(R"([{"id":8,"title":"X"},{"id":7}])");
        QCOMPARE(m_sheet->message(), u"پلیلیست «x» ساخته شد"_s);
        QVERIFY(m_sheet->newTitle().isEmpty());
        QVERIFY(m_rig->answer(R"({"message":"پر است"})", isAdded ? 200 : 500)
                    .startsWith(u"POST /api/playlists/8/tracks {"_s));
        QCOMPARE(m_sheet->playlists()->count(), 2);
        QCOMPARE(m_sheet->message() == u"پر است"_s, !isAdded);
        QCOMPARE(m_sheet->isBusy(), isAdded);
        if (!isAdded)
            continue;
        m_rig->answerLibrary(onePlaylist);
        m_rig->queue.advance(500ms);
        m_rig->settle();
        QVERIFY(finished.count() == 1 && !m_sheet->isCreating());
    }
}

void tst_LibraryAdding::sheetClosedInTheMiddle()
{
    openSheet();
    m_sheet->setNewTitle(u"x"_s);
    m_sheet->createPlaylist();
    m_sheet.reset();
    m_rig->answer(R"({"data":{"id":8,"title":"X"}})");
    m_rig->answerLibrary("[]");
    QVERIFY(m_rig->answer("{}").startsWith(u"POST /api/playlists/8/tracks {"_s));
    QCOMPARE(m_rig->answer("{}"), u"GET /api/playlists"_s);
    m_rig->answer("{}");
    QCOMPARE(m_rig->queue.timerCount(), 0);
}

QTEST_GUILESS_MAIN(tst_LibraryAdding)
#include "tst_LibraryAdding.moc"
