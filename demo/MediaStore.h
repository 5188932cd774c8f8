#pragma once

#include "Encoder.h"

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>

namespace navorin::demo {

enum class FileFormat { Mp3, Ogg, Mp4, Wav };

[[nodiscard]] const char *contentType(FileFormat format);
[[nodiscard]] const char *contentType(Codec codec);

/// Something that can be encoded.
struct Sound
{
    std::string name; ///< unique; also the name of its cache file
    std::function<SampleSource()> play;
    bool keepsOnDisk = true;

    static Sound piece(int index);
    static Sound tone(int hertz);
};

/// All encoded sound: made on first demand, kept in memory and on disk. Any thread.
class MediaStore
{
public:
    /// `folder` is made if need be; an unusable one only means that nothing outlives the process.
    explicit MediaStore(QString folder);
    ~MediaStore();
    MediaStore(const MediaStore &) = delete;
    MediaStore &operator=(const MediaStore &) = delete;

    /// At once; frames that are not there yet follow much faster than they play.
    [[nodiscard]] std::shared_ptr<const FrameList> frames(const Sound &sound, Codec codec);
    /// Waits for the whole; empty on failure.
    [[nodiscard]] QByteArray file(const Sound &sound, FileFormat format);
    /// Ends encoding that is under way, so that nobody waits for it.
    void cancel();

private:
    struct WholeFile
    {
        std::once_flag once;
        QByteArray bytes;
    };

    [[nodiscard]] QByteArray makeFile(const Sound &sound, FileFormat format);
    void encodeAndKeep(const Sound &sound, Codec codec, const std::shared_ptr<FrameList> &frames);
    [[nodiscard]] QString pathOf(const Sound &sound, const char *suffix) const;

    QString m_folder;
    std::atomic<bool> m_cancelled = false;
    std::mutex m_mutex;
    std::map<std::string, std::shared_ptr<FrameList>> m_frames;
    std::map<std::string, std::shared_ptr<WholeFile>> m_files;
    std::vector<std::thread> m_workers;
};

} // namespace navorin::demo
