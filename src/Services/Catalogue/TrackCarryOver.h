#pragma once

#include "Models/Station.h"

#include <QList>

namespace navorin {

/// The fresh catalogue with the track lists that were fetched before: a fresh station whose `tracks` is
/// present and empty takes the old list of its genre, if there is one. A station whose `tracks` is absent or
/// has entries stays as it came, and nothing but `tracks` is carried over.
///
/// Genres are unique: two old stations with tracks under one genre end the process. Any thread.
[[nodiscard]] QList<Station> withCarriedTracks(QList<Station> fresh, const QList<Station> &old);

} // namespace navorin
