#include "AdSettings.h"

namespace navorin {

namespace {

QString configured(const char *variable, const QString &builtIn)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariable(variable) : builtIn;
}

} // namespace

QString adHost()
{
    return configured("NAVORIN_AD_HOST", QStringLiteral(NAVORIN_AD_HOST));
}

QString adSite()
{
    return configured("NAVORIN_AD_SITE", QStringLiteral(NAVORIN_AD_SITE));
}

} // namespace navorin
