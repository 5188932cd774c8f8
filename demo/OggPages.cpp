#include "OggPages.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>

namespace navorin::demo {

namespace {

constexpr std::uint8_t beginFlag = 2;
constexpr std::uint8_t endFlag = 4;
constexpr qsizetype checksumAt = 22;
constexpr std::size_t framesPerPage = 12;

constexpr std::array<std::uint32_t, 256> makeTable()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t value = i << 24U;
        for (int bit = 0; bit < 8; ++bit)
            value = (value << 1U) ^ ((value & 0x80000000U) != 0 ? 0x04C11DB7U : 0U);
        table[i] = value;
    }
    return table;
}

std::uint32_t checksum(const QByteArray &page)
{
    static constexpr auto table = makeTable();
    std::uint32_t sum = 0;
    for (const char c : page)
        sum = (sum << 8U) ^ table[((sum >> 24U) ^ static_cast<unsigned char>(c)) & 0xFFU];
    return sum;
}

template <typename Integer>
void appendLittleEndian(QByteArray &bytes, Integer value)
{
    for (std::size_t i = 0; i < sizeof value; ++i)
        bytes.append(static_cast<char>((static_cast<std::uint64_t>(value) >> (8 * i)) & 0xFFU));
}

} // namespace

QByteArray OggPages::begin(const std::vector<QByteArray> &headers)
{
    if (headers.empty())
        return {};
    return makePage({headers.front()}, beginFlag, 0) +
           makePage(std::vector<QByteArray>(headers.begin() + 1, headers.end()), 0, 0);
}

QByteArray OggPages::page(const std::vector<Frame> &frames, bool last)
{
    std::vector<QByteArray> packets;
    for (const Frame &frame : frames) {
        packets.push_back(frame.bytes);
        // the first packet of a stream only gives the next one something to overlap with
        m_position += m_primed ? frame.samples : 0;
        m_primed = true;
    }
    return makePage(packets, last ? endFlag : std::uint8_t(0), m_position);
}

QByteArray OggPages::makePage(const std::vector<QByteArray> &packets, std::uint8_t flags,
                              std::int64_t position)
{
    QByteArray lacing;
    QByteArray body;
    for (const QByteArray &packet : packets) {
        lacing.append(packet.size() / 255, static_cast<char>(255));
        lacing.append(static_cast<char>(packet.size() % 255));
        body.append(packet);
    }
    QByteArray page("OggS\0", 5);
    page.append(static_cast<char>(flags));
    appendLittleEndian(page, position);
    appendLittleEndian(page, m_serial);
    appendLittleEndian(page, m_sequence++);
    appendLittleEndian(page, std::uint32_t(0));
    page.append(static_cast<char>(lacing.size()));
    page += lacing + body;
    QByteArray sum;
    appendLittleEndian(sum, checksum(page));
    page.replace(checksumAt, sum.size(), sum);
    return page;
}

QByteArray oggFile(const std::vector<QByteArray> &headers, const std::vector<Frame> &frames)
{
    OggPages pages(0x4E61766F);
    QByteArray file = pages.begin(headers);
    for (std::size_t i = 0; i < frames.size(); i += framesPerPage) {
        const std::size_t end = std::min(i + framesPerPage, frames.size());
        const auto first = frames.begin() + static_cast<std::ptrdiff_t>(i);
        file += pages.page({first, frames.begin() + static_cast<std::ptrdiff_t>(end)}, end == frames.size());
    }
    return file;
}

VorbisBlocks vorbisBlocks(const QByteArray &identification)
{
    constexpr qsizetype sizesAt = 28;
    if (identification.size() <= sizesAt)
        return {};
    const auto sizes = static_cast<unsigned char>(identification[sizesAt]);
    return {1 << (sizes & 0xFU), 1 << (sizes >> 4U)};
}

} // namespace navorin::demo
