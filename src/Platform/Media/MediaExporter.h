#pragma once

#include <QString>
#include <QUrl>

#include <functional>
#include <stop_token>

namespace navorin {

/// A stretch of the first audio track of a source.
struct AudioRange
{
    QUrl source;       ///< a file, or over http or https
    double start = 0;  ///< seconds
    double length = 0; ///< seconds; what the source has less of is missing at the end
};

enum class ExportOutcome { Completed, NoAudioTrack, Failed };

/// Joins a silent video with sound.
class MediaExporter
{
public:
    virtual ~MediaExporter() = default;

    /// Told from 0 to 1, on the thread that exports, some twenty times a second at most.
    using Progress = std::function<void(double)>;

    /// Writes the pictures of `video` as they are, and the sound as AAC, to `output`, a file that can be
    /// played while it is still being fetched. Blocks; `stop` ends it as a failure. What did not complete
    /// leaves no file.
    [[nodiscard]] virtual ExportOutcome join(const QString &video, const AudioRange &sound,
                                             const QString &output, const Progress &progress,
                                             const std::stop_token &stop) = 0;
};

} // namespace navorin
