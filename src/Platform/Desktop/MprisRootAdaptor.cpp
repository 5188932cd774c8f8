#include "Platform/Desktop/MprisRootAdaptor.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

MprisRootAdaptor::MprisRootAdaptor(QObject *parent, MprisHooks hooks)
    : QDBusAbstractAdaptor(parent)
    , m_hooks(std::move(hooks))
{
}

QString MprisRootAdaptor::identity() const
{
    return u"ناورین"_s;
}

QString MprisRootAdaptor::desktopEntry() const
{
    return u"ir.navorin.NavorinRadio"_s;
}

void MprisRootAdaptor::Raise()
{
    if (m_hooks.raise)
        m_hooks.raise();
}

void MprisRootAdaptor::Quit()
{
    if (m_hooks.quit)
        m_hooks.quit();
}

} // namespace navorin
