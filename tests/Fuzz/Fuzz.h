#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// One input, of any content. Whatever it is, the code under test may refuse it, but not fall over.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace navorin {

/// Ends the process at once, with the input that led here kept by the fuzzer.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// What a target makes its choices from: bytes from the front, and the rest as a text.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : m_rest(reinterpret_cast<const char *>(data), qsizetype(size))
    {
    }

    [[nodiscard]] int byte()
    {
        if (m_rest.isEmpty())
            return 0;
        const auto first = std::uint8_t(m_rest.front());
        m_rest.remove(0, 1);
        return first;
    }
    [[nodiscard]] bool isEmpty() const { return m_rest.isEmpty(); }
    [[nodiscard]] const QByteArray &rest() const { return m_rest; }

private:
    QByteArray m_rest;
};

} // namespace navorin
