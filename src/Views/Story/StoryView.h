#pragma once

#include "Models/APIModels.h"
#include "Models/Station.h"
#include "Views/Story/StoryDecisions.h"

#include <QCoro/QCoroTask>
#include <QFuture>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <stop_token>

namespace navorin {

class APIClient;
class MediaLibrary;
class OfflineStore;
class RadioPlayer;
class ShareSheet;
class StoryVideoRenderer;
struct StoryConfig;

/// The story's sheet: which lines, how far the video is, and what is done with it. Closing the sheet ends a
/// render.
class StoryView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(StoryViewState)
    Q_PROPERTY(Content content READ content NOTIFY contentChanged)
    Q_PROPERTY(QStringList rows READ rows NOTIFY contentChanged)
    Q_PROPERTY(int startLine READ startLine NOTIFY rangeChanged)
    Q_PROPERTY(int endLine READ endLine NOTIFY rangeChanged)
    Q_PROPERTY(QString startText READ startText NOTIFY rangeChanged)
    Q_PROPERTY(QString endText READ endText NOTIFY rangeChanged)
    Q_PROPERTY(QString lengthText READ lengthText NOTIFY rangeChanged)
    Q_PROPERTY(bool isRendering READ isRendering NOTIFY renderChanged)
    Q_PROPERTY(double renderProgress READ renderProgress NOTIFY renderChanged)
    Q_PROPERTY(QString percentText READ percentText NOTIFY renderChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY renderChanged)
    Q_PROPERTY(QUrl videoURL READ videoURL NOTIFY videoChanged)
    Q_PROPERTY(bool hasVideo READ hasVideo NOTIFY videoChanged)
    Q_PROPERTY(bool savedToLibrary READ savedToLibrary NOTIFY videoChanged)
public:
    enum Content { LoadFailed, Loading, NotFound, Picker };
    Q_ENUM(Content)

    /// All that the sheet stands on; each must outlive it.
    struct Sources
    {
        RadioPlayer &player;
        OfflineStore &offline;
        APIClient &client;
        StoryVideoRenderer &renderer;
        ShareSheet &shareSheet;
        MediaLibrary &mediaLibrary;
    };

    /// For what the player has selected.
    explicit StoryView(QObject *parent = nullptr);
    StoryView(std::optional<Station> station, const Sources &sources, QObject *parent = nullptr);
    ~StoryView() override;

    [[nodiscard]] Content content() const;
    [[nodiscard]] QStringList rows() const;
    [[nodiscard]] int startLine() const { return int(m_range.start); }
    [[nodiscard]] int endLine() const { return int(m_range.end); }
    [[nodiscard]] QString startText() const;
    [[nodiscard]] QString endText() const;
    [[nodiscard]] QString lengthText() const;
    [[nodiscard]] bool isRendering() const { return m_isRendering; }
    [[nodiscard]] double renderProgress() const { return m_renderProgress; }
    [[nodiscard]] QString percentText() const;
    /// The last failure, fit to be shown; it stays until the next render.
    [[nodiscard]] QString errorText() const { return m_errorText; }
    /// Empty until there is one.
    [[nodiscard]] QUrl videoURL() const { return m_videoURL; }
    [[nodiscard]] bool hasVideo() const { return !m_videoURL.isEmpty(); }
    [[nodiscard]] bool savedToLibrary() const { return m_savedToLibrary; }

    /// Fetches the lyrics, and forgets the video and the choice.
    Q_INVOKABLE void load();
    Q_INVOKABLE void pickStart(int index);
    Q_INVOKABLE void pickEnd(int index);
    /// One at a time.
    Q_INVOKABLE void generate();
    Q_INVOKABLE void saveToLibrary();
    Q_INVOKABLE void openWith();
    Q_INVOKABLE void showInFileManager();
    Q_INVOKABLE void copyVideo();
    /// Of a moment of the video, in milliseconds.
    Q_INVOKABLE static QString timeText(qint64 milliseconds);

Q_SIGNALS:
    void contentChanged();
    void rangeChanged();
    void renderChanged();
    void videoChanged();

private:
    using View = QPointer<StoryView>;
    static QCoro::Task<void> runLoad(View view, QFuture<LyricsEnvelope> answer, int question);
    static QCoro::Task<void> runGenerate(View view, StoryConfig config, QFuture<QImage> cover,
                                         std::stop_token stop);
    static QCoro::Task<void> runSave(View view, QFuture<QString> result, QUrl video);
    [[nodiscard]] const QList<LyricsLine> &lines() const;
    [[nodiscard]] StoryConfig configFor(const Station &station) const;
    [[nodiscard]] std::optional<QUrl> audioOf(const Station &station) const;
    [[nodiscard]] QFuture<QImage> coverOf(const Station &station) const;
    void take(std::optional<LyricsData> lyrics);
    void setRange(LineRange range);
    void setVideo(const QUrl &address);
    void setProgress(double progress);
    void endRender(const QString &error);

    Sources m_sources;
    const std::optional<Station> m_station;
    std::optional<LyricsData> m_lyrics;
    bool m_loadFailed = false;
    int m_question = 0; ///< counts the loads: only the last one's answer is wanted
    LineRange m_range;
    bool m_isRendering = false;
    double m_renderProgress = 0;
    QString m_errorText;
    QUrl m_videoURL;
    QString m_videoTitle;
    bool m_savedToLibrary = false;
    std::stop_source m_stop;
};

} // namespace navorin
