#include "Platform/Desktop/NowPlayingArtworkFolder.h"
#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/QtMainQueue.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

std::shared_ptr<const EncodedPicture> picture(const QByteArray &bytes, const QString &format = u"png"_s)
{
    return std::make_shared<EncodedPicture>(EncodedPicture{bytes, format, QSize(1, 1)});
}

int warnings = 0;
void countWarning(QtMsgType type, const QMessageLogContext &, const QString &)
{
    warnings += type == QtWarningMsg ? 1 : 0;
}

} // namespace

class tst_NowPlayingArtworkFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheLastTwo();
    void warnsOnceAndRecovers();

private:
    QTemporaryDir m_folder;
    QtMainQueue m_queue;
    QtFileStore m_files;
};

void tst_NowPlayingArtworkFolder::keepsTheLastTwo()
{
    const QString path = m_folder.filePath(u"now playing"_s);
    const QString foreign = path + u"/notes.txt"_s;
    const QString leftover = path + u'/' + QString(40, u'a') + u".png.Xy12"_s;
    QVERIFY(m_files.createFolder(path));
    QVERIFY(m_files.writeAtomically(leftover, "x") && m_files.writeAtomically(foreign, "x"));

    NowPlayingArtworkFolder folder(m_queue, m_files, path);
    QStringList written;
    for (const auto *bytes : {"one", "two", "three", "two"}) {
        const auto before = written.size();
        folder.write(picture(bytes), [&](const QString &file) { written << file; });
        QTRY_COMPARE(written.size(), before + 1);
        QCOMPARE(m_files.read(written.last()), QByteArray(bytes));
    }
    QCOMPARE(written[1], written[3]);
    QCOMPARE(QDir(path).entryList(QDir::Files).size(), 3);
    QVERIFY(m_files.exists(written[1]) && m_files.exists(written[2]) && m_files.exists(foreign));
}

void tst_NowPlayingArtworkFolder::warnsOnceAndRecovers()
{
    const auto path = m_folder.filePath(u"later"_s);
    const auto unwritable = picture("x", u"in/no/folder"_s);
    QStringList written;
    const auto note = [&](const QString &file) { written << file; };
    qInstallMessageHandler(countWarning);
    {
        NowPlayingArtworkFolder folder(m_queue, m_files, path);
        for (int i = 0; i < 2; ++i) {
            QDir(path).removeRecursively();
            folder.write(unwritable, note);
            QTRY_VERIFY(m_files.exists(path));
        }
        folder.write(picture("one"), note);
        QTRY_COMPARE(written.size(), 1);
        folder.write(picture("two"), note);
        while (QDir(path).entryList({u"*.png"_s}).size() < 2) // and the event loop does not turn
            QThread::yieldCurrentThread();
    }
    qInstallMessageHandler(nullptr);
    QCOMPARE(warnings, 1);
    NowPlayingArtworkFolder(m_queue, m_files, {}).write(picture("three"), note);
    QCoreApplication::processEvents();
    QCOMPARE(written.size(), 1);
}

QTEST_GUILESS_MAIN(tst_NowPlayingArtworkFolder)
#include "tst_NowPlayingArtworkFolder.moc"
