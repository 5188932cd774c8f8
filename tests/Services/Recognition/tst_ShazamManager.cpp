#include "Platform/Storage/SettingsUserDefaults.h"
#include "Services/Playback/RadioPlayerRig.h"
#include "Services/Recognition/ShazamManager.h"
#include "Shared/ShazamIntents.h"
#include "Support/Columns.h"
#include "Support/FakeUserDefaults.h"

#include <QDateTime>
#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double moment = 1'700'000'000.75; // seconds since 1970
const auto deniedText = u"دسترسی به میکروفون برای شناسایی آهنگ ضروری است."_s;
const auto noMatchText = u"متاسفانه آهنگی شناسایی نشد. در محیط خلوتتر دوباره امتحان کنید."_s;
const auto songAnswer = R"({"data":{"title":"باران","artist":"لیلا"}})"_ba;

} // namespace

class tst_ShazamManager : public QObject, private RadioPlayerRig
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void cycles_data();
    void cycles();
    void onlyOneAtATime();
    void startsInOneSecond() { twoQuickStarts(0); }
    void startsOverTheTurnOfASecond() { twoQuickStarts(0.5); }
    void noPermission();
    void noBeginning();
    void endsWhileListening();
    void handOffs_data();
    void handOffs();
    void oneRequestOpensOnce();
    void suites_data();
    void suites();

private:
    void twoQuickStarts(double later);
    void listen()
    {
        m_shazam->startRecognition();
        settle();
    }
    void pass(std::chrono::milliseconds time)
    {
        m_queue->advance(time);
        settle();
        settle(); // the file, then the request
    }
    [[nodiscard]] QStringList snippets() const
    {
        return QDir(m_home->path()).entryList({u"shazam_snippet_*"_s});
    }

    FakeUserDefaults m_settings;
    UserDefaults *m_suite = nullptr;
    double m_now = moment;
    std::unique_ptr<ShazamManager> m_shazam;
};

void tst_ShazamManager::init()
{
    setUp();
    qputenv("TMPDIR", m_home->path().toUtf8());
    m_settings = {};
    m_now = moment;
    m_suite = &m_settings;
    m_shazam = TestAccess::makeIn<ShazamManager>(
        m_desktop->microphone, *m_files, *m_queue, m_desktop->systemLog, *m_client, *m_player,
        [this] { return m_suite; }, [this] { return m_now; });
}

void tst_ShazamManager::cleanup()
{
    m_queue->advance(1min);
    tearDown();
    m_shazam.reset();
}

void tst_ShazamManager::cycles_data()
{
    // status: 0: nobody answers
    addColumns<int, QByteArray, QString, QString>("status", "body", "title", "error");
    QTest::newRow("recognised") << 200 << songAnswer << u"باران"_s << u""_s;
    QTest::newRow("not found, in its own words")
        << 404 << R"({"message":"ناشناس"})"_ba << u""_s << u"ناشناس"_s;
    QTest::newRow("too large") << 413 << "<html>"_ba << u""_s << u"خطای سرور (413)"_s;
    QTest::newRow("no data") << 200 << R"({"code":200})"_ba << u""_s << u"خطا در پردازش پاسخ سرور"_s;
    QTest::newRow("garbage") << 200 << "\0\1"_ba << u""_s << DecodingError::description();
    QTest::newRow("silence") << 0 << ""_ba << u""_s
                             << TransportError(TransportError::Kind::TimedOut, {}).description();
}

void tst_ShazamManager::cycles()
{
    const auto [status, body] = fetched<int, QByteArray>("status", "body");
    listen();
    QVERIFY(m_shazam->isListening() && !m_shazam->isProcessing());
    QCOMPARE(snippets(), QStringList{u"shazam_snippet_1700000000.m4a"_s});
    pass(4499ms);
    QVERIFY(m_shazam->isListening() && m_http->exchanges.empty());
    const auto configured = m_desktop->audioSession.configured;
    pass(1ms);
    QVERIFY(!m_shazam->isListening() && m_shazam->isProcessing());
    auto exchange = m_http->take();
    QCOMPARE(exchange.request.url.path(), u"/api/shazam"_s);
    QCOMPARE(exchange.request.body, m_desktop->microphone.sound);
    QCOMPARE(m_desktop->audioSession.configured, configured);
    if (status == 0)
        exchange.fail(TransportError::Kind::TimedOut);
    else
        exchange.answer(body, status);
    settle();
    QVERIFY(!m_shazam->isListening() && !m_shazam->isProcessing());
    QTEST(m_shazam->recognizedTrack().value_or(ShazamData()).title.value_or(QString()), "title");
    QTEST(m_shazam->errorMessage().value_or(QString()), "error");
    QCOMPARE(snippets(), QStringList());
    QCOMPARE(m_desktop->audioSession.configured, configured + 1);
    QCOMPARE(m_desktop->microphone.running, 0);

    listen(); // clears what came of the last one
    QVERIFY(!m_shazam->errorMessage() && !m_shazam->recognizedTrack());
}

void tst_ShazamManager::onlyOneAtATime()
{
    m_desktop->microphone.granted.reset();
    m_shazam->startRecognition();
    m_desktop->microphone.answerPermission(true);
    settle();
    m_shazam->startRecognition();
    QCOMPARE(m_desktop->microphone.asked(), std::size_t(0));
    m_home->remove(); // what was recorded cannot be read
    pass(4500ms);
    QCOMPARE(m_shazam->errorMessage(), noMatchText);
    QVERIFY(m_http->exchanges.empty() && !m_shazam->isProcessing());

    m_home = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", m_home->path().toUtf8());
    m_shazam->startRecognition();
    m_desktop->microphone.answerPermission(true);
    pass(4500ms);
    pass(4500ms);
    QVERIFY(m_shazam->isProcessing());
    m_shazam->startRecognition();
    QCOMPARE(m_desktop->microphone.asked(), std::size_t(0));
}

/// Both find nobody listening. One snippet is sent, and no file stays.
void tst_ShazamManager::twoQuickStarts(double later)
{
    m_desktop->microphone.granted.reset();
    m_shazam->startRecognition();
    m_shazam->startRecognition();
    QCOMPARE(m_desktop->microphone.asked(), std::size_t(2));
    const QMetaObject::Connection moved =
        connect(m_shazam.get(), &ShazamManager::isListeningChanged, this, [this, later] { m_now += later; });
    m_desktop->microphone.answerPermission(true);
    settle();
    const auto &paths = m_desktop->microphone.paths;
    QCOMPARE(paths.size(), 2);
    QCOMPARE(paths[0] == paths[1], later == 0);
    QCOMPARE(m_desktop->microphone.running, 1);
    disconnect(moved);
    pass(4500ms);
    QCOMPARE(m_http->exchanges.size(), std::size_t(1));
    m_http->take().answer(songAnswer);
    pass(10s);
    QVERIFY(m_http->exchanges.empty() && !m_shazam->isListening() && m_shazam->recognizedTrack());
    QCOMPARE(snippets(), QStringList());
    QCOMPARE(m_desktop->microphone.running, 0);
}

void tst_ShazamManager::noPermission()
{
    m_shazam->setRecognizedTrack(ShazamData());
    m_desktop->microphone.granted = false;
    const QSignalSpy listening(m_shazam.get(), &ShazamManager::isListeningChanged);
    listen();
    QCOMPARE(m_shazam->errorMessage(), deniedText);
    QVERIFY(m_shazam->recognizedTrack() && listening.isEmpty() && m_desktop->microphone.paths.isEmpty());
}

void tst_ShazamManager::noBeginning()
{
    m_desktop->microphone.begins = false;
    const auto configured = m_desktop->audioSession.configured;
    listen();
    QCOMPARE(m_shazam->errorMessage(), u"خطا در آغاز ضبط صدا"_s);
    QVERIFY(!m_shazam->isListening() && !m_shazam->isProcessing());
    QCOMPARE(m_desktop->audioSession.configured, configured + 1);
    QCOMPARE(m_queue->timerCount(), 0);
}

void tst_ShazamManager::endsWhileListening()
{
    listen();
    m_shazam.reset();
    QCOMPARE(snippets(), QStringList());
    pass(10s);
    QVERIFY(m_http->exchanges.empty());
    QCOMPARE(m_desktop->microphone.running, 0);
}

void tst_ShazamManager::handOffs_data()
{
    addColumns<QVariant, QString, bool>("stamp", "logged", "opens");
    const auto row = [](const char *name, double age, const QString &logged, bool opens) {
        QTest::newRow(name) << QVariant(moment - age) << logged << opens;
    };
    row("just now", 0, u"1700000000.750000"_s, true);
    row("young", 119, u"1699999881.750000"_s, true);
    row("too old by nothing", 120, u"1699999880.750000"_s, false);
    row("old", 121, u"1699999879.750000"_s, false);
    row("from the future", -1000, u"1700001000.750000"_s, true);
    QTest::newRow("none") << QVariant() << u"0.000000"_s << false;
    QTest::newRow("negative") << QVariant(-5.0) << u"-5.000000"_s << false;
    QTest::newRow("a text") << QVariant(u"nan"_s) << u"0.000000"_s << false;
    QTest::newRow("a list") << QVariant(QVariantList{1.7e9}) << u"0.000000"_s << false;
}

void tst_ShazamManager::handOffs()
{
    const auto [stamp, logged, opens] = fetched<QVariant, QString, bool>("stamp", "logged", "opens");
    m_settings.values.insert(ShazamRequest::key, stamp);
    m_shazam->checkPendingExternalRequest();
    QCOMPARE(m_shazam->openRequest(), opens);
    QCOMPARE(m_shazam->autoStartOnOpen(), opens);
    QCOMPARE(m_settings.values.value(ShazamRequest::key), opens ? QVariant() : stamp);
    QStringList lines{u"info checkPendingExternalRequest: timestamp="_s + logged};
    if (opens)
        lines << u"info checkPendingExternalRequest: opening shazam sheet"_s
              << u"info requestOpen called, autoStart=true"_s;
    QCOMPARE(m_desktop->systemLog.lines, lines);
}

void tst_ShazamManager::oneRequestOpensOnce()
{
    const QSignalSpy requests(m_shazam.get(), &ShazamManager::openRequestChanged);
    m_settings.values.insert(ShazamRequest::key, m_now - 1);
    m_shazam->checkPendingExternalRequest();
    m_shazam->checkPendingExternalRequest();
    QCOMPARE(requests.count(), 1);
    m_shazam->requestOpen(false); // takes the pending start back
    QVERIFY(m_shazam->openRequest() && !m_shazam->autoStartOnOpen());

    m_suite = nullptr;
    m_desktop->systemLog.lines.clear();
    m_shazam->checkPendingExternalRequest();
    QCOMPARE(m_desktop->systemLog.lines, QStringList{u"error checkPendingExternalRequest: suite is nil"_s});
}

void tst_ShazamManager::suites_data()
{
    // before: "/" is a folder in the file's place
    addColumns<QByteArray, bool>("before", "opens");
    QTest::newRow("new") << QByteArray() << true;
    QTest::newRow("garbage") << "\xff\0[%%%\n=\n]shazamRequestAt"_ba << true;
    QTest::newRow("another value") << "[General]\nother=1\nshazamRequestAt=\"[]\"\n"_ba << true;
    QTest::newRow("no file can be there") << "/"_ba << false;
}

/// From an intent that another process runs to the request, over a file on the disk.
void tst_ShazamManager::suites()
{
    const auto [before, opens] = fetched<QByteArray, bool>("before", "opens");
    qputenv("XDG_CONFIG_HOME", m_home->path().toUtf8());
    const QDir folder(m_home->filePath(u"navorin"_s));
    const auto path = folder.filePath(ShazamRequest::suite + u".conf"_s);
    QVERIFY(folder.mkpath(before == "/" ? path : folder.path()));
    if (!before.isEmpty() && before != "/") {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(before) == before.size());
    }
    const auto ours = SettingsUserDefaults::openSuite(*m_queue, ShazamRequest::suite);
    QCOMPARE(ours != nullptr, opens);
    m_suite = ours.get();
    m_now = double(QDateTime::currentSecsSinceEpoch());
    m_shazam->checkPendingExternalRequest();
    QVERIFY(!m_shazam->openRequest());
    ShazamAppIntent::perform(SettingsUserDefaults::openSuite(*m_queue, ShazamRequest::suite).get());
    ShazamOpenIntent::perform(SettingsUserDefaults::openSuite(*m_queue, ShazamRequest::suite).get());
    m_shazam->checkPendingExternalRequest();
    QCOMPARE(m_shazam->openRequest(), opens);
}

QTEST_GUILESS_MAIN(tst_ShazamManager)
#include "tst_ShazamManager.moc"
