#pragma once

#include "Reply.h"

#include <map>
#include <mutex>

namespace navorin::demo {

/// The covers, drawn at their first request and kept. Any thread.
class ArtworkStore
{
public:
    /// `file` is a name and ".jpg" or ".png"; `programme` varies a live station's cover. Any name has a
    /// cover.
    [[nodiscard]] Reply picture(const std::string &file, const std::string &programme);

private:
    struct Picture
    {
        std::once_flag drawn;
        QByteArray bytes;
    };

    std::mutex m_mutex;
    std::map<std::string, std::shared_ptr<Picture>> m_pictures;
};

} // namespace navorin::demo
