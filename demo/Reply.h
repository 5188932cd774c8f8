#pragma once

#include <QByteArray>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace navorin::demo {

/// The bytes of one answer, in order. Belongs to the one thread that sends them.
class ByteSource
{
public:
    virtual ~ByteSource() = default;

    /// The next bytes, valid until the next call; may wait, for a stream that keeps its own pace. Empty at
    /// the end.
    virtual std::string_view next() = 0;
};

/// Bytes that are all there from the start.
class MemorySource : public ByteSource
{
public:
    MemorySource(QByteArray bytes, std::int64_t offset, std::int64_t length);
    std::string_view next() override;

private:
    QByteArray m_bytes;
    std::int64_t m_offset;
    std::int64_t m_end;
};

/// What a route answers: a body, of which ranges can be asked for, or an endless stream without a length.
struct Reply
{
    int status = 200;
    std::string contentType;
    QByteArray body;
    bool endless = false;
    std::unique_ptr<ByteSource> stream; ///< of an endless reply; none for a HEAD
    std::vector<std::pair<std::string, std::string>> headers;

    static Reply json(std::string text, int status = 200);
    /// The error shape of every call: a code and a message, no data.
    static Reply error(int status, std::string_view message);
};

struct ByteRange
{
    std::int64_t first = 0;
    std::int64_t last = 0;
};

enum class RangeKind { Whole, Part, Unsatisfiable };

/// Reads a Range header against a body of `size` bytes. Only a single byte range makes a part; anything that
/// is not understood asks for the whole, as HTTP wants it.
[[nodiscard]] std::pair<RangeKind, ByteRange> parseRange(std::string_view header, std::int64_t size);

} // namespace navorin::demo
