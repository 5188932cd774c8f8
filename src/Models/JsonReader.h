#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <simdjson.h>

#include <bitset>
#include <cstdint>
#include <cstring>
#include <exception>
#include <optional>
#include <span>
#include <string_view>

/// Reading JSON into records. A record lists its fields in order, in one of two tones: strict (`required`,
/// `optional`: a value of another type fails the whole answer) or tolerant (`tolerant`: a failed try counts
/// as absent). How a record is read stands beside it, as `read(json::Value &, Record &)` in the record's
/// namespace. An answer is walked once, and every byte of it must be JSON, also where no record looks.
///
/// Everything here is a pure function of its input and may run on any thread.
namespace navorin {

/// The body is no JSON, or not of the shape that the record needs.
class DecodingError : public std::exception
{
public:
    explicit DecodingError(std::string_view where, std::string_view what);

    /// The Persian text for a person: the same for every such failure.
    [[nodiscard]] static QString description();
    /// Which key failed and why, for a log.
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

private:
    QByteArray m_what;
};

namespace json {

using Value = simdjson::ondemand::value;

/// A scalar of which the type is not settled: a number, a text, or neither.
struct Scalar
{
    std::optional<QString> text;
    std::optional<qint64> integer;
};

void read(Value &value, QString &target);
void read(Value &value, qint64 &target);
void read(Value &value, double &target);
void read(Value &value, bool &target);
/// Never fails on a value of another type.
void read(Value &value, Scalar &target);
/// The same for a text: any other value counts as absent.
void tryText(Value &value, std::optional<QString> &target);

/// Walks over a value that nobody asked for, checking that it is JSON.
void skip(Value &value);
[[nodiscard]] bool isNull(Value &value);
[[noreturn]] void fail(std::string_view where, std::string_view what);

template <typename T>
void read(Value &value, QList<T> &target);

template <typename T>
void read(Value &value, std::optional<T> &target)
{
    if (isNull(value))
        target.reset();
    else
        read(value, target.emplace());
}

/// A plain list: one bad element fails it.
template <typename T>
void read(Value &value, QList<T> &target)
{
    simdjson::ondemand::array array;
    if (const auto error = value.get_array().get(array))
        fail("list", simdjson::error_message(error));
    for (auto element : array) {
        Value item;
        if (const auto error = element.get(item))
            fail("list", simdjson::error_message(error));
        read(item, target.emplaceBack());
    }
}

/// One entry of a record's list of fields.
template <typename Record>
struct Field
{
    std::string_view key;
    bool required;
    void (*read)(Value &value, Record &record);
};

namespace detail {
void forgetRepeatedTexts() noexcept;

template <typename T>
struct MemberOf;
template <typename Record, typename T>
struct MemberOf<T Record::*>
{
    using RecordType = Record;
};
template <auto member>
using RecordOf = typename MemberOf<decltype(member)>::RecordType;

template <auto member>
void readMember(Value &value, RecordOf<member> &record)
{
    read(value, record.*member);
}

/// Short texts of one length: a call of memcmp costs more than the comparison.
inline bool sameBytes(const char *a, const char *b, std::size_t size)
{
    std::size_t at = 0;
    for (; at + 8 <= size; at += 8) {
        std::uint64_t x = 0;
        std::uint64_t y = 0;
        std::memcpy(&x, a + at, 8);
        std::memcpy(&y, b + at, 8);
        if (x != y)
            return false;
    }
    for (; at < size; ++at) {
        if (a[at] != b[at])
            return false;
    }
    return true;
}

/// The index of the first field, from `start` round, that `matches`; the number of fields if none does.
template <typename Record, typename Matches>
std::size_t findFrom(std::span<const Field<Record>> fields, std::size_t start, Matches matches)
{
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const auto index = start + i < fields.size() ? start + i : start + i - fields.size();
        if (matches(fields[index].key))
            return index;
    }
    return fields.size();
}

/// The field that the entry's key names. Most keys stand in the text as they are; the others, and those that
/// nobody asked for, are taken out of their escapes, which also checks them.
template <typename Record>
std::size_t find(std::span<const Field<Record>> fields, std::size_t start, simdjson::ondemand::field &entry)
{
    const auto *raw = entry.key().raw();
    const auto found = findFrom(fields, start, [raw](std::string_view key) {
        return raw[key.size()] == '"' && sameBytes(raw, key.data(), key.size());
    });
    if (found != fields.size())
        return found;
    std::string_view unescaped;
    if (const auto error = entry.unescaped_key().get(unescaped))
        fail("object", simdjson::error_message(error));
    return findFrom(fields, start, [unescaped](std::string_view key) { return unescaped == key; });
}
} // namespace detail

/// The key must be there with a value of the member's type.
template <auto member>
constexpr Field<detail::RecordOf<member>> required(std::string_view key)
{
    return {key, true, &detail::readMember<member>};
}

/// The key may be left out or null; the member is a std::optional.
template <auto member>
constexpr Field<detail::RecordOf<member>> optional(std::string_view key)
{
    return {key, false, &detail::readMember<member>};
}

/// Whatever stands there, the record goes on; the member is a Scalar.
template <auto member>
constexpr Field<detail::RecordOf<member>> tolerant(std::string_view key)
{
    return {key, false, &detail::readMember<member>};
}

/// Reads an object by its list of fields. Of a key that comes twice the last value counts.
template <typename Record>
void readObject(Value &value, Record &record, std::span<const Field<Record>> fields)
{
    simdjson::ondemand::object object;
    if (const auto error = value.get_object().get(object))
        fail("object", simdjson::error_message(error));
    std::bitset<64> seen;
    std::size_t expected = 0; // servers write keys in a steady order: look first behind the last hit
    for (auto result : object) {
        simdjson::ondemand::field entry;
        if (const auto error = std::move(result).get(entry))
            fail("object", simdjson::error_message(error));
        const auto found = detail::find(fields, expected, entry);
        if (found == fields.size()) {
            skip(entry.value());
            continue;
        }
        seen.set(found);
        fields[found].read(entry.value(), record);
        expected = (found + 1) % fields.size();
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].required && !seen.test(i))
            fail(fields[i].key, "missing");
    }
}

/// Reads a whole body as one `T`; nothing but blanks may follow. Throws DecodingError.
template <typename T>
[[nodiscard]] T decode(QByteArrayView body)
{
    class Document
    {
    public:
        explicit Document(QByteArrayView body)
            : m_text(body.data(), std::size_t(body.size()))
        {
            if (const auto error = m_parser.iterate(m_text).get(m_document))
                fail("document", simdjson::error_message(error));
        }
        ~Document() { detail::forgetRepeatedTexts(); }
        Value root()
        {
            Value value;
            if (const auto error = m_document.get_value().get(value))
                fail("document", simdjson::error_message(error));
            return value;
        }
        void finish()
        {
            if (m_document.current_location().error() != simdjson::OUT_OF_BOUNDS)
                fail("document", "text behind its end");
        }

    private:
        simdjson::padded_string m_text;
        simdjson::ondemand::parser m_parser;
        simdjson::ondemand::document m_document;
    };

    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    Document document(body.startsWith(byteOrderMark) ? body.sliced(byteOrderMark.size()) : body);
    T result;
    auto root = document.root();
    read(root, result);
    document.finish();
    return result;
}

} // namespace json
} // namespace navorin
