#include "Platform/Desktop/SleepMonitor.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

SleepMonitor::SleepMonitor(QDBusConnection connection)
{
    // Waits for one answer of the bus itself, which knows who has the name, but not for the service.
    if (connection.isConnected())
        connection.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                           u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                           SLOT(prepareForSleep(bool)));
}

void SleepMonitor::prepareForSleep(bool begins)
{
    if (begins)
        Q_EMIT aboutToSleep();
    else
        Q_EMIT wokeUp();
}

} // namespace navorin
