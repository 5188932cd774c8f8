#pragma once

#include "Recognition/Fingerprint.h"

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace navorin::demo {

/// Knows every piece by its fingerprint, each from when it is first compared. Any thread.
class PieceFinder
{
public:
    PieceFinder();

    /// The piece that these samples (mono, 44,100 Hz) are from, if any. The pieces in `likely` are compared
    /// first, and only they if one of them is it.
    [[nodiscard]] std::optional<int> find(const std::vector<float> &samples, const std::vector<int> &likely);

private:
    struct Known
    {
        std::once_flag once;
        Fingerprint fingerprint;
    };

    [[nodiscard]] const Fingerprint &fingerprint(int piece);
    [[nodiscard]] std::optional<int> findAmong(const Fingerprint &snippet, const std::vector<int> &pieces);

    std::vector<std::unique_ptr<Known>> m_known;
};

} // namespace navorin::demo
