#pragma once

#include "Faults.h"

#include <QString>

#include <cstdint>
#include <utility>

namespace navorin::demo {

/// The command line.
struct Options
{
    std::string address = "127.0.0.1";
    int port = 0;
    bool logs = false;
    bool watchesParent = false;
    QString cacheFolder;
    double timeScale = 1;
    int stations = 0;
    int archiveTracks = 60;
    QString databaseFile; ///< empty for the default
    std::int64_t tokenSeconds = std::int64_t{30} * 24 * 3600;
    std::int64_t codeSeconds = 300;
    std::optional<std::pair<std::string, std::string>> demoUser; ///< user name and password
    std::vector<Fault> faults;

    /// Absent, with a message on standard error, when it makes no sense. "--help" prints and exits.
    static std::optional<Options> parse(const QStringList &arguments);
};

} // namespace navorin::demo
