#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QUrl>

#include <span>

namespace navorin {

/// Runs a pipeline, as on a gst-launch command line, to its end. An empty text, or what went wrong.
QString runPipeline(const QString &description);

/// What a program of others makes of the streams in a media file, each an object.
QJsonArray probedStreams(const QString &path);

inline std::span<const float> floats(const QByteArray &bytes)
{
    return {reinterpret_cast<const float *>(bytes.constData()), std::size_t(bytes.size()) / sizeof(float)};
}

/// A folder of media for one test.
class MediaFolder
{
public:
    /// A tone of 1 kHz at half of full scale, in 44.1 kHz stereo, in the format of the file's suffix: wav,
    /// mp3, aac, ogg or m4a, after so much silence. An empty text, or what went wrong.
    [[nodiscard]] QString writeTone(const char *name, double seconds, double silence = 0) const;
    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder.filePath(QString::fromLatin1(name));
    }
    [[nodiscard]] QUrl file(const char *name) const { return QUrl::fromLocalFile(path(name)); }
    [[nodiscard]] QByteArray contents(const char *name) const;

private:
    QTemporaryDir m_folder;
};

} // namespace navorin
