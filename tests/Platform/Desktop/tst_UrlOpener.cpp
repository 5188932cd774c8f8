#include "Platform/Desktop/DesktopUrlOpener.h"
#include "Platform/Desktop/SchemeHandlers.h"
#include "Support/Columns.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

using Files = QMap<QString, QByteArray>; ///< by path below the session's folders
using Row = std::pair<const char *, Files>;

const auto app = "[Desktop Entry]\nExec=true %u\nMimeType=text/plain;x-scheme-handler/tg;\n"_ba;
const auto silent = "[Desktop Entry]\nExec=true %u\n"_ba;
const auto chosen = "[Default Applications]\nx-scheme-handler/tg=gone.desktop;a.desktop\n"_ba;
const auto added = "[Added Associations]\nx-scheme-handler/tg=a.desktop;\n"_ba;
const auto removed = "[Removed Associations]\nx-scheme-handler/tg=a.desktop;\n"_ba;

} // namespace

class tst_UrlOpener : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void schemeHandlers_data();
    void schemeHandlers();
    void addresses();
};

void tst_UrlOpener::schemeHandlers_data()
{
    addColumns<Files, bool>("files", "found");
    const auto user = u"home/applications/a.desktop"_s;
    const auto system = u"share/applications/a.desktop"_s;
    const auto list = u"config/mimeapps.list"_s;
    const auto index = u"share/applications/mimeinfo.cache"_s;
    const std::initializer_list<Row> found{
        {"says so itself", {{system, app}}},
        {"in a subfolder", {{u"share/applications/x/a.desktop"_s, app}}},
        {"chosen by the user", {{system, silent}, {list, chosen}}},
        {"chosen for this desktop", {{system, silent}, {u"etc/gnome-mimeapps.list"_s, chosen}}},
        {"chosen by the system", {{system, silent}, {u"share/applications/mimeapps.list"_s, chosen}}},
        {"chosen by an id for a subfolder",
         {{u"share/applications/x/b/a.desktop"_s, silent},
          {list, "[Default Applications]\nx-scheme-handler/tg=x-b-a.desktop\n"_ba}}},
        {"added", {{system, silent}, {list, added}}},
        {"added by the user, removed by the system",
         {{system, app}, {list, added}, {u"etc/mimeapps.list"_s, removed}}},
        {"by the index", {{system, silent}, {index, "[MIME Cache]\nx-scheme-handler/tg=a.desktop;\n"_ba}}},
        {"started over the bus",
         {{system, "[Desktop Entry]\nDBusActivatable=true\nMimeType=x-scheme-handler/tg\n"_ba}}},
        {"another one remains",
         {{system, app}, {user, app}, {u"home/applications/b.desktop"_s, app}, {list, removed}}},
    };
    const std::initializer_list<Row> missing{
        {"nothing at all", {}},
        {"chosen but gone", {{list, chosen + added}}},
        {"longer name of a scheme",
         {{system, "[Desktop Entry]\nExec=true\nMimeType=x-scheme-handler/tgx;\n"_ba}}},
        {"an action's line", {{system, silent + "[Desktop Action x]\nMimeType=x-scheme-handler/tg;\n"_ba}}},
        {"comment", {{system, silent + "#MimeType=x-scheme-handler/tg;\n"_ba}}},
        {"removed", {{system, app}, {list, removed}}},
        {"removed by the user, added by the system",
         {{system, app}, {list, removed}, {u"etc/mimeapps.list"_s, added}}},
        {"hidden by the user", {{system, app}, {user, "[Desktop Entry]\nHidden=true\n"_ba}}},
        {"program missing", {{system, app + "TryExec=/nowhere/program\n"_ba}}},
        {"other desktop's choice", {{system, silent}, {u"config/kde-mimeapps.list"_s, chosen}}},
        {"garbage", {{system, "\xFF\0[[=\n=tg;"_ba}, {list, "[Default Applications\n=;;"_ba}}},
    };
    for (const auto &[name, files] : found)
        QTest::newRow(name) << files << true;
    for (const auto &[name, files] : missing)
        QTest::newRow(name) << files << false;
}

void tst_UrlOpener::schemeHandlers()
{
    QFETCH(const Files, files);
    const QTemporaryDir root;
    for (const auto &[name, content] : files.asKeyValueRange()) {
        const auto path = root.filePath(name);
        QVERIFY(QDir().mkpath(path.section(u'/', 0, -2)));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    const XdgFolders folders{{root.filePath(u"config"_s), root.filePath(u"etc"_s)},
                             {root.filePath(u"home"_s), root.filePath(u"share"_s)},
                             {u"ubuntu"_s, u"GNOME"_s}};
    QTEST(hasSchemeHandler(u"tg"_s, folders), "found");
}

void tst_UrlOpener::addresses()
{
    const DesktopUrlOpener opener;
    QVERIFY(opener.canOpen(QUrl(u"https://t.me/bot"_s)));
    QVERIFY(opener.canOpen(QUrl(u"HTTP://t.me"_s)));
    QVERIFY(!opener.canOpen(QUrl(u"navorin-unheard-of://x"_s)));
    QVERIFY(!opener.canOpen(QUrl(u"//t.me/bot"_s)));
    QVERIFY(!opener.canOpen(QUrl(u"http://a b"_s, QUrl::StrictMode)));
    QVERIFY(!opener.canOpen(QUrl()));
}

QTEST_GUILESS_MAIN(tst_UrlOpener)
#include "tst_UrlOpener.moc"
