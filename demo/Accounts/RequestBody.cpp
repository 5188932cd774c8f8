#include "RequestBody.h"

#include "Refusal.h"

#include <QString>

#include <algorithm>

namespace navorin::demo {

namespace {

constexpr auto largestBody = std::size_t{64} * 1024;

[[noreturn]] void refuse(const char *key, const char *why)
{
    throw Refusal(400, "فیلد " + std::string(key) + " " + why);
}

} // namespace

RequestBody::RequestBody(const std::string &bytes)
{
    if (bytes.size() > largestBody)
        throw Refusal(400, "درخواست بیش از اندازه بزرگ است");
    m_object = nlohmann::json::parse(bytes, nullptr, false);
    if (!m_object.is_object())
        throw Refusal(400, "بدنه‌ی درخواست باید یک شیء JSON باشد");
}

std::string RequestBody::text(const char *key, std::size_t longest) const
{
    const auto found = m_object.find(key);
    if (found == m_object.end() || !found->is_string())
        refuse(key, "باید متن باشد");
    auto value = found->get<std::string>();
    if (value.find('\0') != std::string::npos)
        refuse(key, "نویسه‌ی نامجاز دارد");
    if (characterCount(value) > longest)
        refuse(key, "بیش از اندازه بلند است");
    return value;
}

std::string RequestBody::filledText(const char *key, std::size_t longest) const
{
    std::string value = text(key, longest);
    if (QString::fromStdString(value).trimmed().isEmpty())
        refuse(key, "نباید خالی باشد");
    return value;
}

std::string RequestBody::optionalText(const char *key, std::size_t longest) const
{
    const auto found = m_object.find(key);
    return found == m_object.end() || found->is_null() ? std::string() : text(key, longest);
}

std::int64_t RequestBody::optionalCount(const char *key, std::int64_t largest) const
{
    const auto found = m_object.find(key);
    if (found == m_object.end() || found->is_null())
        return 0;
    // a number beyond 64 bits is read as a float, one beyond 63 as an unsigned
    const bool fits = found->is_number_integer() &&
                      (!found->is_number_unsigned() || found->get<std::uint64_t>() <= std::uint64_t(largest));
    if (!fits || found->get<std::int64_t>() < 0)
        refuse(key, "باید عددی درست و در محدوده باشد");
    return found->get<std::int64_t>();
}

std::size_t characterCount(const std::string &text)
{
    constexpr unsigned continuationMask = 0xC0;
    constexpr unsigned continuation = 0x80;
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & continuationMask) != continuation;
    }));
}

std::string withPlainDigits(const std::string &text)
{
    QString result = QString::fromStdString(text).trimmed();
    for (QChar &c : result) {
        if (const int value = c.digitValue(); value >= 0)
            c = QChar(u'0' + value);
    }
    return result.toStdString();
}

} // namespace navorin::demo
