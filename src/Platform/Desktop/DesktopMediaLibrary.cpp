#include "Platform/Desktop/DesktopMediaLibrary.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QThreadPool>

#include <algorithm>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype mostBytes = 200;
constexpr int mostNames = 10000;

QString whyNot(const QString &file, const QString &folder)
{
    const QFileInfo place(folder);
    if (place.isDir() && !place.isWritable())
        return u"اجازه نوشتن در پوشه ویدیوها وجود ندارد."_s;
    if (place.isDir() && QStorageInfo(folder).bytesAvailable() < QFileInfo(file).size())
        return u"فضای دیسک کافی نیست."_s;
    return u"نوشتن فایل روی دیسک انجام نشد."_s;
}

QString keep(const QString &file, const QString &folder, const QString &name)
{
    QDir().mkpath(folder);
    for (int number = 1; number <= mostNames; ++number) {
        const QString counted = number == 1 ? name : QString(name + u" ("_s + QString::number(number) + u')');
        const QString path = folder + u'/' + counted + u".mp4"_s;
        if (QFile::copy(file, path)) // never onto a file
            return {};
        if (!QFile::exists(path))
            break;
    }
    return whyNot(file, folder);
}

} // namespace

QString fileNameOf(const QString &title)
{
    static const QString forbidden = u"/\\:*?\"<>|"_s;
    QString name = title;
    std::ranges::replace_if(
        name, [](QChar c) { return forbidden.contains(c) || c.category() == QChar::Other_Control; }, u' ');
    name = name.simplified();
    while (name.startsWith(u'.') || name.startsWith(u' '))
        name.remove(0, 1);
    while (name.toUtf8().size() > mostBytes)
        name.chop(name.back().isLowSurrogate() ? 2 : 1);
    name = name.trimmed();
    return name.isEmpty() ? u"استوری"_s : name;
}

QFuture<QString> DesktopMediaLibrary::keepVideo(const QString &file, const QString &title)
{
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    return QtFuture::makeReadyFuture(file).then(
        QThreadPool::globalInstance(),
        [folder, name = fileNameOf(title)](const QString &source) { return keep(source, folder, name); });
}

} // namespace navorin
