#include "Views/Account/AccountSheet.h"

#include "Models/Text.h"
#include "Services/Account/AuthStore.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

AccountSheet::AccountSheet(QObject *parent)
    : AccountSheet(AuthStore::shared(), parent)
{
}

AccountSheet::AccountSheet(AuthStore &auth, QObject *parent)
    : QObject(parent)
    , m_auth(auth)
{
    for (const auto signal :
         {&AuthStore::userChanged, &AuthStore::playlistsChanged, &AuthStore::favoritesChanged})
        connect(&m_auth, signal, this, &AccountSheet::changed);
}

QString AccountSheet::name() const
{
    const auto user = m_auth.user().value_or(User());
    return user.displayName ? *user.displayName : user.username.value_or(QString());
}

QString AccountSheet::initial() const
{
    const auto user = m_auth.user().value_or(User());
    for (const auto &name : {user.displayName, user.username}) {
        if (name && !name->isEmpty())
            return firstCharacters(*name, 1).toString();
    }
    return u"؟"_s;
}

QString AccountSheet::avatarAddress() const
{
    return m_auth.user().value_or(User()).avatarURL.value_or(QString());
}

int AccountSheet::playlistCount() const
{
    return int(m_auth.playlists().size());
}

int AccountSheet::favoriteCount() const
{
    return int(m_auth.favorites().size());
}

void AccountSheet::logout()
{
    m_auth.logout();
    Q_EMIT finished();
}

} // namespace navorin
