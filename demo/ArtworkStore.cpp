#include "ArtworkStore.h"

#include "Artwork.h"

#include <QBuffer>
#include <QImage>

namespace navorin::demo {

namespace {

constexpr std::size_t picturesKept = 600;
constexpr std::size_t longestName = 200;
constexpr int jpegQuality = 92;

QByteArray encode(const QImage &image, bool png)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, png ? "PNG" : "JPG", png ? -1 : jpegQuality);
    return bytes;
}

} // namespace

Reply ArtworkStore::picture(const std::string &file, const std::string &programme)
{
    const bool png = file.ends_with(".png");
    if ((!png && !file.ends_with(".jpg")) || file.size() > longestName || programme.size() > longestName)
        return Reply::error(404, "پیدا نشد");
    const std::string name = file.substr(0, file.size() - 4);
    std::shared_ptr<Picture> picture;
    {
        const std::lock_guard lock(m_mutex);
        if (m_pictures.size() > picturesKept)
            m_pictures.clear();
        auto &slot = m_pictures[file + "?" + programme];
        if (!slot)
            slot = std::make_shared<Picture>();
        picture = slot;
    }
    std::call_once(picture->drawn, [&] { picture->bytes = encode(drawArtwork(name, programme), png); });
    Reply reply;
    reply.contentType = png ? "image/png" : "image/jpeg";
    reply.body = picture->bytes;
    return reply;
}

} // namespace navorin::demo
