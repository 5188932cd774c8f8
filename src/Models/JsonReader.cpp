#include "Models/JsonReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

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

/// Decodes UTF-8 that is known to be right. Returns the end of what was written; there must be room for as
/// many units as there are bytes.
char16_t *decodeUtf8(std::string_view text, char16_t *out)
{
    const auto *in = reinterpret_cast<const unsigned char *>(text.data());
    const auto *const end = in + text.size();
    while (in < end) {
        if (std::uint64_t eight = 0; end - in >= 8) {
            std::memcpy(&eight, in, 8);
            if ((eight & 0x8080808080808080U) == 0) {
                for (int i = 0; i < 8; ++i)
                    out[i] = in[i];
                in += 8;
                out += 8;
                continue;
            }
        }
        if (in[0] < 0x80) {
            *out++ = *in++;
        } else if (in[0] < 0xE0) {
            *out++ = char16_t((in[0] & 0x1F) << 6 | (in[1] & 0x3F));
            in += 2;
        } else if (in[0] < 0xF0) {
            *out++ = char16_t((in[0] & 0x0F) << 12 | (in[1] & 0x3F) << 6 | (in[2] & 0x3F));
            in += 3;
        } else {
            const auto point =
                char32_t((in[0] & 0x07) << 18 | (in[1] & 0x3F) << 12 | (in[2] & 0x3F) << 6 | (in[3] & 0x3F));
            *out++ = QChar::highSurrogate(point);
            *out++ = QChar::lowSurrogate(point);
            in += 4;
        }
    }
    return out;
}

/// A text of exactly its length: most are Persian, for which QString's own decoder sets aside twice as much.
QString toQString(std::string_view text)
{
    std::array<char16_t, 512> units;
    if (text.size() > units.size())
        return QString::fromUtf8(text.data(), qsizetype(text.size()));
    const auto *end = decodeUtf8(text, units.data());
    return QString(reinterpret_cast<const QChar *>(units.data()), end - units.data());
}

/// Texts that come again and again in the answer that this thread is reading, a kind or an artist, are made
/// once and shared.
class RepeatedTexts
{
public:
    QString text(std::string_view utf8)
    {
        if (utf8.size() > longest)
            return toQString(utf8);
        auto &slot = m_slots[hash(utf8) % m_slots.size()];
        if (slot.utf8.size() == utf8.size() &&
            detail::sameBytes(slot.utf8.data(), utf8.data(), utf8.size())) {
            if (slot.text.isNull()) // kept from its second coming on: most never come again
                slot.text = toQString(utf8);
            return slot.text;
        }
        slot.utf8 = utf8;
        if (!slot.text.isNull())
            slot.text = QString();
        return toQString(utf8);
    }
    void forget() noexcept { m_slots.fill({}); }

private:
    static constexpr std::size_t longest = 32;

    struct Slot
    {
        std::string_view utf8; ///< in the answer, which outlives this
        QString text;
    };

    /// Reads eight bytes from anywhere in the text: behind an answer and behind what was taken out of its
    /// escapes there is room for that.
    static std::uint64_t eightFrom(const char *bytes)
    {
        std::uint64_t eight = 0;
        std::memcpy(&eight, bytes, sizeof eight);
        return eight;
    }
    static std::size_t hash(std::string_view text)
    {
        constexpr std::uint64_t spread = 0x9E3779B97F4A7C15U;
        const auto size = text.size();
        if (size < 8)
            return std::size_t((eightFrom(text.data()) << 8 * (7 - size)) * spread >> 48);
        return std::size_t((eightFrom(text.data()) * 3 + eightFrom(text.data() + size - 8) + size) * spread >>
                           48);
    }

    std::array<Slot, 256> m_slots;
};

thread_local RepeatedTexts repeatedTexts;

char firstOf(Value &value)
{
    return value.raw_json_token().front();
}

/// The inside of a text that has no escapes, still in the answer. False for any other value.
bool isPlainText(Value &value, const char *&begin, std::size_t &size)
{
    const auto token = value.raw_json_token();
    const auto *last = token.data() + token.size() - 1;
    while (last > token.data() && *last != '"') // blanks before the next token
        --last;
    begin = token.data() + 1;
    size = std::size_t(last - begin);
    return token.front() == '"' && last > token.data() && !std::memchr(begin, '\\', size);
}

/// Whether `token` is a number of JSON, also one that no type of ours can hold.
bool isNumber(std::string_view token)
{
    const auto *at = token.data();
    const auto *const end = at + token.size();
    const auto digits = [&at, end] {
        const auto *const begin = at;
        at = std::find_if(at, end, [](char c) { return c < '0' || c > '9'; });
        return at - begin;
    };
    const auto sign = [&at, end](std::string_view signs) {
        at += at < end && signs.find(*at) != std::string_view::npos;
    };
    sign("-");
    const auto *const whole = at;
    if (const auto count = digits(); count == 0 || (count > 1 && *whole == '0'))
        return false;
    if (at < end && *at == '.' && (++at, digits() == 0))
        return false;
    if (at < end && (*at == 'e' || *at == 'E')) {
        ++at;
        sign("+-");
        if (digits() == 0)
            return false;
    }
    return token.find_first_not_of(" \t\r\n", std::size_t(at - token.data())) == std::string_view::npos;
}

/// The value, which the iterator has not consumed, must be a number and be followed by what may follow one:
/// the iterator itself would step over more.
std::string_view checkedNumber(Value &value)
{
    const auto token = value.raw_json_token();
    constexpr std::string_view followers = ",]}";
    if (!isNumber(token) || followers.find(token.data()[token.size()]) == std::string_view::npos)
        fail("number", "not JSON");
    return token;
}

std::optional<qint64> wholeNumber(Value &value)
{
    int64_t integer = 0;
    if (value.get_int64().get(integer) == simdjson::SUCCESS)
        return integer;
    const auto token = checkedNumber(value);
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
    case simdjson::ondemand::json_type::number:
        checkedNumber(value);
        break;
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

void detail::forgetRepeatedTexts() noexcept
{
    repeatedTexts.forget();
}

void read(Value &value, QString &target)
{
    const char *begin = nullptr;
    std::size_t size = 0;
    if (isPlainText(value, begin, size)) {
        simdjson::ondemand::raw_json_string raw;
        take(value.get_raw_json_string(), raw, "text"); // moves the iterator on
        target = repeatedTexts.text({begin, size});
        return;
    }
    std::string_view text;
    take(value.get_string(), text, "text");
    target = repeatedTexts.text(text);
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

void read(Value &value, bool &target)
{
    take(value.get_bool(), target, "boolean");
}

void read(Value &value, Scalar &target)
{
    target = {};
    const auto first = firstOf(value);
    if (first == '"')
        read(value, target.text.emplace());
    else if (first == '-' || (first >= '0' && first <= '9'))
        target.integer = wholeNumber(value);
    else
        skip(value);
}

void tryText(Value &value, std::optional<QString> &target)
{
    if (firstOf(value) == '"')
        return read(value, target.emplace());
    target.reset();
    skip(value);
}

void skip(Value &value)
{
    skipValue(value, 0);
}

bool isNull(Value &value)
{
    if (firstOf(value) != 'n')
        return false;
    bool null = false;
    take(value.is_null(), null, "null");
    return null;
}

} // namespace json
} // namespace navorin
