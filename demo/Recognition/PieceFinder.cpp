#include "Recognition/PieceFinder.h"

#include "Synthesiser.h"

#include <algorithm>
#include <atomic>
#include <numeric>
#include <thread>

namespace navorin::demo {

namespace {

// What agrees by chance stays below; what is from the piece is far above.
constexpr int leastAgreement = 20;

std::vector<float> monoSamples(int piece)
{
    std::vector<float> mono;
    const SampleSource source = playScore(composePiece(piece));
    for (Samples block = source(); !block.empty(); block = source()) {
        for (std::size_t i = 0; i + 1 < block.size(); i += 2)
            mono.push_back((block[i] + block[i + 1]) / 2);
    }
    return mono;
}

} // namespace

PieceFinder::PieceFinder()
{
    m_known.resize(static_cast<std::size_t>(pieceCount()));
    for (auto &known : m_known)
        known = std::make_unique<Known>();
}

const Fingerprint &PieceFinder::fingerprint(int piece)
{
    Known &known = *m_known.at(static_cast<std::size_t>(piece));
    std::call_once(known.once, [&] { known.fingerprint = fingerprintOf(monoSamples(piece)); });
    return known.fingerprint;
}

std::optional<int> PieceFinder::findAmong(const Fingerprint &snippet, const std::vector<int> &pieces)
{
    std::vector<int> scores(pieces.size());
    std::atomic<std::size_t> next = 0;
    const auto compare = [&] {
        for (std::size_t i = next++; i < pieces.size(); i = next++)
            scores[i] = agreement(snippet, fingerprint(pieces[i]));
    };
    std::thread other(compare);
    compare();
    other.join();
    const auto best = std::max_element(scores.begin(), scores.end());
    if (best == scores.end() || *best < leastAgreement)
        return std::nullopt;
    return pieces[static_cast<std::size_t>(best - scores.begin())];
}

std::optional<int> PieceFinder::find(const std::vector<float> &samples, const std::vector<int> &likely)
{
    const Fingerprint snippet = fingerprintOf(samples);
    if (snippet.size() < leastAgreement)
        return std::nullopt;
    if (const auto found = findAmong(snippet, likely))
        return found;
    std::vector<int> all(m_known.size());
    std::iota(all.begin(), all.end(), 0);
    return findAmong(snippet, all);
}

} // namespace navorin::demo
