#pragma once

#include "Platform/Storage/FileStore.h"

#include <mutex>

namespace navorin {

/// The real files. The application's own folder is "navorin" in the user's XDG data folder.
class QtFileStore final : public FileStore
{
public:
    [[nodiscard]] QString applicationSupportFolder() const override;
    bool createFolder(const QString &path) override;
    bool excludeFromBackup(const QString &folder) override;
    [[nodiscard]] bool exists(const QString &path) const override;
    [[nodiscard]] std::optional<QByteArray> read(const QString &path) const override;
    FileResult writeAtomically(const QString &path, const QByteArray &data) override;
    bool move(const QString &from, const QString &to) override;
    bool remove(const QString &path) override;

private:
    mutable std::once_flag m_supportFolderMade;
    mutable QString m_supportFolder;
};

} // namespace navorin
