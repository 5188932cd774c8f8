#pragma once

#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Support/FakeHttpSession.h"
#include "Support/ManualMainQueue.h"
#include "Support/TestAccess.h"

#include <QDir>
#include <QTemporaryDir>

namespace navorin {

/// What a store of kept tracks stands on, in a data folder of the test's own.
class OfflineRig
{
protected:
    void makeHome()
    {
        m_home.emplace();
        qputenv("XDG_DATA_HOME", m_home->path().toUtf8());
    }
    [[nodiscard]] QString path(const QString &name = {}) const
    {
        return m_home->filePath(QStringLiteral("navorin/OfflineTracks/") + name);
    }

    std::optional<QTemporaryDir> m_home;
    ManualMainQueue m_queue;
    FakeHttpSession m_http;
    std::unique_ptr<APIClient> m_client =
        TestAccess::make<APIClient>(QUrl(QStringLiteral("https://backend.test")), m_http);
};

} // namespace navorin
