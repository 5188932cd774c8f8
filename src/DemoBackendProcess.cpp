#include "DemoBackendProcess.h"

#include <QCoreApplication>
#include <QDebug>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int startTimeoutMs = 10'000;
constexpr int endTimeoutMs = 2'000;

} // namespace

DemoBackendProcess::~DemoBackendProcess()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(endTimeoutMs))
        m_process.kill();
    m_process.waitForFinished(endTimeoutMs);
}

std::optional<QUrl> DemoBackendProcess::start()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString program = QCoreApplication::applicationDirPath() + u"/navorin-demo-backend"_s;
    m_process.start(program, {u"--port"_s, u"0"_s, u"--parent-watch"_s});
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(startTimeoutMs)) {
            qCritical() << "navorin: the demo backend" << program
                        << "did not start:" << m_process.errorString();
            return {};
        }
    }
    const auto line = QString::fromUtf8(m_process.readLine()).trimmed();
    const auto port = line.startsWith(u"PORT "_s) ? line.mid(5).toInt() : 0;
    if (port == 0) {
        qCritical() << "The demo backend said:" << line;
        return {};
    }
    return QUrl(u"http://127.0.0.1:%1"_s.arg(port));
}

} // namespace navorin
