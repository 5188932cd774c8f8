#include "Fuzz.h"
#include "Models/APIModels.h"
#include "Models/Station.h"

#include <array>

using namespace navorin;

namespace {

/// The same bytes give the same answer, and a refusal is a DecodingError.
template <typename T>
void readTwice(const QByteArray &json)
{
    try {
        [[maybe_unused]] const auto value = json::decode<T>(json);
    } catch (const DecodingError &) {
        try {
            [[maybe_unused]] const auto value = json::decode<T>(json);
            require(false, "what was refused is refused again");
        } catch (const DecodingError &) {
        }
    }
}

/// What the screens ask of a station is answered for each that was read.
void readStations(const QByteArray &json)
{
    try {
        const auto response = json::decode<StationsResponse>(json);
        for (const auto &station : response.data.value_or(QList<Station>())) {
            [[maybe_unused]] const auto shown =
                station.displayName() + station.displayTrackTitle() + station.displayArtist();
            [[maybe_unused]] const auto streamed = station.currentStreamURL();
            require(!station.currentTrackID().isNull(), "what plays has an identity");
        }
    } catch (const DecodingError &) {
    }
}

constexpr std::array readers{&readStations,
                             &readTwice<AuthEnvelope>,
                             &readTwice<SessionInfoEnvelope>,
                             &readTwice<TelegramTokenEnvelope>,
                             &readTwice<PlaylistCreateEnvelope>,
                             &readTwice<PlaylistsEnvelope>,
                             &readTwice<PlaylistEnvelope>,
                             &readTwice<FavoritesEnvelope>,
                             &readTwice<ToggleResult>,
                             &readTwice<LyricsEnvelope>,
                             &readTwice<ShazamEnvelope>,
                             &readTwice<EntityEnvelope>};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    readers.at(std::size_t(input.byte()) % readers.size())(input.rest());
    return 0;
}
