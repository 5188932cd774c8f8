#include "Views/Shared/SymbolTable.h"

#include <QHash>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString symbolFile(const QString &name)
{
    static const QHash<QString, QString> files{
        {u"arrow.counterclockwise"_s, u"replay"_s},
        {u"checkmark"_s, u"check"_s},
        {u"checkmark.circle.fill"_s, u"check_circle-fill"_s},
        {u"checkmark.shield"_s, u"verified_user"_s},
        {u"chevron.right"_s, u"arrow_forward"_s},
        {u"dot.radiowaves.left.and.right"_s, u"sensors"_s},
        {u"exclamationmark.triangle.fill"_s, u"warning-fill"_s},
        {u"heart.fill"_s, u"favorite-fill"_s},
        {u"lock"_s, u"lock"_s},
        {u"lock.open.fill"_s, u"lock_open-fill"_s},
        {u"lock.rotation"_s, u"lock_reset"_s},
        {u"music.note.list"_s, u"queue_music"_s},
        {u"paperplane.fill"_s, u"send-fill"_s},
        {u"pause.fill"_s, u"pause-fill"_s},
        {u"person"_s, u"person"_s},
        {u"person.crop.circle"_s, u"account_circle"_s},
        {u"person.crop.circle.fill"_s, u"account_circle-fill"_s},
        {u"person.text"_s, u"badge"_s},
        {u"play.fill"_s, u"play_arrow-fill"_s},
        {u"rectangle.portrait.and.arrow.right"_s, u"logout"_s},
        {u"sparkles"_s, u"sparkles"_s},
        {u"spinner"_s, u"spinner"_s},
        {u"wifi.exclamationmark"_s, u"wifi_tethering_error"_s},
    };
    const auto file = files.value(name);
    return file.isEmpty() ? QString() : QString(u":/navorin/icons/"_s + file + u".svg"_s);
}

} // namespace navorin
