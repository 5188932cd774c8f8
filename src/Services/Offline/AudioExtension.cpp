#include "Services/Offline/AudioExtension.h"

namespace navorin {

using namespace Qt::Literals::StringLiterals;

QString sniffAudioExtension(QByteArrayView data)
{
    constexpr qsizetype leastLength = 13;
    if (data.size() < leastLength)
        return u"mp3"_s;
    if (data.startsWith("RIFF"))
        return u"wav"_s;
    // An ID3 tag goes before an "ftyp" that its size may happen to spell.
    if (data.startsWith("ID3"))
        return u"mp3"_s;
    return data.sliced(4).startsWith("ftyp") ? u"m4a"_s : u"mp3"_s;
}

} // namespace navorin
