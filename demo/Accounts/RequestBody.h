#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>

namespace navorin::demo {

/// The JSON object that a client sent. A field that is not what it must be throws a Refusal that names it.
class RequestBody
{
public:
    explicit RequestBody(const std::string &bytes);

    /// Must be there; may be empty. `longest` counts characters.
    [[nodiscard]] std::string text(const char *key, std::size_t longest) const;
    /// Must be there and hold more than blanks.
    [[nodiscard]] std::string filledText(const char *key, std::size_t longest) const;
    /// Empty when it is absent or null.
    [[nodiscard]] std::string optionalText(const char *key, std::size_t longest) const;
    /// 0 when it is absent or null.
    [[nodiscard]] std::int64_t optionalCount(const char *key, std::int64_t largest) const;

private:
    nlohmann::json m_object;
};

/// Characters of a UTF-8 text, counted by code points.
[[nodiscard]] std::size_t characterCount(const std::string &text);
/// The text with every kind of decimal digit as 0 to 9 and without blanks at its ends.
[[nodiscard]] std::string withPlainDigits(const std::string &text);

} // namespace navorin::demo
