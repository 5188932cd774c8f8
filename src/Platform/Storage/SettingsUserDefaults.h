#pragma once

#include "Platform/Storage/UserDefaults.h"
#include "Platform/Tasks/MainQueue.h"

#include <QHash>
#include <QMutex>
#include <QThreadPool>

#include <ctime>
#include <memory>
#include <sys/types.h>

namespace navorin {

/// Settings in an INI file of the user's configuration folder, each value as a JSON fragment, so that it
/// keeps its type. A text that somebody wrote there by hand and that is no JSON reads as that text.
///
/// Writes are gathered for a fifth of a second and reach the disk on another thread; a file that cannot be
/// written keeps nothing beyond the process. What another process wrote into the same file is seen by the
/// next reading.
class SettingsUserDefaults final : public UserDefaults
{
public:
    /// `suite` names the file, "<suite>.conf": several programs may share one.
    explicit SettingsUserDefaults(MainQueue &queue, const QString &suite = QStringLiteral("navorin"));
    ~SettingsUserDefaults() override;
    /// A suite that several programs share; null where its file can neither be read nor made.
    [[nodiscard]] static std::unique_ptr<UserDefaults> openSuite(MainQueue &queue, const QString &suite);
    Q_DISABLE_COPY_MOVE(SettingsUserDefaults)

    [[nodiscard]] QVariant object(const QString &key) const override;
    void setObject(const QString &key, const QVariant &value) override;

private:
    /// Tells one version of the file from another: every save replaces the file by a new one.
    struct Version
    {
        ino_t inode = 0;
        off_t size = 0;
        time_t seconds = 0;
        long nanoseconds = 0;

        bool operator==(const Version &) const = default;
    };
    /// By key, the JSON fragments; a null text is a key to be removed.
    using Fragments = QHash<QString, QString>;

    void save();
    void rereadIfChanged() const;
    [[nodiscard]] Version currentVersion() const;

    MainQueue &m_queue;
    const QString m_path;
    std::unique_ptr<MainQueue::Timer> m_saveTimer;
    mutable Fragments m_onDisk;
    mutable Version m_onDiskVersion;

    mutable QMutex m_lock; ///< guards m_unsaved
    Fragments m_unsaved;   ///< stands before what is on disk
    QThreadPool m_writer;
};

} // namespace navorin
