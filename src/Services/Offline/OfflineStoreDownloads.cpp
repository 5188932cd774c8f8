#include "Services/Offline/OfflineStore.h"

namespace navorin {

void OfflineStore::download(const PlaylistTrack &) {}

void OfflineStore::cancelDownload(const PlaylistTrack &) {}

} // namespace navorin
