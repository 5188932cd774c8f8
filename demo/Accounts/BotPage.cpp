#include "BotPage.h"

#include "VerificationStore.h"

#include <QString>

namespace navorin::demo {

using namespace Qt::Literals::StringLiterals;

namespace {

// %1 is the bot's message
const QString page = uR"html(<!DOCTYPE html>
<html lang="fa" dir="rtl">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>ربات ناورین</title>
<style>
* { box-sizing: border-box; margin: 0; }
body { min-height: 100vh; display: flex; flex-direction: column; color: #f2f3f7; line-height: 1.8;
  font-family: Vazirmatn, "Noto Sans Arabic", "Segoe UI", Tahoma, sans-serif;
  background: radial-gradient(circle at 80% 0, #2b2358, transparent 55%), #0d0f16; }
header { display: flex; align-items: center; gap: 12px; padding: 14px 20px; background: #171a24;
  border-bottom: 1px solid #ffffff14; }
header svg { width: 44px; height: 44px; flex: none; }
header small { display: block; color: #8b93a7; line-height: 1.4; }
main { flex: 1; width: 100%; max-width: 520px; margin: 0 auto; padding: 32px 20px; display: flex;
  flex-direction: column; gap: 14px; }
.bubble { padding: 12px 18px; border-radius: 18px; max-width: 92%; overflow-wrap: anywhere; }
.sent { align-self: flex-start; background: #5b4bd6; border-top-right-radius: 5px; }
.received { align-self: flex-end; background: #1d2130; border-bottom-left-radius: 5px; }
.code { direction: ltr; display: block; margin: 14px 0 10px; padding: 12px 20px; border-radius: 14px;
  background: #0d0f16; border: 1px solid #7263f2; text-align: center; font-size: 44px; line-height: 1.5;
  font-weight: 700; letter-spacing: .18em; text-indent: .18em; user-select: all; }
.left { color: #a9b0c2; }
.left.soon { color: #ffb057; }
.over .code { opacity: .3; border-color: #ffffff22; }
bdi { color: #c3baff; }
</style>
</head>
<body>
<header>
<svg viewBox="0 0 44 44" fill="none" stroke="#fff" stroke-width="2.4" stroke-linecap="round">
<defs><linearGradient id="g" x2="1" y2="1"><stop stop-color="#6366f2"/><stop offset="1" stop-color="#a161f5"/>
</linearGradient></defs><circle cx="22" cy="22" r="22" fill="url(#g)" stroke="none"/>
<circle cx="22" cy="22" r="2.4" fill="#fff"/><path d="M16.5 27.5a7.8 7.8 0 0 1 0-11m11 0a7.8 7.8 0 0 1 0 11
M12.3 31.7a13.7 13.7 0 0 1 0-19.4m19.4 0a13.7 13.7 0 0 1 0 19.4"/></svg>
<div><strong>ربات ناورین</strong><small dir="ltr">@NavorinBot</small></div>
</header>
<main>
<div class="bubble sent" dir="ltr">/start</div>
<div class="bubble received">%1</div>
</main>
</body>
</html>
)html"_s;

// %1 what it is for, %2 the code, %3 the code as shown, %4 the seconds left
const QString codeMessage = uR"html(<p>%1</p>
<span class="code" id="code" data-code="%2">%3</span>
<p class="left" id="left" data-seconds="%4"></p>
<script>
const label = document.getElementById("left");
const end = Date.now() + 1000 * label.dataset.seconds;
function tick() {
  const left = Math.max(0, Math.ceil((end - Date.now()) / 1000));
  const time = Math.floor(left / 60) + ":" + String(left % 60).padStart(2, "0");
  label.textContent = left > 0 ? "اعتبار کد: " + time.replace(/\d/g, d => "۰۱۲۳۴۵۶۷۸۹"[d])
    : "اعتبار این کد تمام شد؛ از برنامه دوباره شروع کن.";
  label.classList.toggle("soon", left < 60);
  label.parentElement.classList.toggle("over", left === 0);
  if (left > 0) setTimeout(tick, 500);
}
tick();
</script>)html"_s;

const QString unknownMessage =
    u"<p>این نشست پیدا نشد یا اعتبارش تمام شده است. به برنامه برگرد و دوباره شروع کن.</p>"_s;

QString persianDigits(QString text)
{
    for (QChar &c : text)
        c = c.digitValue() < 0 ? c : QChar(u'۰' + c.digitValue());
    return text;
}

QString greeting(const Verification &verification)
{
    const QString username = QString::fromStdString(verification.username);
    const QString displayName = QString::fromStdString(verification.displayName).toHtmlEscaped();
    const QString name = displayName.trimmed().isEmpty() ? username : displayName;
    const QString purpose =
        verification.purpose == VerificationPurpose::Signup
            ? u"این کد تأیید <b>ثبت‌نام</b> تو با نام کاربری <bdi>%1</bdi> در ناورین است:"_s
            : u"این کد <b>تغییر رمز عبور</b> حساب <bdi>%1</bdi> در ناورین است:"_s;
    return u"سلام <bdi>%1</bdi>! "_s.arg(name) + purpose.arg(username);
}

} // namespace

Reply botPage(const std::optional<Verification> &verification)
{
    QString message = unknownMessage;
    if (verification) {
        const QString code = QString::fromStdString(verification->code);
        message = codeMessage.arg(greeting(*verification), code, persianDigits(code),
                                  QString::number(verification->secondsLeft));
    }
    Reply reply;
    reply.status = verification ? 200 : 404;
    reply.contentType = "text/html; charset=utf-8";
    reply.headers.emplace_back("Cache-Control", "no-store");
    reply.body = page.arg(message).toUtf8();
    return reply;
}

} // namespace navorin::demo
