#include "Reply.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>

namespace navorin::demo {

namespace {

constexpr std::int64_t chunkSize = std::int64_t{64} * 1024;

std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0)
        return std::nullopt;
    return value;
}

} // namespace

MemorySource::MemorySource(QByteArray bytes, std::int64_t offset, std::int64_t length)
    : m_bytes(std::move(bytes))
    , m_offset(offset)
    , m_end(offset + length)
{
}

std::string_view MemorySource::next()
{
    const std::int64_t count = std::min(chunkSize, m_end - m_offset);
    const std::string_view chunk(m_bytes.constData() + m_offset, static_cast<std::size_t>(count));
    m_offset += count;
    return chunk;
}

Reply Reply::json(std::string text, int status)
{
    Reply reply;
    reply.status = status;
    reply.contentType = "application/json; charset=utf-8";
    reply.headers.emplace_back("Cache-Control", "no-store");
    reply.body = QByteArray(text.data(), static_cast<qsizetype>(text.size()));
    return reply;
}

Reply Reply::error(int status, std::string_view message)
{
    return json(nlohmann::ordered_json{{"code", status}, {"message", message}}.dump(), status);
}

std::pair<RangeKind, ByteRange> parseRange(std::string_view header, std::int64_t size)
{
    constexpr std::string_view unit = "bytes=";
    const std::size_t dash = header.find('-');
    if (!header.starts_with(unit) || dash == std::string_view::npos)
        return {RangeKind::Whole, {}};
    const std::string_view left = header.substr(unit.size(), dash - unit.size());
    const auto first = wholeNumber(left);
    const auto last = wholeNumber(header.substr(dash + 1));
    const bool lastMissing = dash + 1 == header.size();
    if (!left.empty() && first && (last || lastMissing)) {
        if (last && *last < *first)
            return {RangeKind::Whole, {}};
        if (*first >= size)
            return {RangeKind::Unsatisfiable, {}};
        return {RangeKind::Part, {*first, std::min(last.value_or(size - 1), size - 1)}};
    }
    if (left.empty() && last) {
        if (*last == 0 || size == 0)
            return {RangeKind::Unsatisfiable, {}};
        return {RangeKind::Part, {std::max<std::int64_t>(size - *last, 0), size - 1}};
    }
    return {RangeKind::Whole, {}};
}

} // namespace navorin::demo
