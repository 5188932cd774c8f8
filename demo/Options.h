#pragma once

#include "Faults.h"

#include <QString>

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
    std::vector<Fault> faults;

    /// Absent, with a message on standard error, when it makes no sense. "--help" prints and exits.
    static std::optional<Options> parse(const QStringList &arguments);
};

} // namespace navorin::demo
