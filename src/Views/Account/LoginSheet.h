#pragma once

#include "Models/APIModels.h"
#include "Platform/Tasks/MainQueue.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace navorin {

class APIClient;
class AuthStore;
class UrlOpener;
struct ViewSurroundings;

/// The way to an account: signing in, proving a sign-up or a reset of the password with the bot's code. Holds
/// what is typed and where the user stands; the session itself is AuthStore's. Lives as long as its sheet:
/// an answer that comes later touches nothing.
class LoginSheet : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LoginSheetState)
    Q_PROPERTY(int mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(Step step READ step NOTIFY stepChanged)
    Q_PROPERTY(QString username MEMBER m_username NOTIFY formChanged)
    Q_PROPERTY(QString password MEMBER m_password NOTIFY formChanged)
    Q_PROPERTY(QString displayName MEMBER m_displayName NOTIFY formChanged)
    Q_PROPERTY(QString identifier MEMBER m_identifier NOTIFY formChanged)
    Q_PROPERTY(QString newPassword MEMBER m_newPassword NOTIFY formChanged)
    Q_PROPERTY(QString otpCode READ otpCode WRITE setOtpCode NOTIFY otpCodeChanged)
    Q_PROPERTY(bool hasSession READ hasSession NOTIFY sessionChanged)
    /// Of the bot, without its "@".
    Q_PROPERTY(QString botHandle READ botHandle NOTIFY sessionChanged)
    /// To whom the code went, with the "@"; "شما" after it where the server names nobody.
    Q_PROPERTY(QString codeReceiver READ codeReceiver NOTIFY sessionChanged)
    /// "4:45"; empty when nothing is left.
    Q_PROPERTY(QString timeLeft READ timeLeft NOTIFY secondsLeftChanged)
    Q_PROPERTY(bool isTimeShort READ isTimeShort NOTIFY secondsLeftChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(bool isSubmitting READ isSubmitting NOTIFY isSubmittingChanged)
    Q_PROPERTY(bool loginValid READ loginValid NOTIFY formChanged)
    Q_PROPERTY(bool signupValid READ signupValid NOTIFY formChanged)
    Q_PROPERTY(bool identifierValid READ identifierValid NOTIFY formChanged)
    /// The code step has all that its main button needs.
    Q_PROPERTY(bool codeValid READ codeValid NOTIFY codeValidChanged)
    Q_PROPERTY(QString heroTitle READ heroTitle NOTIFY stepChanged)
    Q_PROPERTY(QString heroSubtitle READ heroSubtitle NOTIFY stepChanged)
public:
    enum Step { Login, SignupForm, SignupTelegram, ForgotIdentifier, ForgotReset, ForgotDone };
    Q_ENUM(Step)
    enum Flow { LoginFlow, SignupFlow };
    Q_ENUM(Flow)

    explicit LoginSheet(QObject *parent = nullptr);
    LoginSheet(AuthStore &auth, APIClient &client, const ViewSurroundings &surroundings,
               QObject *parent = nullptr);
    ~LoginSheet() override;

    [[nodiscard]] int mode() const { return m_mode; }
    void setMode(int mode);
    [[nodiscard]] Step step() const { return m_step; }
    [[nodiscard]] QString otpCode() const { return m_otpCode; }
    /// Keeps only what codeDigits() leaves.
    void setOtpCode(const QString &code);
    [[nodiscard]] bool hasSession() const { return m_session.has_value(); }
    [[nodiscard]] QString botHandle() const;
    [[nodiscard]] QString codeReceiver() const;
    [[nodiscard]] QString timeLeft() const;
    [[nodiscard]] bool isTimeShort() const;
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] bool isSubmitting() const { return m_isSubmitting; }
    [[nodiscard]] bool loginValid() const;
    [[nodiscard]] bool signupValid() const;
    [[nodiscard]] bool identifierValid() const;
    [[nodiscard]] bool codeValid() const;
    [[nodiscard]] QString heroTitle() const;
    [[nodiscard]] QString heroSubtitle() const;

    Q_INVOKABLE void submitLogin();
    Q_INVOKABLE void startSignup();
    Q_INVOKABLE void verifySignup();
    Q_INVOKABLE void startForgot();
    Q_INVOKABLE void submitReset();
    Q_INVOKABLE void goBack();
    /// Opens the bot in Telegram, or its page where Telegram is not there. Says nothing if neither opens.
    Q_INVOKABLE void openTelegram();
    /// "I forgot my password".
    Q_INVOKABLE void forget();
    /// From the end of a reset back to signing in.
    Q_INVOKABLE void finishReset();

Q_SIGNALS:
    void modeChanged();
    void stepChanged();
    void formChanged();
    void otpCodeChanged();
    void sessionChanged();
    void secondsLeftChanged();
    void errorMessageChanged();
    void isSubmittingChanged();
    void codeValidChanged();
    /// The sheet is to close.
    void finished();

private:
    template <typename Work, typename Succeeded>
    static QCoro::Task<void> carryOut(QPointer<LoginSheet> sheet, Work work, Succeeded succeeded);
    template <typename Work, typename Succeeded>
    void submit(Work work, Succeeded succeeded);
    void showExample();
    void enterCodeStep(const AuthSessionInfo &session, Step step);
    void startTimer();
    void resetFormState();
    void setStep(Step step);
    void setSession(std::optional<AuthSessionInfo> session);
    void setSecondsLeft(qint64 seconds);
    void setErrorMessage(const QString &message);
    void setSubmitting(bool submitting);

    AuthStore &m_auth;
    APIClient &m_client;
    MainQueue &m_queue;
    UrlOpener &m_urlOpener;
    int m_mode = LoginFlow;
    Step m_step = Login;
    QString m_username;
    QString m_password;
    QString m_displayName;
    QString m_identifier;
    QString m_otpCode;
    QString m_newPassword;
    std::optional<AuthSessionInfo> m_session;
    qint64 m_secondsLeft = 0;
    std::unique_ptr<MainQueue::Timer> m_timer;
    QString m_errorMessage;
    bool m_isSubmitting = false;
};

} // namespace navorin
