#pragma once

#include "Models/Station.h"

#include <QByteArray>

namespace navorin {

/// An answer of the catalogue call with `stations` stations. Every `listEvery`th has `tracks` tracks, the
/// others are live. Texts are Persian, as UTF-8 or, as some servers write them, in \u escapes.
struct CatalogueShape
{
    int stations;
    int listEvery;
    int tracks;
    bool escaped;
};
[[nodiscard]] QByteArray sampleCatalogue(const CatalogueShape &shape);

/// The same answer read by QJsonDocument into the same records, with the same tolerance.
[[nodiscard]] StationsResponse readByQJsonDocument(const QByteArray &body);

} // namespace navorin
