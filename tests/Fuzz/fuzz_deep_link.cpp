#include "Fuzz.h"
#include "LaunchOptions.h"
#include "Services/Backend/RequestRules.h"

#include <QStringList>
#include <QUrl>

using namespace navorin;

/// Lines of a command line, the way a browser or another program may fill it.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const FuzzInput input(data, size);
    const auto arguments = QString::fromUtf8(input.rest()).split(u'\n');
    const auto options = LaunchOptions::parse(arguments);
    if (asksForRecognition(options.address))
        require(options.address.startsWith(QLatin1String("navorin://")), "only our own scheme is taken");
    if (const auto backend = backendAddress(arguments.first(), arguments.last()))
        require(isUsableBase(*backend), "a backend is reached safely or not at all");
    return 0;
}
