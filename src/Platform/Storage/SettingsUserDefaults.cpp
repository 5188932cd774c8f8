#include "Platform/Storage/SettingsUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <sys/stat.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto gatheringTime = 200ms;

QString encoded(const QVariant &value)
{
    if (!value.isValid())
        return {};
    const auto list =
        QJsonDocument(QJsonArray{QJsonValue::fromVariant(value)}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(QByteArrayView(list).sliced(1).chopped(1));
}

QVariant variant(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool();
    if (value.isDouble())
        return value.toDouble();
    if (value.isString())
        return value.toString();
    if (!value.isArray())
        return {};
    QVariantList list;
    const auto array = value.toArray();
    std::ranges::transform(array, std::back_inserter(list), variant);
    return list;
}

QVariant decoded(const QString &fragment)
{
    if (fragment.isNull())
        return {};
    const auto list = QJsonDocument::fromJson("["_ba + fragment.toUtf8() + "]"_ba).array();
    const auto value = list.size() == 1 ? variant(list.first()) : QVariant();
    return value.isValid() ? value : fragment;
}

QString settingsPath(const QString &suite)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/navorin/"_s + suite +
           u".conf"_s;
}

} // namespace

SettingsUserDefaults::SettingsUserDefaults(MainQueue &queue, const QString &suite)
    : m_queue(queue)
    , m_path(settingsPath(suite))
{
    m_writer.setMaxThreadCount(1);
}

SettingsUserDefaults::~SettingsUserDefaults()
{
    m_saveTimer.reset();
    m_writer.waitForDone();
    save();
}

std::unique_ptr<UserDefaults> SettingsUserDefaults::openSuite(MainQueue &queue, const QString &suite)
{
    const QFileInfo file(settingsPath(suite));
    const auto usable = file.exists() ? file.isFile() && file.isReadable() : QDir().mkpath(file.path());
    return usable ? std::make_unique<SettingsUserDefaults>(queue, suite) : nullptr;
}

QVariant SettingsUserDefaults::object(const QString &key) const
{
    {
        const QMutexLocker locker(&m_lock);
        if (const auto unsaved = m_unsaved.constFind(key); unsaved != m_unsaved.cend())
            return decoded(*unsaved);
    }
    rereadIfChanged();
    return decoded(m_onDisk.value(key));
}

void SettingsUserDefaults::setObject(const QString &key, const QVariant &value)
{
    {
        const QMutexLocker locker(&m_lock);
        m_unsaved.insert(key, encoded(value));
    }
    if (m_saveTimer)
        return;
    m_saveTimer = m_queue.after(gatheringTime, [this] {
        m_saveTimer.reset();
        m_writer.start([this] { save(); });
    });
}

void SettingsUserDefaults::save()
{
    Fragments fragments;
    {
        const QMutexLocker locker(&m_lock);
        fragments = m_unsaved;
        // else it would share what the other thread changes, and give it up without the lock
        fragments.detach();
    }
    if (fragments.isEmpty())
        return;
    QSettings file(m_path, QSettings::IniFormat);
    for (const auto &[key, fragment] : fragments.asKeyValueRange())
        fragment.isNull() ? file.remove(key) : file.setValue(key, fragment);
    file.sync();
    if (file.status() == QSettings::AccessError)
        return;
    const QMutexLocker locker(&m_lock);
    m_unsaved.removeIf([&fragments](const auto &unsaved) {
        const auto saved = fragments.constFind(unsaved.key());
        return saved != fragments.cend() && *saved == unsaved.value();
    });
}

SettingsUserDefaults::Version SettingsUserDefaults::currentVersion() const
{
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return {};
    return {status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void SettingsUserDefaults::rereadIfChanged() const
{
    const auto version = currentVersion();
    if (version == m_onDiskVersion)
        return;
    m_onDiskVersion = version;
    m_onDisk.clear();
    const QSettings file(m_path, QSettings::IniFormat);
    for (const auto &key : file.allKeys()) {
        if (key.isEmpty())
            continue;
        const auto value = file.value(key);
        // The INI reader cuts a value written by hand at its commas.
        m_onDisk.insert(key, value.typeId() == QMetaType::QStringList ? value.toStringList().join(u',')
                                                                      : value.toString());
    }
}

} // namespace navorin
