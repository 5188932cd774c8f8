#pragma once

#include "Platform/Desktop/ShareSheet.h"

#include <QDBusConnection>

#include <functional>

class QDBusPendingCall;

namespace navorin {

/// The session's portal and file manager, and its clipboard.
class DesktopShareSheet final : public ShareSheet
{
public:
    explicit DesktopShareSheet(const QDBusConnection &session);

    void openWith(const QString &file) override;
    void showInFileManager(const QString &file) override;
    void copy(const QString &file) override;

private:
    static void otherwise(const QDBusPendingCall &call, std::function<void()> work);

    QDBusConnection m_session;
};

} // namespace navorin
