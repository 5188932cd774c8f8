#include "Fuzz.h"
#include "Views/Lyrics/LyricsClock.h"
#include "Views/Lyrics/LyricsLineModel.h"

using namespace navorin;

namespace {

void checkActiveLine(const QList<LyricsLine> &lines, double position)
{
    const auto active = activeLine(lines, position);
    require(active >= -1 && active < lines.size(), "the lit line is one of them, or none");
    for (int row = 0; row <= active; ++row)
        require(lines.at(row).time.has_value(), "no line is passed that has no time");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const double position = input.byte() * 1.5 - 20;
    LyricsEnvelope envelope;
    try {
        envelope = json::decode<LyricsEnvelope>(input.rest());
    } catch (const DecodingError &) {
        return 0;
    }
    if (!envelope.data || !envelope.data->lines)
        return 0;
    LyricsClock clock;
    clock.adopt(envelope.data->elapsedSeconds, {});
    const auto &lines = *envelope.data->lines;
    checkActiveLine(lines, position);
    checkActiveLine(lines, clock.position({}));
    LyricsLineModel model;
    model.setLines(lines);
    for (int row = 0; row < model.rowCount(); ++row)
        require(model.data(model.index(row), LyricsLineModel::WordsRole).toString().size() <= 1300,
                "a line is never longer than can be laid out");
    return 0;
}
