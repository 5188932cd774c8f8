#pragma once

#include <QString>

namespace navorin {

/// The log of the whole system, for what somebody may look up later who cannot see our standard output.
class SystemLog
{
public:
    enum class Level { Error = 3, Info = 6 }; // the numbers of syslog

    virtual ~SystemLog() = default;

    /// One line. Never waits and never fails: a log that takes nothing loses it.
    virtual void write(Level level, const QString &line) = 0;
};

/// Speaks to the log daemon's socket, in the old form that every daemon reads (RFC 3164). Lines are told
/// apart by `subsystem` and `category`. UI thread only.
class SyslogSocket final : public SystemLog
{
public:
    SyslogSocket(QString subsystem, QString category, QByteArray socketPath = "/dev/log");

    void write(Level level, const QString &line) override;

private:
    QString m_subsystem;
    QString m_category;
    QByteArray m_socketPath;
};

} // namespace navorin
