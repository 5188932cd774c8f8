#include "Platform/Desktop/DesktopShareSheet.h"

#include <QClipboard>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

DesktopShareSheet::DesktopShareSheet(const QDBusConnection &session)
    : m_session(session)
{
}

void DesktopShareSheet::openWith(const QString &file)
{
    const auto openUsual = [file] { QDesktopServices::openUrl(QUrl::fromLocalFile(file)); };
    QFile opened(file);
    if (!opened.open(QIODevice::ReadOnly))
        return;
    auto call = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                               u"/org/freedesktop/portal/desktop"_s,
                                               u"org.freedesktop.portal.OpenURI"_s, u"OpenFile"_s);
    call.setArguments({QString(), QVariant::fromValue(QDBusUnixFileDescriptor(opened.handle())),
                       QVariantMap{{u"ask"_s, true}}});
    otherwise(m_session.asyncCall(call), openUsual);
}

void DesktopShareSheet::showInFileManager(const QString &file)
{
    const auto openFolder = [file] {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
    };
    auto call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call.setArguments({QStringList{QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)}, QString()});
    otherwise(m_session.asyncCall(call), openFolder);
}

void DesktopShareSheet::copy(const QString &file)
{
    const auto address = QUrl::fromLocalFile(file);
    auto *data = new QMimeData;
    data->setUrls({address});
    data->setText(file);
    data->setData(u"x-special/gnome-copied-files"_s, "copy\n"_ba + address.toEncoded());
    QGuiApplication::clipboard()->setMimeData(data);
}

void DesktopShareSheet::otherwise(const QDBusPendingCall &call, std::function<void()> work)
{
    auto *watcher = new QDBusPendingCallWatcher(call, qGuiApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, work = std::move(work)] {
        if (watcher->isError())
            work();
        watcher->deleteLater();
    });
}

} // namespace navorin
