#include "Platform/Desktop/DesktopMediaLibrary.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

class tst_MediaLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names();
    void keepsBesideOthers();
    void saysWhyNot();
};

void tst_MediaLibrary::names()
{
    const std::pair<QString, QString> cases[]{
        {u"چتری نداشتیم - باران"_s, u"چتری نداشتیم - باران"_s},
        {u"../../a/b\\c"_s, u"a b c"_s}, // no way out of the folder
        {u" a\n\tb\u0001c "_s, u"a b c"_s},
        {u"..."_s, u"استوری"_s}, // hidden
        {u""_s, u"استوری"_s},
        {u"ا"_s.repeated(150), u"ا"_s.repeated(100)},                 // 200 bytes of two each
        {u"a"_s + u"👋"_s.repeated(60), u"a"_s + u"👋"_s.repeated(49)}, // no half a character
    };
    for (const auto &[title, name] : cases)
        QCOMPARE(fileNameOf(title), name);
}

void tst_MediaLibrary::keepsBesideOthers()
{
    QStandardPaths::setTestModeEnabled(false);
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::MoviesLocation));
    for (const auto &old : folder.entryList(QDir::Files))
        QFile::remove(folder.filePath(old));
    const QTemporaryDir source;
    const auto file = source.filePath(u"story-final.mp4"_s);
    QStringList contents;
    for (const auto &words : {"one"_ba, "two"_ba, "three"_ba}) {
        QFile video(file);
        QVERIFY(video.open(QIODevice::WriteOnly) && video.write(words) > 0);
        video.close();
        QCOMPARE(DesktopMediaLibrary().keepVideo(file, u"دل"_s).result(), QString());
    }
    for (const auto &name : {u"دل.mp4"_s, u"دل (2).mp4"_s, u"دل (3).mp4"_s}) {
        QFile kept(folder.filePath(name));
        QVERIFY2(kept.open(QIODevice::ReadOnly), qPrintable(name));
        contents.append(QString::fromLatin1(kept.readAll()));
    }
    QCOMPARE(contents, QStringList({u"one"_s, u"two"_s, u"three"_s}));
}

void tst_MediaLibrary::saysWhyNot()
{
    QCOMPARE(DesktopMediaLibrary().keepVideo(u"/nowhere/story.mp4"_s, u"گم"_s).result(),
             u"نوشتن فایل روی دیسک انجام نشد."_s);
}

QTEST_GUILESS_MAIN(tst_MediaLibrary)
#include "tst_MediaLibrary.moc"
