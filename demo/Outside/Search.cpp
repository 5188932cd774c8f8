#include "Search.h"

#include "Catalogue.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <set>

namespace navorin::demo {

using namespace Qt::Literals::StringLiterals;

namespace {

QString normalized(std::string_view text)
{
    QString form = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toCaseFolded();
    form.replace(QChar(0x064A), QChar(0x06CC)); // ye
    form.replace(QChar(0x0643), QChar(0x06A9)); // kaf
    form.remove(QChar(0x200C));
    return form.simplified();
}

bool holdsAll(const QString &text, const QStringList &words)
{
    return std::all_of(words.begin(), words.end(), [&](const QString &word) { return text.contains(word); });
}

} // namespace

std::vector<Found> findSongs(const Catalogue &catalogue, std::string_view query, std::size_t limit)
{
    const QStringList words = normalized(query).split(u' ', Qt::SkipEmptyParts);
    std::vector<Found> found;
    if (words.isEmpty())
        return found;
    std::set<std::string_view> titles;
    for (const Station &station : catalogue.stations()) {
        if (station.kind == StationKind::Live)
            continue;
        for (std::size_t i = 0; i < station.songs.size() && found.size() < limit; ++i) {
            const Song &song = station.songs[i];
            const std::string both = std::string(song.title) + ' ' + std::string(song.artist);
            if (holdsAll(normalized(both), words) && titles.insert(song.title).second)
                found.push_back({&station, i});
        }
    }
    return found;
}

} // namespace navorin::demo
