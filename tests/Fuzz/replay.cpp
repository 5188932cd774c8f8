#include "Fuzz.h"

#include <QDir>
#include <QFile>

/// Runs a target over the files of a folder: what the fuzzer once found interesting stays looked at.
int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER\n", argv[0]);
        return 64;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const auto names = folder.entryList(QDir::Files);
    for (const auto &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return 66;
        const auto bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                               std::size_t(bytes.size()));
    }
    std::printf("%d inputs\n", int(names.size()));
    return names.isEmpty() ? 1 : 0;
}
