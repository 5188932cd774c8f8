#pragma once

#include "Views/Recognition/ShazamDecisions.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class MainQueue;
class RadioPlayer;
class ShazamManager;

/// The recognition sheet's state and actions. Its making is the sheet's appearance and its end the
/// disappearance: a sheet that was asked for from outside begins to listen by itself, and what was found or
/// went wrong does not outlive the sheet. A cycle under way does.
class ShazamView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(ShazamViewState)
    Q_PROPERTY(Status status READ status NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(bool isListening READ isListening NOTIFY changed)
    Q_PROPERTY(bool isProcessing READ isProcessing NOTIFY changed)
    Q_PROPERTY(bool hasFailed READ hasFailed NOTIFY changed)
    Q_PROPERTY(bool hasTrack READ hasTrack NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString artist READ artist NOTIFY changed)
    Q_PROPERTY(QString genre READ genre NOTIFY changed)
    Q_PROPERTY(QString artworkAddress READ artworkAddress NOTIFY changed)
public:
    enum Status {
        Listening = int(ShazamStatus::Listening),
        Processing = int(ShazamStatus::Processing),
        Failed = int(ShazamStatus::Failed),
        Recognised = int(ShazamStatus::Recognised),
        Ready = int(ShazamStatus::Ready)
    };
    Q_ENUM(Status)

    explicit ShazamView(QObject *parent = nullptr);
    ShazamView(ShazamManager &shazam, RadioPlayer &player, MainQueue &queue, QObject *parent = nullptr);
    ~ShazamView() override;

    [[nodiscard]] Status status() const;
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] bool isListening() const;
    [[nodiscard]] bool isProcessing() const;
    [[nodiscard]] bool hasFailed() const;
    [[nodiscard]] bool hasTrack() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString artist() const;
    /// Empty for none.
    [[nodiscard]] QString genre() const;
    [[nodiscard]] QString artworkAddress() const;

    Q_INVOKABLE void listen();
    Q_INVOKABLE void tryAgain();
    /// Plays what was recognised, in the full player, and closes.
    Q_INVOKABLE void play();

Q_SIGNALS:
    void changed();
    /// The sheet is to close.
    void finished();

private:
    void startIfAskedTo(MainQueue &queue);
    void forget();

    ShazamManager &m_shazam;
    RadioPlayer &m_player;
};

} // namespace navorin
