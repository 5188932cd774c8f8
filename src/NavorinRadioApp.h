#pragma once

#include "LaunchOptions.h"

#include <QQmlApplicationEngine>
#include <QUrl>

#include <memory>

namespace navorin {

class DesktopApplication;
class UserDefaults;

/// The composition root: makes the platform's pieces, tells each service how it is made, opens the window and
/// hands over what comes from outside. The only place that knows every part.
class NavorinRadioApp
{
public:
    /// The whole program; returns its exit code.
    static int run(int argc, char *argv[]);

    NavorinRadioApp(const NavorinRadioApp &) = delete;
    NavorinRadioApp &operator=(const NavorinRadioApp &) = delete;

private:
    struct Platform;

    NavorinRadioApp(const QUrl &baseUrl, const LaunchOptions &options);
    ~NavorinRadioApp();

    void installServices(const QUrl &baseUrl);
    [[nodiscard]] bool showWindow();
    void sceneBecameActive();
    void listenTo(DesktopApplication &application);
    void comeForward();
    void open(const QString &address);
    void runAction(const QString &name);
    void raiseWindow();
    [[nodiscard]] UserDefaults *sharedSuite();

    LaunchOptions m_options;
    std::unique_ptr<Platform> m_platform;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
};

} // namespace navorin
