#include "Views/Shared/SymbolTable.h"

#include <QHash>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString symbolFile(const QString &name)
{
    static const QHash<QString, QString> files{
        {u"arrow.counterclockwise"_s, u"replay"_s},
        {u"arrow.down.circle"_s, u"arrow_circle_down"_s},
        {u"arrow.down.circle.fill"_s, u"arrow_circle_down-fill"_s},
        {u"arrow.left"_s, u"arrow_back"_s},
        {u"arrow.right.circle.fill"_s, u"arrow_circle_right-fill"_s},
        {u"arrow.up.forward.app"_s, u"open_in_new"_s},
        {u"backward.fill"_s, u"skip_previous-fill"_s},
        {u"checkmark"_s, u"check"_s},
        {u"checkmark.circle.fill"_s, u"check_circle-fill"_s},
        {u"checkmark.shield"_s, u"verified_user"_s},
        {u"chevron.down"_s, u"keyboard_arrow_down"_s},
        {u"chevron.right"_s, u"arrow_forward"_s},
        {u"doc.on.doc"_s, u"content_copy"_s},
        {u"dot.radiowaves.left.and.right"_s, u"sensors"_s},
        {u"ellipsis"_s, u"more_horiz"_s},
        {u"ellipsis.circle"_s, u"more_horiz"_s},
        {u"exclamationmark.triangle.fill"_s, u"warning-fill"_s},
        {u"film"_s, u"movie"_s},
        {u"folder"_s, u"folder_open"_s},
        {u"forward.fill"_s, u"skip_next-fill"_s},
        {u"gobackward.10"_s, u"replay_10"_s},
        {u"goforward.10"_s, u"forward_10"_s},
        {u"heart"_s, u"favorite"_s},
        {u"heart.fill"_s, u"favorite-fill"_s},
        {u"lock"_s, u"lock"_s},
        {u"lock.open.fill"_s, u"lock_open-fill"_s},
        {u"lock.rotation"_s, u"lock_reset"_s},
        {u"magnifyingglass"_s, u"search"_s},
        {u"mic.fill"_s, u"mic-fill"_s},
        {u"music.note"_s, u"music_note"_s},
        {u"music.note.list"_s, u"queue_music"_s},
        {u"paperplane.fill"_s, u"send-fill"_s},
        {u"pause.fill"_s, u"pause-fill"_s},
        {u"pencil"_s, u"edit"_s},
        {u"person"_s, u"person"_s},
        {u"person.crop.circle"_s, u"account_circle"_s},
        {u"person.crop.circle.badge.plus"_s, u"person_add"_s},
        {u"person.crop.circle.fill"_s, u"account_circle-fill"_s},
        {u"person.text"_s, u"badge"_s},
        {u"play.circle"_s, u"play_circle"_s},
        {u"play.fill"_s, u"play_arrow-fill"_s},
        {u"plus"_s, u"add"_s},
        {u"plus.circle.fill"_s, u"add_circle-fill"_s},
        {u"rectangle.portrait.and.arrow.right"_s, u"logout"_s},
        {u"slider.horizontal.3"_s, u"tune"_s},
        {u"sparkles"_s, u"sparkles"_s},
        {u"speaker.fill"_s, u"volume_mute-fill"_s},
        {u"speaker.wave.3.fill"_s, u"volume_up-fill"_s},
        {u"spinner"_s, u"spinner"_s},
        {u"square.and.arrow.down"_s, u"download"_s},
        {u"square.and.arrow.up"_s, u"ios_share"_s},
        {u"text.quote"_s, u"lyrics"_s},
        {u"trash"_s, u"delete"_s},
        {u"wifi.exclamationmark"_s, u"wifi_tethering_error"_s},
        {u"xmark"_s, u"close"_s},
        {u"xmark.circle.fill"_s, u"cancel-fill"_s},
    };
    const auto file = files.value(name);
    return file.isEmpty() ? QString() : QString(u":/navorin/icons/"_s + file + u".svg"_s);
}

} // namespace navorin
