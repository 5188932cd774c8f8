#pragma once

#include "Platform/Media/MediaExporter.h"

#include <QByteArray>

namespace navorin {

/// Reads the sound first, all of it, so that a slow network holds up nothing else; then joins. Has no state.
class GstMediaExporter final : public MediaExporter
{
public:
    [[nodiscard]] ExportOutcome join(const QString &video, const AudioRange &sound, const QString &output,
                                     const Progress &progress, const std::stop_token &stop) override;
};

} // namespace navorin
