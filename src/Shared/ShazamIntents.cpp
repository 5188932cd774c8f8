#include "Shared/ShazamIntents.h"

#include "Platform/Storage/UserDefaults.h"

#include <QDateTime>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString NavorinDestination::typeDisplayName()
{
    return u"ناورین"_s;
}

QString NavorinDestination::displayTitle()
{
    return u"ناورین"_s;
}

QString NavorinDestination::urlRepresentation()
{
    return u"navorin://shazam"_s;
}

QList<NavorinDestination> NavorinDestinationQuery::entities(const QStringList &)
{
    return suggestedEntities();
}

QList<NavorinDestination> NavorinDestinationQuery::suggestedEntities()
{
    return {{u"shazam"_s}};
}

QString ShazamAppIntent::title()
{
    return u"تشخیص آهنگ با ناورین"_s;
}

void ShazamAppIntent::perform(UserDefaults *suite)
{
    if (suite)
        suite->setObject(ShazamRequest::key, double(QDateTime::currentMSecsSinceEpoch()) / 1000);
}

} // namespace navorin
