#include "Platform/Desktop/SchemeHandlers.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

using Group = QHash<QString, QString>;

/// The groups of a desktop-style file by name; empty if there is no such file.
QHash<QString, Group> groupsOf(const QString &path)
{
    QHash<QString, Group> groups;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return groups;
    QString name;
    for (const auto &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        const auto text = line.trimmed();
        const auto equals = text.indexOf(u'=');
        if (text.startsWith(u'[') && text.endsWith(u']'))
            name = text.sliced(1).chopped(1);
        else if (equals > 0 && !text.startsWith(u'#'))
            groups[name].insert(text.first(equals).trimmed(), text.sliced(equals + 1).trimmed());
    }
    return groups;
}

QStringList listOf(const QString &value)
{
    return value.split(u';', Qt::SkipEmptyParts);
}

/// A dash of an id may stand for a folder.
QString findEntry(const QString &folder, const QString &id)
{
    if (QFile::exists(folder + u'/' + id))
        return folder + u'/' + id;
    for (auto dash = id.indexOf(u'-'); dash >= 0; dash = id.indexOf(u'-', dash + 1)) {
        if (auto found = findEntry(folder + u'/' + id.first(dash), id.sliced(dash + 1)); !found.isEmpty())
            return found;
    }
    return {};
}

bool canRun(const Group &entry)
{
    const auto tried = entry.value(u"TryExec"_s);
    const bool starts = entry.contains(u"Exec"_s) || entry.value(u"DBusActivatable"_s) == u"true";
    return starts && entry.value(u"Hidden"_s) != u"true" &&
           (tried.isEmpty() || !QStandardPaths::findExecutable(tried).isEmpty());
}

class Search
{
public:
    Search(const QString &scheme, const XdgFolders &folders)
        : m_type(u"x-scheme-handler/"_s + scheme)
        , m_folders(folders)
    {
    }

    /// From the file with the first say to the one with the last.
    bool finds()
    {
        return std::ranges::any_of(m_folders.configuration,
                                   [this](const auto &folder) { return chosenIn(folder); }) ||
               std::ranges::any_of(m_folders.data, [this](const auto &folder) {
                   const QString applications = folder + u"/applications"_s;
                   return chosenIn(applications) || offeredIn(applications);
               });
    }

private:
    bool chosenIn(const QString &folder)
    {
        QStringList files;
        for (const auto &desktop : m_folders.desktops)
            files << folder + u'/' + desktop.toLower() + u"-mimeapps.list"_s;
        files << folder + u"/mimeapps.list"_s;
        return std::ranges::any_of(files, [this](const auto &file) { return chosenBy(groupsOf(file)); });
    }

    bool chosenBy(const QHash<QString, Group> &choices)
    {
        const auto ids = [&](const QString &group) { return listOf(choices.value(group).value(m_type)); };
        if (std::ranges::any_of(ids(u"Default Applications"_s),
                                [this](const auto &id) { return isInstalled(id); }))
            return true;
        const bool added = std::ranges::any_of(ids(u"Added Associations"_s),
                                               [this](const auto &id) { return isWelcome(id); });
        const auto removed = ids(u"Removed Associations"_s);
        m_removed.unite({removed.cbegin(), removed.cend()});
        return added;
    }

    /// By what the programs of this folder say of themselves, or by the index of it if there is one.
    bool offeredIn(const QString &applications)
    {
        const auto welcome = [this](const QString &id) { return isWelcome(id); };
        const auto index = groupsOf(applications + u"/mimeinfo.cache"_s);
        if (!index.isEmpty())
            return std::ranges::any_of(listOf(index.value(u"MIME Cache"_s).value(m_type)), welcome);
        QDirIterator entries(applications, {u"*.desktop"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const auto path = entries.next();
            const auto types = groupsOf(path).value(u"Desktop Entry"_s).value(u"MimeType"_s);
            if (listOf(types).contains(m_type) &&
                welcome(path.sliced(applications.size() + 1).replace(u'/', u'-')))
                return true;
        }
        return false;
    }

    [[nodiscard]] bool isWelcome(const QString &id) const
    {
        return !m_removed.contains(id) && isInstalled(id);
    }

    /// The first folder that knows the id decides, also when it hides the program.
    [[nodiscard]] bool isInstalled(const QString &id) const
    {
        for (const auto &folder : m_folders.data) {
            if (const auto path = findEntry(folder + u"/applications"_s, id); !path.isEmpty())
                return canRun(groupsOf(path).value(u"Desktop Entry"_s));
        }
        return false;
    }

    const QString m_type;
    const XdgFolders &m_folders;
    QSet<QString> m_removed;
};

} // namespace

XdgFolders XdgFolders::current()
{
    return {QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation),
            QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation),
            qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts)};
}

bool hasSchemeHandler(const QString &scheme, const XdgFolders &folders)
{
    return Search(scheme, folders).finds();
}

} // namespace navorin
