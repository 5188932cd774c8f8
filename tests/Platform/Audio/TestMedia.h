#pragma once

#include <QByteArray>
#include <QString>

namespace navorin {

/// Runs a pipeline, as on a gst-launch command line, to its end. An empty text, or what went wrong.
QString runPipeline(const QString &description);

/// A tone of 1 kHz at half of full scale, in 44.1 kHz stereo, in the format of the file's suffix: wav, mp3,
/// aac, ogg or m4a. An empty text, or what went wrong.
QString writeTone(const QString &path, double seconds);

/// The bytes of a file.
QByteArray contentsOf(const QString &path);

} // namespace navorin
