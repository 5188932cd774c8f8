#include "Views/Shared/SymbolTable.h"

#include <QHash>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString symbolFile(const QString &name)
{
    static const QHash<QString, QString> files{
        {u"arrow.counterclockwise"_s, u"replay"_s},
        {u"dot.radiowaves.left.and.right"_s, u"sensors"_s},
        {u"music.note.list"_s, u"queue_music"_s},
        {u"pause.fill"_s, u"pause-fill"_s},
        {u"play.fill"_s, u"play_arrow-fill"_s},
        {u"spinner"_s, u"spinner"_s},
        {u"wifi.exclamationmark"_s, u"wifi_tethering_error"_s},
    };
    const auto file = files.value(name);
    return file.isEmpty() ? QString() : QString(u":/navorin/icons/"_s + file + u".svg"_s);
}

} // namespace navorin
