#include "ScreenRig.h"
#include "Views/Account/LoginSheet.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto sessionAnswer =
    R"({"session_id":"s1","bot_link":"http://127.0.0.1/bot?start=s1","telegram_username":"ali","expires_in":90})"_ba;

} // namespace

class tst_LoginSheet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_rig = std::make_unique<ScreenRig>();
        open();
    }
    void cleanup()
    {
        m_sheet.reset();
        m_rig.reset();
    }

    void forms();
    void codes();
    void signsIn();
    void signsUp();
    void resets();
    void counts();
    void opensTelegram();
    void closedMeanwhile();

private:
    void open(bool showsExample = false)
    {
        m_sheet = std::make_unique<LoginSheet>(
            *m_rig->auth, *m_rig->client,
            ViewSurroundings{m_rig->queue, m_rig->desktop.urlOpener, showsExample});
    }

    std::unique_ptr<ScreenRig> m_rig;
    std::unique_ptr<LoginSheet> m_sheet;
};

void tst_LoginSheet::forms()
{
    const std::tuple<QString, QString, bool, bool> cases[]{
        // name, password, and whether they are good for a login and a sign-up
        {u""_s, u""_s, false, false},
        {u" \t "_s, u"12345"_s, false, false},
        {u"ali"_s, u"    "_s, true, true},
        {u" al "_s, u"1234"_s, true, false},
        {u"ali"_s, u"123"_s, false, false},
        {u"ali"_s, u"😀e\u0301ab"_s, true, true}, // what is seen as one counts once
        {u"ali"_s, u"😀e\u0301a"_s, false, false},
    };
    for (const auto &[username, password, login, signup] : cases) {
        m_sheet->setProperty("username", username);
        m_sheet->setProperty("password", password);
        QVERIFY2(m_sheet->loginValid() == login && m_sheet->signupValid() == signup, qPrintable(password));
    }
}

void tst_LoginSheet::codes()
{
    for (const auto &[typed, kept] : {std::pair(u"12 34-5678"_s, u"123456"_s),
                                      {u"کد: ۱۲۳۴۵۶"_s, u"۱۲۳۴۵۶"_s},
                                      {u"abc"_s, u""_s},
                                      {u"𝟙𝟚3"_s, u"𝟙𝟚3"_s}}) { // beyond 16 bits
        m_sheet->setOtpCode(typed);
        QCOMPARE(m_sheet->otpCode(), kept);
        QCOMPARE(m_sheet->codeValid(), kept.size() == 6);
    }
}

void tst_LoginSheet::signsIn()
{
    const QSignalSpy finished(m_sheet.get(), &LoginSheet::finished);
    m_sheet->setProperty("username", u" ALI "_s);
    m_sheet->setProperty("password", u" p w "_s);
    m_sheet->submitLogin();
    QVERIFY(m_sheet->isSubmitting());
    QCOMPARE(m_rig->answer(R"({"message":"رمز نادرست است"})", 401),
             u"POST /api/auth/login {\"password\":\"p w\",\"username\":\"ali\"}"_s);
    QCOMPARE(m_sheet->errorMessage(), u"رمز نادرست است"_s);
    QVERIFY(!m_sheet->isSubmitting() && finished.isEmpty());
    m_sheet->setMode(LoginSheet::SignupFlow); // clears the error, and the form stays
    QVERIFY(m_sheet->errorMessage().isEmpty());
    QCOMPARE(m_sheet->step(), LoginSheet::Login);

    m_sheet->submitLogin();
    m_rig->answer(R"({"data":{"token":"t","user":{}}})");
    m_rig->answerLibrary();
    QCOMPARE(finished.count(), 1);
    QVERIFY(m_rig->auth->isAuthed());
}

void tst_LoginSheet::signsUp()
{
    open(true); // back from the made-up code step: the only way to the form
    QCOMPARE(m_sheet->step(), LoginSheet::SignupTelegram);
    QCOMPARE(m_sheet->timeLeft(), u"4:45"_s);
    QCOMPARE(m_sheet->otpCode(), u"516"_s);
    m_sheet->goBack();
    QCOMPARE(m_sheet->step(), LoginSheet::SignupForm);
    QVERIFY(!m_sheet->hasSession() && m_sheet->otpCode().isEmpty());

    m_sheet->setProperty("username", u"Sara "_s);
    m_sheet->setProperty("password", u"1234"_s);
    m_sheet->startSignup();
    QVERIFY(m_rig->answer(sessionAnswer).contains(u"\"username\":\"sara\""_s));
    QCOMPARE(m_sheet->step(), LoginSheet::SignupTelegram);
    QCOMPARE(m_sheet->botHandle(), u"NavorinBot"_s);
    m_sheet->setOtpCode(u"۱۲۳۴۵۶"_s);
    m_sheet->verifySignup();
    QCOMPARE(m_rig->answer(R"({"code":1,"message":"کد اشتباه است"})"),
             u"POST /api/auth/telegram/verify-signup-otp {\"otp_code\":\"۱۲۳۴۵۶\",\"session_id\":\"s1\"}"_s);
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
    QVERIFY(m_rig->http.exchanges.empty() && !m_sheet->isSubmitting());
    m_sheet->forget();
    m_sheet->setProperty("identifier", u" @Ali "_s);
    m_sheet->startForgot();
    QVERIFY(m_rig->answer(sessionAnswer).endsWith(u"{\"identifier\":\"@Ali\"}"_s));
    QCOMPARE(m_sheet->step(), LoginSheet::ForgotReset);
    QCOMPARE(m_sheet->codeReceiver(), u"@ali"_s);
    m_sheet->setOtpCode(u"123456"_s);
    QVERIFY(!m_sheet->codeValid());
    m_sheet->setProperty("newPassword", u"new1 "_s);
    QVERIFY(m_sheet->codeValid());
    m_sheet->submitReset();
    QVERIFY(m_rig->answer("{}").contains(u"\"new_password\":\"new1\""_s));
    QCOMPARE(m_sheet->step(), LoginSheet::ForgotDone);
    QVERIFY(!m_sheet->hasSession() && !m_rig->auth->isAuthed());
    m_sheet->goBack();
    QCOMPARE(m_sheet->step(), LoginSheet::ForgotDone);
    m_sheet->finishReset();
    QCOMPARE(m_sheet->step(), LoginSheet::Login);
}

void tst_LoginSheet::counts()
{
    m_sheet->forget();
    m_sheet->startForgot();
    m_rig->answer(sessionAnswer);
    QCOMPARE(m_sheet->timeLeft(), u"1:30"_s);
    QVERIFY(!m_sheet->isTimeShort());
    m_rig->queue.advance(31s);
    QCOMPARE(m_sheet->timeLeft(), u"0:59"_s);
    QVERIFY(m_sheet->isTimeShort());
    m_rig->queue.advance(59s);
    QCOMPARE(m_sheet->timeLeft(), u""_s);
    m_rig->queue.advance(5s);
    QCOMPARE(m_rig->queue.timerCount(), 0);
    QVERIFY(m_sheet->hasSession()); // the server decides whether a late code is good
}

void tst_LoginSheet::opensTelegram()
{
    m_sheet->startForgot();
    m_rig->answer(sessionAnswer);
    m_sheet->openTelegram();
    m_rig->desktop.urlOpener.schemes = {u"tg"_s};
    m_sheet->openTelegram();
    QCOMPARE(m_rig->desktop.urlOpener.opened,
             (QStringList{u"http://127.0.0.1/bot?start=s1"_s, u"tg://resolve?domain=NavorinBot&start=s1"_s}));
}

void tst_LoginSheet::closedMeanwhile()
{
    m_sheet->startForgot();
    m_sheet.reset();
    m_rig->answer(sessionAnswer);
    QCOMPARE(m_rig->queue.timerCount(), 0);
}

QTEST_GUILESS_MAIN(tst_LoginSheet)
#include "tst_LoginSheet.moc"
