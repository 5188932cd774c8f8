#include "Services/Account/AuthStore.h"
#include "Services/Account/Keychain.h"
#include "Services/Backend/APIClient.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeSecureItemStore.h"
#include "Support/ManualMainQueue.h"
#include "Views/Account/LoginSheet.h"
#include "Views/ViewSetup.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace navorin {
struct TestAccess
{
    static void installKeychain(SecureItemStore &store)
    {
        Keychain::instance().reset();
        Keychain::instance().setMaker([&store] { return std::unique_ptr<Keychain>(new Keychain(store)); });
    }
    static void removeKeychain() { Keychain::instance().reset(); }
    static std::unique_ptr<APIClient> client(const QUrl &base, HttpSession &session)
    {
        return std::unique_ptr<APIClient>(new APIClient(base, session));
    }
    static std::unique_ptr<AuthStore> store(APIClient &client, MainQueue &queue)
    {
        return std::unique_ptr<AuthStore>(new AuthStore(client, queue));
    }
};
} // namespace navorin

namespace {

const auto sessionAnswer =
    R"({"session_id":"s1","bot_link":"http://127.0.0.1/bot?start=s1","telegram_username":"ali","expires_in":90})"_ba;

} // namespace

class tst_LoginSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void forms_data();
    void forms();
    void codes_data();
    void codes();
    void signsIn();
    void signsUp();
    void resets();
    void counts();
    void opensTelegram_data();
    void opensTelegram();
    void closedMeanwhile();

private:
    QJsonObject answer(const QByteArray &body, int status = 200)
    {
        auto exchange = m_http->take();
        const auto sent = QJsonDocument::fromJson(exchange.request.body).object();
        exchange.answer(body, status);
        settle();
        return sent;
    }
    void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        m_queue->drain();
    }
    void reachSignupCode();

    std::unique_ptr<FakeHttpSession> m_http;
    std::unique_ptr<ManualMainQueue> m_queue;
    FakeSecureItemStore m_secrets;
    FakeDesktop m_desktop;
    std::unique_ptr<APIClient> m_client;
    std::unique_ptr<AuthStore> m_auth;
    std::unique_ptr<LoginSheet> m_sheet;
};

void tst_LoginSheet::init()
{
    m_http = std::make_unique<FakeHttpSession>();
    m_queue = std::make_unique<ManualMainQueue>();
    m_client = TestAccess::client(QUrl(u"https://a.example"_s), *m_http);
    m_secrets.items.clear();
    TestAccess::installKeychain(m_secrets);
    m_auth = TestAccess::store(*m_client, *m_queue);
    m_sheet =
        std::make_unique<LoginSheet>(*m_auth, *m_client, ViewSurroundings{*m_queue, m_desktop.urlOpener});
}

void tst_LoginSheet::cleanup()
{
    m_sheet.reset();
    while (!m_http->exchanges.empty()) {
        m_http->take().fail();
        settle();
    }
    m_auth.reset();
    TestAccess::removeKeychain();
}

/// The only way to the sign-up form: back from the made-up code step.
void tst_LoginSheet::reachSignupCode()
{
    m_sheet = std::make_unique<LoginSheet>(*m_auth, *m_client,
                                           ViewSurroundings{*m_queue, m_desktop.urlOpener, true});
}

void tst_LoginSheet::forms_data()
{
    QTest::addColumn<QString>("username");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("login");
    QTest::addColumn<bool>("signup");
    QTest::newRow("empty") << u""_s << u""_s << false << false;
    QTest::newRow("blanks for a name") << u" \t "_s << u"12345"_s << false << false;
    QTest::newRow("blanks for a password") << u"ali"_s << u"    "_s << true << true;
    QTest::newRow("short name") << u" al "_s << u"1234"_s << true << false;
    QTest::newRow("short password") << u"ali"_s << u"123"_s << false << false;
    QTest::newRow("emoji count once") << u"ali"_s << u"😀e\u0301ab"_s << true << true;
    QTest::newRow("three of them") << u"ali"_s << u"😀e\u0301a"_s << false << false;
}

void tst_LoginSheet::forms()
{
    QFETCH(QString, username);
    QFETCH(QString, password);
    m_sheet->setProperty("username", username);
    m_sheet->setProperty("password", password);
    QTEST(m_sheet->loginValid(), "login");
    QTEST(m_sheet->signupValid(), "signup");
}

void tst_LoginSheet::codes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::newRow("mixed") << u"12 34-5678"_s << u"123456"_s;
    QTest::newRow("persian") << u"کد: ۱۲۳۴۵۶"_s << u"۱۲۳۴۵۶"_s;
    QTest::newRow("letters") << u"abc"_s << u""_s;
    QTest::newRow("beyond 16 bits") << u"𝟙𝟚3"_s << u"𝟙𝟚3"_s;
}

void tst_LoginSheet::codes()
{
    QFETCH(QString, typed);
    m_sheet->setOtpCode(typed);
    QTEST(m_sheet->otpCode(), "kept");
    QCOMPARE(m_sheet->codeValid(), m_sheet->otpCode().size() == 6);
}

void tst_LoginSheet::signsIn()
{
    const QSignalSpy finished(m_sheet.get(), &LoginSheet::finished);
    m_sheet->setProperty("username", u" ALI "_s);
    m_sheet->setProperty("password", u" p w "_s);
    m_sheet->submitLogin();
    QVERIFY(m_sheet->isSubmitting());
    const auto sent = answer(R"({"message":"رمز نادرست است"})", 401);
    QCOMPARE(sent, (QJsonObject{{u"username"_s, u"ali"_s}, {u"password"_s, u"p w"_s}}));
    QCOMPARE(m_sheet->errorMessage(), u"رمز نادرست است"_s);
    QVERIFY(!m_sheet->isSubmitting() && finished.isEmpty());
    m_sheet->setMode(LoginSheet::SignupFlow); // clears the error, and the form stays
    QVERIFY(m_sheet->errorMessage().isEmpty());
    QCOMPARE(m_sheet->step(), LoginSheet::Login);

    m_sheet->submitLogin();
    answer(R"({"data":{"token":"t","user":{}}})");
    answer("{}");
    answer("{}");
    QCOMPARE(finished.count(), 1);
    QVERIFY(m_auth->isAuthed());
}

void tst_LoginSheet::signsUp()
{
    reachSignupCode();
    QCOMPARE(m_sheet->step(), LoginSheet::SignupTelegram);
    QCOMPARE(m_sheet->timeLeft(), u"4:45"_s);
    QCOMPARE(m_sheet->otpCode(), u"516"_s);
    m_sheet->goBack();
    QCOMPARE(m_sheet->step(), LoginSheet::SignupForm);
    QVERIFY(!m_sheet->hasSession() && m_sheet->otpCode().isEmpty());

    m_sheet->setProperty("username", u"Sara "_s);
    m_sheet->setProperty("password", u"1234"_s);
    m_sheet->startSignup();
    QCOMPARE(answer(sessionAnswer).value(u"username"_s).toString(), u"sara"_s);
    QCOMPARE(m_sheet->step(), LoginSheet::SignupTelegram);
    QCOMPARE(m_sheet->botHandle(), u"NavorinBot"_s);
    m_sheet->setOtpCode(u"۱۲۳۴۵۶"_s);
    m_sheet->verifySignup();
    const auto sent = answer(R"({"code":1,"message":"کد اشتباه است"})");
    QCOMPARE(sent, (QJsonObject{{u"session_id"_s, u"s1"_s}, {u"otp_code"_s, u"۱۲۳۴۵۶"_s}}));
    QCOMPARE(m_sheet->errorMessage(), u"کد اشتباه است"_s);
    QCOMPARE(m_sheet->otpCode(), u"۱۲۳۴۵۶"_s);
    m_sheet->goBack();
    QCOMPARE(m_sheet->property("username").toString(), u"Sara "_s);
}

void tst_LoginSheet::resets()
{
    m_sheet->submitReset(); // without a session nothing happens
    m_sheet->verifySignup();
    m_sheet->openTelegram();
    QVERIFY(m_http->exchanges.empty() && !m_sheet->isSubmitting());
    m_sheet->forget();
    m_sheet->setProperty("identifier", u" @Ali "_s);
    m_sheet->startForgot();
    QCOMPARE(answer(sessionAnswer), (QJsonObject{{u"identifier"_s, u"@Ali"_s}}));
    QCOMPARE(m_sheet->step(), LoginSheet::ForgotReset);
    QCOMPARE(m_sheet->codeReceiver(), u"@ali"_s);
    m_sheet->setOtpCode(u"123456"_s);
    QVERIFY(!m_sheet->codeValid());
    m_sheet->setProperty("newPassword", u"new1 "_s);
    QVERIFY(m_sheet->codeValid());
    m_sheet->submitReset();
    QCOMPARE(answer("{}").value(u"new_password"_s).toString(), u"new1"_s);
    QCOMPARE(m_sheet->step(), LoginSheet::ForgotDone);
    QVERIFY(!m_sheet->hasSession() && !m_auth->isAuthed());
    m_sheet->goBack();
    QCOMPARE(m_sheet->step(), LoginSheet::ForgotDone);
    m_sheet->finishReset();
    QCOMPARE(m_sheet->step(), LoginSheet::Login);
}

void tst_LoginSheet::counts()
{
    m_sheet->forget();
    m_sheet->startForgot();
    answer(sessionAnswer);
    QCOMPARE(m_sheet->timeLeft(), u"1:30"_s);
    QVERIFY(!m_sheet->isTimeShort());
    m_queue->advance(31s);
    QCOMPARE(m_sheet->timeLeft(), u"0:59"_s);
    QVERIFY(m_sheet->isTimeShort());
    m_queue->advance(59s);
    QCOMPARE(m_sheet->timeLeft(), u""_s);
    m_queue->advance(5s);
    QCOMPARE(m_queue->timerCount(), 0);
    QVERIFY(m_sheet->hasSession()); // the server decides whether a late code is good
}

void tst_LoginSheet::opensTelegram_data()
{
    QTest::addColumn<bool>("installed");
    QTest::addColumn<QString>("opened");
    QTest::newRow("telegram") << true << u"tg://resolve?domain=NavorinBot&start=s1"_s;
    QTest::newRow("no telegram") << false << u"http://127.0.0.1/bot?start=s1"_s;
}

void tst_LoginSheet::opensTelegram()
{
    QFETCH(bool, installed);
    m_desktop.urlOpener.schemes = installed ? QStringList{u"tg"_s} : QStringList();
    m_desktop.urlOpener.opened.clear();
    m_sheet->startForgot();
    answer(sessionAnswer);
    m_sheet->openTelegram();
    QTEST(m_desktop.urlOpener.opened.join(u' '), "opened");
}

void tst_LoginSheet::closedMeanwhile()
{
    m_sheet->startForgot();
    m_sheet.reset();
    answer(sessionAnswer);
    QCOMPARE(m_queue->timerCount(), 0);
}

QTEST_GUILESS_MAIN(tst_LoginSheet)
#include "tst_LoginSheet.moc"
