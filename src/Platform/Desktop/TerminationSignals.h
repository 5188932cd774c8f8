#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <memory>

namespace navorin {

/// Turns the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) into one of Qt's, on the UI thread,
/// so that the program ends as it does when its window is closed. One instance at a time.
class TerminationSignals final : public QObject
{
    Q_OBJECT
public:
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void asked();

private:
    std::array<int, 2> m_pipe{-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace navorin
