#pragma once

#include "Support/ServicesRig.h"
#include "Views/ViewSetup.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace navorin {

/// The services, telling what a screen asked the server.
class ScreenRig : public ServicesRig
{
public:
    [[nodiscard]] ViewSurroundings surroundings() { return {queue, desktop.urlOpener}; }
    /// Answers the oldest request and tells what it was: "PUT /api/playlists/7 {…}".
    QString answer(const QByteArray &body, int status = 200)
    {
        if (http.exchanges.empty())
            return QStringLiteral("nothing was asked");
        const auto &request = http.exchanges.front().request;
        auto sent = QString(QString::fromLatin1(request.method) + u' ' + request.url.path());
        if (request.url.hasQuery())
            sent += u'?' + request.url.query(QUrl::PrettyDecoded);
        if (!request.body.isEmpty())
            sent += u' ' +
                    QString::fromUtf8(QJsonDocument::fromJson(request.body).toJson(QJsonDocument::Compact));
        ServicesRig::answer(body, status);
        return sent;
    }
    /// What the engine was told to load, if anything; its full player is asked for.
    QString played()
    {
        settle();
        return engine.item && player->isFullPlayerPresented() ? engine.item->url.toString() : QString();
    }
};

} // namespace navorin
