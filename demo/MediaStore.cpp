#include "MediaStore.h"

#include "OggPages.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace navorin::demo {

using namespace Qt::Literals::StringLiterals;

namespace {

// raise it when pieces or encoder settings change, so that old files are left alone
constexpr int cacheVersion = 2;
constexpr double toneSeconds = 60;

const char *suffixOf(Codec codec)
{
    switch (codec) {
    case Codec::Mp3:
        return "mp3frames";
    case Codec::Aac:
        return "aacframes";
    case Codec::Vorbis:
        return "vorbisframes";
    }
    return "";
}

QByteArray joined(const std::vector<Frame> &frames)
{
    QByteArray bytes;
    for (const Frame &frame : frames)
        bytes += frame.bytes;
    return bytes;
}

void save(const QString &path, const std::function<void(QDataStream &)> &write)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QDataStream stream(&file);
    write(stream);
    file.commit();
}

bool loadFrames(const QString &path, FrameList &frames)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QDataStream stream(&file);
    QList<QByteArray> headers;
    QList<QByteArray> bytes;
    QList<qint32> samples;
    stream >> headers >> bytes >> samples;
    if (stream.status() != QDataStream::Ok || bytes.isEmpty() || bytes.size() != samples.size())
        return false;
    frames.setHeaders({headers.begin(), headers.end()});
    for (qsizetype i = 0; i < bytes.size(); ++i)
        frames.append({bytes[i], samples[i]});
    frames.finish();
    return true;
}

void saveFrames(const QString &path, const FrameList &list)
{
    const auto frames = list.all();
    if (!frames)
        return;
    save(path, [&](QDataStream &stream) {
        const std::vector<QByteArray> headers = list.headers();
        QList<QByteArray> bytes;
        QList<qint32> samples;
        for (const Frame &frame : *frames) {
            bytes.append(frame.bytes);
            samples.append(frame.samples);
        }
        stream << QList<QByteArray>(headers.begin(), headers.end()) << bytes << samples;
    });
}

} // namespace

const char *contentType(FileFormat format)
{
    switch (format) {
    case FileFormat::Mp3:
        return "audio/mpeg";
    case FileFormat::Ogg:
        return "audio/ogg";
    case FileFormat::Mp4:
        return "audio/mp4";
    case FileFormat::Wav:
        return "audio/wav";
    }
    return "";
}

const char *contentType(Codec codec)
{
    switch (codec) {
    case Codec::Mp3:
        return "audio/mpeg";
    case Codec::Aac:
        return "audio/aac";
    case Codec::Vorbis:
        return "audio/ogg";
    }
    return "";
}

Sound Sound::piece(int index)
{
    return {"piece-" + std::to_string(index), [index] { return playScore(composePiece(index)); }, true};
}

Sound Sound::tone(int hertz)
{
    return {"tone-" + std::to_string(hertz), [hertz] { return playTone(hertz, toneSeconds); }, false};
}

MediaStore::MediaStore(QString folder)
    : m_folder(std::move(folder))
{
    QDir().mkpath(m_folder);
}

MediaStore::~MediaStore()
{
    cancel();
    for (std::thread &worker : m_workers)
        worker.join();
}

void MediaStore::cancel()
{
    m_cancelled = true;
}

QString MediaStore::pathOf(const Sound &sound, const char *suffix) const
{
    return m_folder + u'/' + QString::fromStdString(sound.name) + u"-v"_s + QString::number(cacheVersion) +
           u'.' + QLatin1StringView(suffix);
}

std::shared_ptr<const FrameList> MediaStore::frames(const Sound &sound, Codec codec)
{
    const std::lock_guard lock(m_mutex);
    std::shared_ptr<FrameList> &frames = m_frames[sound.name + "." + suffixOf(codec)];
    if (frames)
        return frames;
    frames = std::make_shared<FrameList>();
    if (m_cancelled)
        frames->finish(true);
    else if (!sound.keepsOnDisk || !loadFrames(pathOf(sound, suffixOf(codec)), *frames))
        m_workers.emplace_back(&MediaStore::encodeAndKeep, this, sound, codec, frames);
    return frames;
}

void MediaStore::encodeAndKeep(const Sound &sound, Codec codec, const std::shared_ptr<FrameList> &frames)
{
    encodeFrames(sound.play(), codec, *frames, m_cancelled);
    if (sound.keepsOnDisk)
        saveFrames(pathOf(sound, suffixOf(codec)), *frames);
}

QByteArray MediaStore::file(const Sound &sound, FileFormat format)
{
    std::shared_ptr<WholeFile> file;
    {
        const std::lock_guard lock(m_mutex);
        auto &slot = m_files[sound.name + "/" + contentType(format)];
        if (!slot)
            slot = std::make_shared<WholeFile>();
        file = slot;
    }
    std::call_once(file->once, [&] { file->bytes = makeFile(sound, format); });
    return file->bytes;
}

QByteArray MediaStore::makeFile(const Sound &sound, FileFormat format)
{
    if (format == FileFormat::Mp3) {
        const auto all = frames(sound, Codec::Mp3)->all();
        return all ? joined(*all) : QByteArray();
    }
    if (format == FileFormat::Ogg) {
        const auto list = frames(sound, Codec::Vorbis);
        const auto all = list->all();
        return all ? oggFile(list->headers(), *all) : QByteArray();
    }
    if (format == FileFormat::Wav)
        return encodeWav(sound.play());
    const QString path = pathOf(sound, "m4a");
    QFile kept(path);
    if (sound.keepsOnDisk && kept.open(QIODevice::ReadOnly) && kept.size() > 0)
        return kept.readAll();
    QByteArray bytes = encodeMp4(sound.play(), m_cancelled);
    if (sound.keepsOnDisk && !bytes.isEmpty()) {
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
            file.commit();
    }
    return bytes;
}

} // namespace navorin::demo
