#pragma once

#include "Station.h"

#include <optional>
#include <string>
#include <vector>

namespace navorin::demo {

struct SungLine
{
    std::optional<double> time; ///< seconds from the song's beginning
    std::string text;
    std::string translation; ///< empty for none
};

/// What there is of a song's words. Empty for one without words.
struct Lyrics
{
    std::vector<SungLine> lines;
    bool isWithheld = false; ///< the answer comes without its content
};

/// A line every few seconds over the length of the song. Some titles are special, for whoever wants to see
/// what a client makes of them: see the README.
[[nodiscard]] Lyrics lyricsOf(const Song &song, Repertoire repertoire);

} // namespace navorin::demo
