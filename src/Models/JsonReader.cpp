#include "Models/JsonReader.h"

#include <cmath>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

DecodingError::DecodingError(std::string_view where, std::string_view what)
    : m_what(QByteArray(where.data(), qsizetype(where.size())) + ": " +
             QByteArray(what.data(), qsizetype(what.size())))
{
}

QString DecodingError::description()
{
    return u"پاسخ سرور خوانده نشد"_s;
}

namespace json {
namespace {

constexpr int maximumDepth = 256;

template <typename Result, typename T>
void take(Result &&result, T &target, const char *what)
{
    if (const auto error = std::forward<Result>(result).get(target))
        fail(what, simdjson::error_message(error));
}

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

std::optional<qint64> wholeNumber(Value &value)
{
    int64_t integer = 0;
    if (value.get_int64().get(integer) == simdjson::SUCCESS)
        return integer;
    const auto token = value.raw_json_token();
    double real = 0;
    // An integer literal that did not fit must not come back through a rounded double.
    if (token.find_first_of(".eE") == std::string_view::npos ||
        value.get_double().get(real) != simdjson::SUCCESS)
        return {};
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::trunc(real) != real || real < -limit || real >= limit)
        return {};
    return qint64(real);
}

void skipValue(Value &value, int depth)
{
    if (depth > maximumDepth)
        fail("value", "nested too deeply");
    simdjson::ondemand::json_type type{};
    take(value.type(), type, "value");
    switch (type) {
    case simdjson::ondemand::json_type::object: {
        simdjson::ondemand::object object;
        take(value.get_object(), object, "object");
        for (auto result : object) {
            simdjson::ondemand::field entry;
            std::string_view key;
            take(std::move(result), entry, "object");
            take(entry.unescaped_key(), key, "object");
            skipValue(entry.value(), depth + 1);
        }
        break;
    }
    case simdjson::ondemand::json_type::array: {
        simdjson::ondemand::array array;
        take(value.get_array(), array, "list");
        for (auto element : array) {
            Value item;
            take(element, item, "list");
            skipValue(item, depth + 1);
        }
        break;
    }
    case simdjson::ondemand::json_type::string: {
        std::string_view text;
        take(value.get_string(), text, "text");
        break;
    }
    case simdjson::ondemand::json_type::number: {
        double number = 0;
        take(value.get_double(), number, "number");
        break;
    }
    case simdjson::ondemand::json_type::boolean: {
        bool flag = false;
        take(value.get_bool(), flag, "boolean");
        break;
    }
    case simdjson::ondemand::json_type::null:
        static_cast<void>(isNull(value));
        break;
    }
}

} // namespace

void fail(std::string_view where, std::string_view what)
{
    throw DecodingError(where, what);
}

void read(Value &value, QString &target)
{
    std::string_view text;
    take(value.get_string(), text, "text");
    target = toQString(text);
}

void read(Value &value, qint64 &target)
{
    const auto number = wholeNumber(value);
    if (!number)
        fail("integer", "not a whole number of 64 bits");
    target = *number;
}

void read(Value &value, double &target)
{
    take(value.get_double(), target, "number");
}

void read(Value &value, Scalar &target)
{
    target = {};
    simdjson::ondemand::json_type type{};
    take(value.type(), type, "value");
    if (type == simdjson::ondemand::json_type::string)
        read(value, target.text.emplace());
    else if (type == simdjson::ondemand::json_type::number)
        target.integer = wholeNumber(value);
    else
        skip(value);
}

void skip(Value &value)
{
    skipValue(value, 0);
}

bool isNull(Value &value)
{
    bool null = false;
    take(value.is_null(), null, "null");
    return null;
}

} // namespace json
} // namespace navorin
