#pragma once

#include <cstdint>
#include <vector>

namespace navorin::demo {

enum class Timbre { Tar, Santur, Setar, Bass, Ney, Kamancheh, Pad, Glass, Keys };
enum class Drum { Dum, Tak, Snap, Shaker };

struct Note
{
    double start = 0;  ///< seconds
    double length = 0; ///< seconds
    double hertz = 0;
    double level = 0;
    double pan = 0; ///< -1 left to 1 right
    Timbre timbre = Timbre::Tar;
};

struct Hit
{
    double start = 0;
    double level = 0;
    double pan = 0;
    Drum drum = Drum::Dum;
};

/// Everything that sounds in one piece.
struct Score
{
    double seconds = 0;
    double reverb = 0.3; ///< share of the hall in the mix
    double gain = 1;     ///< into the soft ceiling, so that all pieces are about equally loud
    std::vector<Note> notes;
    std::vector<Hit> hits;
};

/// The pool of pieces that all stations draw on.
[[nodiscard]] int pieceCount();
/// Length in whole seconds, cheap.
[[nodiscard]] int pieceSeconds(int piece);
[[nodiscard]] Score composePiece(int piece);

} // namespace navorin::demo
