#pragma once

#include "Platform/Media/VideoWriter.h"
#include "Platform/Tasks/MainQueue.h"
#include "Services/SharedInstance.h"
#include "Services/Story/StoryConfig.h"

#include <QFuture>
#include <QString>
#include <QThreadPool>
#include <QUrl>

#include <exception>
#include <functional>
#include <stop_token>

namespace navorin {

class FileStore;
class MediaExporter;
class NavorinRadioApp;
struct TestAccess;

/// Why there is no video.
class StoryError : public std::exception
{
public:
    /// For a program.
    enum class Code { WriterNotReady = -1, NoResources = -3, RenderFailed = -4 };
    static constexpr auto domain = "story";

    /// An empty text stands for the code's own.
    explicit StoryError(Code code, const QString &text = {});

    [[nodiscard]] Code code() const { return m_code; }
    /// The Persian text for a person.
    [[nodiscard]] QString description() const { return QString::fromUtf8(m_what); }
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

private:
    Code m_code;
    QByteArray m_what;
};

/// Turns a few lines of lyrics, a cover and a stretch of the song into a vertical video, in two passes: the
/// pictures first, then the sound. Without sound to be had, for whatever reason, the silent video is the
/// result.
///
/// The files have fixed names in one folder: a render replaces the result of the one before, and renders wait
/// for each other. Nothing removes a result afterwards. UI thread only; the work is done on a thread of its
/// own.
class StoryVideoRenderer
{
public:
    /// What it works with; all of it outlives it.
    struct Surroundings
    {
        MainQueue &queue;
        FileStore &files;
        VideoWriterFactory makeWriter;
        MediaExporter &exporter;
        QString folder;
    };
    using Progress = std::function<void(double)>;

    static StoryVideoRenderer &shared();
    /// Stops what is under way, and waits for that.
    ~StoryVideoRenderer();

    /// The finished file. Fails with StoryError, also when `stop` ended it; `onProgress` is told from 0 to 1
    /// on the UI thread, never after that. The config's lines may not be empty.
    [[nodiscard]] QFuture<QUrl> render(StoryConfig config, Progress onProgress, std::stop_token stop = {});

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    explicit StoryVideoRenderer(Surroundings surroundings);
    static SharedInstance<StoryVideoRenderer> &instance();

    [[nodiscard]] QString silentPath() const;
    [[nodiscard]] QString finalPath() const;
    // The worker.
    [[nodiscard]] QString rendered(StoryConfig config, const Progress &report, const std::stop_token &stop);
    void renderSilent(StoryConfig config, const Progress &report, const std::stop_token &stop);
    void writeFrames(VideoWriter &writer, const StoryConfig &config, const Progress &report) const;
    [[nodiscard]] QString attachAudioIfPossible(const QUrl &source, double start, double length,
                                                const Progress &report, const std::stop_token &stop);

    Surroundings m_surroundings;
    std::stop_source m_end;
    QThreadPool m_worker; ///< one thread
};

} // namespace navorin
