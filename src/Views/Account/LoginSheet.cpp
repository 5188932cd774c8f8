#include "Views/Account/LoginSheet.h"

#include "Models/Text.h"
#include "Platform/Desktop/UrlOpener.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Backend/APIClient.h"
#include "Views/ViewSetup.h"

#include <QCoro/QCoroFuture>

#include <array>
#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype leastPassword = 4;
constexpr qsizetype leastUsername = 3;
constexpr qsizetype codeLength = 6;
constexpr qint64 shortTime = 59; // seconds
const QString usualBot = u"NavorinBot"_s;

QString trimmed(const QString &text)
{
    return trimmedBlanks(text).toString();
}

struct Hero
{
    QString title;
    QString subtitle;
};

const Hero &heroOf(LoginSheet::Step step)
{
    static const std::array<Hero, 6> heroes{{
        {u"خوش اومدی"_s, u"برای ذخیره علاقهمندیها و پلیلیستها وارد شو"_s},
        {u"ساخت حساب جدید"_s, u"اول اطلاعات پایه، بعد تایید سریع با تلگرام"_s},
        {u"تایید با تلگرام"_s, u"ربات ناورین یه کد ۶ رقمی برات فرستاد"_s},
        {u"فراموشی رمز عبور"_s, u"نام کاربریات رو بده تا کد تایید به تلگرامت بیاد"_s},
        {u"تغییر رمز عبور"_s, u"کد ۶ رقمی تلگرام و رمز جدیدت رو وارد کن"_s},
        {u"انجام شد"_s, u"رمز عبورت با موفقیت عوض شد"_s},
    }};
    return heroes.at(std::size_t(step));
}

} // namespace

LoginSheet::LoginSheet(QObject *parent)
    : LoginSheet(AuthStore::shared(), APIClient::shared(), viewSurroundings(), parent)
{
}

LoginSheet::LoginSheet(AuthStore &auth, APIClient &client, const ViewSurroundings &surroundings,
                       QObject *parent)
    : QObject(parent)
    , m_auth(auth)
    , m_client(client)
    , m_queue(surroundings.queue)
    , m_urlOpener(surroundings.urlOpener)
{
    for (const auto signal :
         {&LoginSheet::formChanged, &LoginSheet::otpCodeChanged, &LoginSheet::stepChanged})
        connect(this, signal, this, &LoginSheet::codeValidChanged);
    if (surroundings.debugTelegram)
        showExample();
}

LoginSheet::~LoginSheet() = default;

void LoginSheet::showExample()
{
    m_mode = SignupFlow;
    m_step = SignupTelegram;
    m_otpCode = u"516"_s;
    m_secondsLeft = 285;
    m_session =
        AuthSessionInfo{u"reg_tour987654321"_s, u"https://t.me/"_s + usualBot, usualBot, u"demo"_s, 300};
}

void LoginSheet::setMode(int mode)
{
    if (mode == m_mode)
        return;
    m_mode = mode; // the form on show is the step's affair alone
    setErrorMessage({});
    Q_EMIT modeChanged();
}

void LoginSheet::setOtpCode(const QString &code)
{
    m_otpCode = codeDigits(code);
    Q_EMIT otpCodeChanged(); // also when it is the same, so that a field drops what was not taken
}

QString LoginSheet::botHandle() const
{
    return m_session ? m_session->botUsername.value_or(usualBot) : QString();
}

QString LoginSheet::codeReceiver() const
{
    return u'@' + (m_session ? m_session->telegramUsername.value_or(u"شما"_s) : QString());
}

QString LoginSheet::timeLeft() const
{
    if (m_secondsLeft < 1)
        return {};
    return u"%1:%2"_s.arg(m_secondsLeft / 60).arg(m_secondsLeft % 60, 2, 10, QLatin1Char('0'));
}

bool LoginSheet::isTimeShort() const
{
    return m_secondsLeft <= shortTime;
}

bool LoginSheet::loginValid() const
{
    return !trimmedBlanks(m_username).isEmpty() && characterCount(m_password) >= leastPassword;
}

bool LoginSheet::signupValid() const
{
    return characterCount(trimmedBlanks(m_username)) >= leastUsername &&
           characterCount(m_password) >= leastPassword;
}

bool LoginSheet::identifierValid() const
{
    return !trimmedBlanks(m_identifier).isEmpty();
}

bool LoginSheet::codeValid() const
{
    return characterCount(m_otpCode) == codeLength &&
           (m_step != ForgotReset || characterCount(m_newPassword) >= leastPassword);
}

QString LoginSheet::heroTitle() const
{
    return heroOf(m_step).title;
}

QString LoginSheet::heroSubtitle() const
{
    return heroOf(m_step).subtitle;
}

template <typename Work, typename Succeeded>
QCoro::Task<void> LoginSheet::carryOut(QPointer<LoginSheet> sheet, Work work, Succeeded succeeded)
{
    QString failure;
    try {
        if constexpr (std::is_invocable_v<Succeeded>) {
            co_await work;
            if (sheet)
                succeeded();
        } else {
            const auto result = co_await work;
            if (sheet)
                succeeded(result);
        }
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (!sheet)
        co_return;
    if (!failure.isEmpty())
        sheet->setErrorMessage(failure);
    sheet->setSubmitting(false);
}

template <typename Work, typename Succeeded>
void LoginSheet::submit(Work work, Succeeded succeeded)
{
    setErrorMessage({});
    setSubmitting(true);
    detach(carryOut(QPointer(this), std::move(work), std::move(succeeded)), "the login sheet's request");
}

void LoginSheet::submitLogin()
{
    submit(m_auth.login(trimmed(m_username).toLower(), trimmed(m_password)), [this] { Q_EMIT finished(); });
}

void LoginSheet::startSignup()
{
    submit(m_client.initTelegramSignup(trimmed(m_username).toLower(), trimmed(m_password),
                                       trimmed(m_displayName)),
           [this](const AuthSessionInfo &session) { enterCodeStep(session, SignupTelegram); });
}

void LoginSheet::verifySignup()
{
    if (m_session)
        submit(m_auth.completeTelegramSignup(m_session->sessionID, m_otpCode), [this] { Q_EMIT finished(); });
}

void LoginSheet::startForgot()
{
    submit(m_client.forgotPassword(trimmed(m_identifier)), [this](const AuthSessionInfo &session) {
        setOtpCode({});
        m_newPassword.clear();
        enterCodeStep(session, ForgotReset);
        Q_EMIT formChanged();
    });
}

void LoginSheet::submitReset()
{
    if (!m_session)
        return;
    submit(m_client.resetPassword(m_session->sessionID, m_otpCode, trimmed(m_newPassword)),
           [this](const std::optional<QString> &) {
               resetFormState();
               setStep(ForgotDone);
           });
}

void LoginSheet::enterCodeStep(const AuthSessionInfo &session, Step step)
{
    setSession(session);
    setSecondsLeft(session.expiresIn);
    setStep(step);
    startTimer();
}

void LoginSheet::startTimer()
{
    m_timer = m_queue.every(1s, [this] {
        if (m_secondsLeft > 0)
            setSecondsLeft(m_secondsLeft - 1);
        else
            m_timer.reset();
    });
}

void LoginSheet::resetFormState()
{
    setErrorMessage({});
    setOtpCode({});
    m_identifier.clear();
    m_newPassword.clear();
    Q_EMIT formChanged();
    setSession({});
    setSecondsLeft(0);
    m_timer.reset();
}

void LoginSheet::goBack()
{
    setErrorMessage({});
    const auto leave = [this](Step target) {
        resetFormState();
        setStep(target);
    };
    if (m_step == SignupTelegram)
        leave(SignupForm);
    else if (m_step == ForgotIdentifier)
        leave(Login);
    else if (m_step == ForgotReset)
        leave(ForgotIdentifier);
}

void LoginSheet::openTelegram()
{
    if (!m_session)
        return;
    const QUrl deepLink(u"tg://resolve?domain="_s + botHandle() + u"&start="_s + m_session->sessionID,
                        QUrl::StrictMode);
    if (deepLink.isValid() && m_urlOpener.canOpen(deepLink)) {
        m_urlOpener.open(deepLink);
        return;
    }
    const QUrl page(m_session->botLink.value_or(QString()), QUrl::StrictMode);
    if (page.isValid())
        m_urlOpener.open(page);
}

void LoginSheet::forget()
{
    resetFormState();
    setStep(ForgotIdentifier);
}

void LoginSheet::finishReset()
{
    resetFormState();
    setMode(LoginFlow);
    setStep(Login);
}

void LoginSheet::setStep(Step step)
{
    m_step = step;
    Q_EMIT stepChanged();
}

void LoginSheet::setSession(std::optional<AuthSessionInfo> session)
{
    m_session = std::move(session);
    Q_EMIT sessionChanged();
}

void LoginSheet::setSecondsLeft(qint64 seconds)
{
    m_secondsLeft = seconds;
    Q_EMIT secondsLeftChanged();
}

void LoginSheet::setErrorMessage(const QString &message)
{
    m_errorMessage = message;
    Q_EMIT errorMessageChanged();
}

void LoginSheet::setSubmitting(bool submitting)
{
    m_isSubmitting = submitting;
    Q_EMIT isSubmittingChanged();
}

} // namespace navorin
