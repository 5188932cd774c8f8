#pragma once

#include "Platform/Http/HttpSession.h"

#include <QNetworkReply>

#include <optional>

/// The decisions of the real session, apart from its traffic: pure functions.
namespace navorin {

/// What kind of failure Qt's error is; absent for one that only repeats an HTTP status, which is an answer.
[[nodiscard]] std::optional<TransportError::Kind> transportFailure(QNetworkReply::NetworkError error);

/// The server promised more than came. Qt passes that as a success if the last data and the end of the
/// connection arrive together.
[[nodiscard]] bool isCutShort(const QByteArray &promisedLength, const HttpRequest &request,
                              const HttpResponse &response);

struct Redirection
{
    enum class Verdict { None, Follow, Insecure };
    Verdict verdict = Verdict::None;
    HttpRequest request; ///< what to send next, if `verdict` is Follow
};

/// Where an answer sends its request: 301 and 302 turn POST into GET, 303 everything, 307 and 308 nothing.
/// From https only https is followed, and a header of authorisation does not leave the server it was meant
/// for.
[[nodiscard]] Redirection redirection(const HttpRequest &request, int status, const QByteArray &location);

} // namespace navorin
