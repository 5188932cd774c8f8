#include "Fuzz.h"
#include "Platform/Storage/SettingsUserDefaults.h"
#include "Services/Equaliser/Equalizer.h"
#include "Support/ManualMainQueue.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>

using namespace navorin;

namespace navorin {

struct TestAccess
{
    static EqGains gainsFrom(UserDefaults &defaults) { return Equalizer(defaults).gains(); }
};

} // namespace navorin

namespace {

/// The folder of the settings file, the process's own.
const QString &configFolder()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
        require(QDir(folder.path()).mkdir(QStringLiteral("navorin")), "the test has a folder");
        return QString(folder.path() + QStringLiteral("/navorin"));
    }();
    return path;
}

void writeSettings(const QByteArray &content)
{
    QFile file(configFolder() + QStringLiteral("/navorin.conf"));
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "the test can write");
}

} // namespace

/// A settings file that somebody has written by hand, or that a full disk has cut.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const FuzzInput input(data, size);
    writeSettings(input.rest());
    ManualMainQueue queue;
    {
        SettingsUserDefaults defaults(queue);
        for (const auto gain : TestAccess::gainsFrom(defaults))
            require(std::isfinite(gain), "gains are numbers");
        defaults.setObject(QStringLiteral("eq.preset"), QStringLiteral("ساده"));
    }
    const SettingsUserDefaults again(queue);
    require(again.string(QStringLiteral("eq.preset")) == QStringLiteral("ساده"),
            "what was set is there again");
    return 0;
}
