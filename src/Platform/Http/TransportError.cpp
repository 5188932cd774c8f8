#include "Platform/Http/HttpSession.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

TransportError::TransportError(Kind kind, const QString &detail)
    : m_kind(kind)
    , m_what(detail.toUtf8())
{
}

QString TransportError::description() const
{
    switch (m_kind) {
    case Kind::CannotConnect:
        return u"اتصال به سرور برقرار نشد. اینترنت را بررسی کنید."_s;
    case Kind::TimedOut:
        return u"پاسخی از سرور نرسید. کمی بعد دوباره تلاش کنید."_s;
    case Kind::ConnectionLost:
        return u"ارتباط با سرور قطع شد. دوباره تلاش کنید."_s;
    case Kind::Insecure:
        return u"اتصال امن با سرور برقرار نشد."_s;
    case Kind::Cancelled:
        return u"درخواست لغو شد."_s;
    case Kind::Other:
        return u"درخواست به سرور انجام نشد. دوباره تلاش کنید."_s;
    }
    Q_UNREACHABLE();
}

} // namespace navorin
