#include "AccountSide.h"

#include "AccountRoutes.h"
#include "DemoUser.h"
#include "LibraryRoutes.h"
#include "Options.h"
#include "Outside/OutsideRoutes.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cstdio>

namespace navorin::demo {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr const char *inMemory = ":memory:";

QString defaultFile()
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/navorin-demo-backend"_s;
    QDir().mkpath(folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder + u"/accounts.sqlite"_s;
}

} // namespace

AccountSide::AccountSide(const std::string &file, const Options &options)
    : m_database(file)
    , m_accounts(m_database, options.tokenSeconds, options.codeSeconds)
    , m_library(m_database)
{
}

std::unique_ptr<AccountSide> AccountSide::open(const Options &options)
{
    const bool named = !options.databaseFile.isEmpty();
    const QString file = named ? options.databaseFile : defaultFile();
    try {
        return std::unique_ptr<AccountSide>(new AccountSide(QFile::encodeName(file).toStdString(), options));
    } catch (const std::runtime_error &error) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(file), error.what());
    }
    if (named)
        return nullptr;
    std::fprintf(stderr, "accounts will be forgotten at the end\n");
    return std::unique_ptr<AccountSide>(new AccountSide(inMemory, options));
}

void AccountSide::addTo(Routes &routes, const Options &options, const Catalogue &catalogue,
                        const std::string &address)
{
    if (options.demoUser)
        addDemoUser(m_accounts, m_library, catalogue, options.demoUser->first, options.demoUser->second);
    addAccountRoutes(routes, m_accounts, address);
    addLibraryRoutes(routes, m_accounts, m_library);
    addOutsideRoutes(routes, catalogue, m_accounts, m_library);
}

} // namespace navorin::demo
