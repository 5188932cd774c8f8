#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class AuthStore;

/// What a signed-in user sees of the account.
class AccountSheet : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(AccountSheetState)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    /// Stands in for the picture: the first character of the name.
    Q_PROPERTY(QString initial READ initial NOTIFY changed)
    Q_PROPERTY(QString avatarAddress READ avatarAddress NOTIFY changed)
    Q_PROPERTY(int playlistCount READ playlistCount NOTIFY changed)
    Q_PROPERTY(int favoriteCount READ favoriteCount NOTIFY changed)
public:
    explicit AccountSheet(QObject *parent = nullptr);
    explicit AccountSheet(AuthStore &auth, QObject *parent = nullptr);

    [[nodiscard]] QString name() const;
    [[nodiscard]] QString initial() const;
    [[nodiscard]] QString avatarAddress() const;
    [[nodiscard]] int playlistCount() const;
    [[nodiscard]] int favoriteCount() const;

    /// Signs out and closes, without asking.
    Q_INVOKABLE void logout();

Q_SIGNALS:
    void changed();
    /// The sheet is to close.
    void finished();

private:
    AuthStore &m_auth;
};

} // namespace navorin
