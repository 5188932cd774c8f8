#include "Fuzz.h"
#include "Services/Offline/OfflineTrackEntry.h"

using namespace navorin;

/// An index that can be read is written so that it reads the same again.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const FuzzInput input(data, size);
    QList<OfflineTrackEntry> entries;
    try {
        entries = json::decode<QList<OfflineTrackEntry>>(input.rest());
    } catch (const DecodingError &) {
        return 0;
    }
    const auto written = encodedIndex(entries);
    require(json::decode<QList<OfflineTrackEntry>>(written) == entries, "a saved index reads as it was");
    require(encodedIndex(json::decode<QList<OfflineTrackEntry>>(written)) == written,
            "saving again is the same");
    return 0;
}
