#include "Services/Offline/OfflineTrackEntry.h"

#include <QUuid>

#include <array>
#include <charconv>
#include <concepts>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

using json::optional;
using json::required;

constexpr std::array entryFields{
    required<&OfflineTrackEntry::key>("key"),
    optional<&OfflineTrackEntry::trackType>("trackType"),
    optional<&OfflineTrackEntry::trackID>("trackID"),
    required<&OfflineTrackEntry::title>("title"),
    required<&OfflineTrackEntry::artist>("artist"),
    optional<&OfflineTrackEntry::artworkRemoteURL>("artworkRemoteURL"),
    optional<&OfflineTrackEntry::artworkFileName>("artworkFileName"),
    required<&OfflineTrackEntry::audioFileName>("audioFileName"),
    optional<&OfflineTrackEntry::duration>("duration"),
    required<&OfflineTrackEntry::sizeBytes>("sizeBytes"),
    required<&OfflineTrackEntry::downloadedAt>("downloadedAt"),
};

void append(QByteArray &json, const QString &text)
{
    constexpr auto hex = "0123456789abcdef";
    json += '"';
    for (const char c : text.toUtf8()) {
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (uchar(c) < 0x20) {
            json += "\\u00";
            json += hex[c >> 4];
            json += hex[c & 0xf];
        } else {
            json += c;
        }
    }
    json += '"';
}

void append(QByteArray &json, qint64 number)
{
    json += QByteArray::number(number);
}

/// The shortest digits that read back as the same number.
void append(QByteArray &json, double number)
{
    std::array<char, 512> digits; // the least double has 324 places
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed).ptr;
    json.append(digits.data(), end - digits.data());
}

template <typename T>
void appendField(QByteArray &json, QByteArrayView key, const T &value)
{
    json += json.endsWith('{') ? "\"" : ",\"";
    json += key;
    json += "\":";
    append(json, value);
}

template <typename T>
void appendField(QByteArray &json, QByteArrayView key, const std::optional<T> &value)
{
    if (value)
        appendField(json, key, *value);
}

void append(QByteArray &json, const OfflineTrackEntry &entry)
{
    json += '{';
    appendField(json, "key", entry.key);
    appendField(json, "trackType", entry.trackType);
    appendField(json, "trackID", entry.trackID);
    appendField(json, "title", entry.title);
    appendField(json, "artist", entry.artist);
    appendField(json, "artworkRemoteURL", entry.artworkRemoteURL);
    appendField(json, "artworkFileName", entry.artworkFileName);
    appendField(json, "audioFileName", entry.audioFileName);
    appendField(json, "duration", entry.duration);
    appendField(json, "sizeBytes", entry.sizeBytes);
    appendField(json, "downloadedAt", entry.downloadedAt);
    json += '}';
}

QString identifier(const PlaylistTrack &track)
{
    if (track.trackID)
        return *track.trackID;
    if (track.id)
        return QString::number(*track.id);
    return track.title ? *track.title : QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace

size_t qHash(const OfflineTrackEntry &entry, size_t seed) noexcept
{
    return qHashMulti(seed, entry.key, entry.trackType.value_or(QString()), entry.trackID.value_or(QString()),
                      entry.title, entry.artist, entry.artworkRemoteURL.value_or(QString()),
                      entry.artworkFileName.value_or(QString()), entry.audioFileName,
                      entry.duration.value_or(-1), entry.sizeBytes, entry.downloadedAt);
}

void read(json::Value &value, OfflineTrackEntry &entry)
{
    json::readObject<OfflineTrackEntry>(value, entry, entryFields);
}

QByteArray encodedIndex(const QList<OfflineTrackEntry> &entries)
{
    constexpr qsizetype usualLength = 400;
    QByteArray json;
    json.reserve(entries.size() * usualLength + 2);
    json += '[';
    for (const auto &entry : entries) {
        if (!json.endsWith('['))
            json += ',';
        append(json, entry);
    }
    json += ']';
    return json;
}

QString offlineKey(const PlaylistTrack &track)
{
    return track.trackType.value_or(u"track"_s) + u'|' + identifier(track);
}

} // namespace navorin
