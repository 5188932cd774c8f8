#include "Identity.h"

#include "RequestBody.h"

#include <QString>

#include <chrono>
#include <string_view>

namespace navorin::demo {

namespace {

constexpr std::size_t shortestUsername = 3;
constexpr std::size_t longestUsername = 24;
constexpr std::size_t shortestPassword = 4;

} // namespace

bool isUsername(const std::string &text)
{
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyz0123456789_.-";
    return text.size() >= shortestUsername && text.size() <= longestUsername &&
           text.find_first_not_of(allowed) == std::string::npos;
}

bool isPassword(const std::string &text)
{
    const std::size_t length = characterCount(text);
    return length >= shortestPassword && length <= longestPassword;
}

std::string normalizedIdentifier(const std::string &typed)
{
    const QString text = QString::fromStdString(typed).trimmed().toLower();
    return (text.startsWith(u'@') ? text.mid(1) : text).toStdString();
}

std::int64_t unixTime()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

} // namespace navorin::demo
