#include "Services/Backend/APIError.h"

#include "Platform/Http/HttpSession.h"

#include <array>
#include <new>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

APIError::APIError(Case kind, int code)
    : m_case(kind)
    , m_code(code)
    , m_what(description().toUtf8())
{
}

QString APIError::description() const
{
    switch (m_case) {
    case Case::Http:
        return u"خطای سرور ("_s + QString::number(m_code) + u')';
    case Case::BadUrl:
        return u"آدرس سرور نامعتبر است"_s;
    case Case::Decoding:
        return u"خطا در پردازش پاسخ سرور"_s;
    }
    Q_UNREACHABLE();
}

ServerError::ServerError(QString message, qint64 code)
    : m_message(std::move(message))
    , m_code(code)
    , m_what(m_message.toUtf8())
{
}

void read(json::Value &value, SimpleMessage &message)
{
    static constexpr std::array fields{
        json::optional<&SimpleMessage::code>("code"),
        json::optional<&SimpleMessage::message>("message"),
    };
    json::readObject<SimpleMessage>(value, message, fields);
}

QString errorDescription(const std::exception &error)
{
    if (const auto *server = dynamic_cast<const ServerError *>(&error))
        return server->description();
    if (const auto *api = dynamic_cast<const APIError *>(&error))
        return api->description();
    if (const auto *transport = dynamic_cast<const TransportError *>(&error))
        return transport->description();
    if (dynamic_cast<const DecodingError *>(&error))
        return DecodingError::description();
    if (dynamic_cast<const std::bad_alloc *>(&error))
        return u"حافظه کافی نیست."_s;
    return u"مشکلی پیش آمد. دوباره تلاش کنید."_s;
}

QString errorDescription(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const std::exception &known) {
        return errorDescription(known);
    } catch (...) {
        return errorDescription(std::exception());
    }
}

} // namespace navorin
