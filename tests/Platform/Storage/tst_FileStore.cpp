#include "Platform/Storage/QtFileStore.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <unistd.h>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using Failure = FileResult::Failure;

class tst_FileStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void persianNamesInTheDataFolder();
    void fullDiskLeavesTheOldFile();
    void readOnlyFolderLeavesTheOldFile();
    void tagsAFolderOnce();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    QtFileStore m_files;
};

void tst_FileStore::persianNamesInTheDataFolder()
{
    qputenv("XDG_DATA_HOME", path(u"داده"_s).toUtf8());
    const auto folder = m_files.applicationSupportFolder();
    QCOMPARE(folder, path(u"داده/navorin"_s));
    const QString from = folder + u"/آهنگ ۱.mp3"_s;
    const QString to = folder + u"/ترانه.mp3"_s;
    QVERIFY(m_files.exists(folder) && !m_files.read(folder) && !m_files.read(from));
    QVERIFY(m_files.writeAtomically(from, "old"_ba) && m_files.writeAtomically(from, "\0new"_ba));
    QVERIFY(m_files.writeAtomically(to, "there"_ba) && !m_files.move(from, to));
    QCOMPARE(m_files.read(to), "there"_ba);
    QVERIFY(m_files.remove(to) && !m_files.remove(to) && m_files.move(from, to) && !m_files.exists(from));
    QCOMPARE(m_files.read(to), "\0new"_ba);
    QCOMPARE(m_files.writeAtomically(folder + u"/missing/file"_s, "x"_ba).failure, Failure::NoFolder);
}

void tst_FileStore::fullDiskLeavesTheOldFile()
{
    QVERIFY(m_files.createFolder(path(u"full"_s)));
    QVERIFY(m_files.writeAtomically(path(u"full/index"_s), "old"_ba));
    rlimit previous{};
    getrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, SIG_IGN);
    const auto restore = qScopeGuard([&] { setrlimit(RLIMIT_FSIZE, &previous); });
    const rlimit limited{.rlim_cur = 4096, .rlim_max = previous.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
    for (const auto size : {4097, 1 << 20})
        QCOMPARE(m_files.writeAtomically(path(u"full/index"_s), QByteArray(size, 'x')).failure,
                 Failure::NoSpace);
    QCOMPARE(m_files.read(path(u"full/index"_s)), "old"_ba);
    QCOMPARE(QDir(path(u"full"_s)).entryList(QDir::Files | QDir::Hidden), QStringList{u"index"_s});
}

void tst_FileStore::readOnlyFolderLeavesTheOldFile()
{
    const auto folder = path(u"readonly"_s);
    QVERIFY(m_files.createFolder(folder) && m_files.writeAtomically(folder + u"/index"_s, "old"_ba));
    using Permissions = std::filesystem::perms;
    const auto allow = [](const QString &what, int mode) {
        std::filesystem::permissions(what.toStdString(), Permissions(mode));
    };
    allow(m_folder.path(), 0755);
    allow(folder, 0555);
    allow(folder + u"/index"_s, 0666);
    // The superuser may write everywhere.
    const bool superuser = geteuid() == 0;
    QVERIFY(!superuser || seteuid(65534) == 0);
    const auto restore = qScopeGuard([=] { static_cast<void>(superuser && seteuid(0)); });
    QCOMPARE(m_files.writeAtomically(folder + u"/index"_s, "new"_ba).failure, Failure::NotPermitted);
    QVERIFY(!m_files.move(folder + u"/index"_s, folder + u"/other"_s));
    QVERIFY(!m_files.remove(folder + u"/index"_s) && !m_files.createFolder(folder + u"/sub"_s));
    QVERIFY(!m_files.excludeFromBackup(folder));
    QCOMPARE(m_files.read(folder + u"/index"_s), "old"_ba);
}

void tst_FileStore::tagsAFolderOnce()
{
    const auto tag = path(u"tagged/CACHEDIR.TAG"_s);
    QVERIFY(m_files.createFolder(path(u"tagged"_s)) && m_files.excludeFromBackup(path(u"tagged"_s)));
    QVERIFY(m_files.read(tag)->startsWith("Signature: 8a477f597d28d172789f06886806bc55\n"));
    const auto mine = "Signature: 8a477f597d28d172789f06886806bc55 mine"_ba;
    QVERIFY(m_files.writeAtomically(tag, mine) && m_files.excludeFromBackup(path(u"tagged"_s)));
    QCOMPARE(m_files.read(tag), mine);
}

QTEST_GUILESS_MAIN(tst_FileStore)
#include "tst_FileStore.moc"
