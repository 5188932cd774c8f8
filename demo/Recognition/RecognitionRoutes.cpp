#include "Recognition/RecognitionRoutes.h"

#include "Accounts/Envelope.h"
#include "Accounts/Refusal.h"
#include "Catalogue.h"
#include "Recognition/PieceFinder.h"
#include "Recognition/Plays.h"
#include "Recognition/SnippetDecoder.h"
#include "Routes.h"
#include "Score.h"

namespace navorin::demo {

namespace {

Json record(const PlayedSong &played)
{
    const std::string &genre = played.station->genre;
    const std::string index = std::to_string(played.index);
    return {{"title", played.song().title},
            {"artist", played.song().artist},
            {"genre", textOrNull(played.station->displayGenre)},
            {"artwork_url", "/artwork/" + genre + "-" + index + ".jpg"},
            {"stream_url", "/stream/" + genre + "?track=" + index},
            {"duration", pieceSeconds(played.song().piece)}};
}

Json recognise(const std::string &body, const Catalogue &catalogue, const Plays &plays, PieceFinder &finder)
{
    const std::vector<float> samples = decodeSnippet(QByteArray::fromStdString(body));
    if (samples.empty())
        throw Refusal(400, "این صدا خوانده نشد");
    const auto piece = finder.find(samples, plays.pieces(catalogue));
    const auto song = piece ? plays.songWith(*piece, catalogue) : std::nullopt;
    if (!song)
        throw Refusal(404, "این صدا با هیچ آهنگی جور درنیامد");
    return record(*song);
}

} // namespace

void addRecognitionRoutes(Routes &routes, const Catalogue &catalogue, const Plays &plays, PieceFinder &finder)
{
    routes.add("POST", "/api/shazam", [&](const httplib::Request &request, const auto &) {
        return envelope(recognise(request.body, catalogue, plays, finder));
    });
}

} // namespace navorin::demo
