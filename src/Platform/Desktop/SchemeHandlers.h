#pragma once

#include <QStringList>

namespace navorin {

/// Where a desktop writes down which programs there are and what they are for; the user's own folder first.
struct XdgFolders
{
    QStringList configuration;
    QStringList data;
    QStringList desktops; ///< names of the running desktop, as in XDG_CURRENT_DESKTOP

    [[nodiscard]] static XdgFolders current();
};

/// Whether an installed program opens addresses of `scheme` (lower case): one that the user or the system
/// chose for it, or one that says so itself and has not been ruled out. Reads a few small files and starts
/// nothing.
[[nodiscard]] bool hasSchemeHandler(const QString &scheme, const XdgFolders &folders);

} // namespace navorin
