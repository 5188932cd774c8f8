#pragma once

#include <QProcess>
#include <QUrl>

#include <optional>

namespace navorin {

/// The demo backend as a child of the app: `navorin --demo`. It ends with the app, however the app ends.
class DemoBackendProcess
{
public:
    ~DemoBackendProcess();

    /// Starts the executable that lies beside the app's own and waits for the port it chose. Absent, with the
    /// reason on standard error, if it does not come up within a few seconds.
    [[nodiscard]] std::optional<QUrl> start();

private:
    QProcess m_process;
};

} // namespace navorin
