#pragma once

#include "Platform/Http/HttpSession.h"
#include "Services/Backend/APIError.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <utility>

/// How a request to the backend is built and how its answer is judged: pure functions, for any thread.
namespace navorin {

enum class HttpVerb { Get, Post, Put, Delete };

using QueryItems = QList<std::pair<QString, QString>>;

/// https anywhere, http to this machine only.
[[nodiscard]] bool isUsableBase(const QUrl &url);

/// `path` behind the path of `base` with exactly one slash between, its characters taken literally.
[[nodiscard]] QUrl withPath(const QUrl &base, const QString &path);

/// A request that leaves the time-out to the session.
[[nodiscard]] HttpRequest catalogueRequest(const QUrl &base, const QString &path);
[[nodiscard]] HttpRequest getRequest(const QUrl &base, const QString &path, const QueryItems &query,
                                     const std::optional<QString> &token);
[[nodiscard]] HttpRequest bodyRequest(const QUrl &base, HttpVerb verb, const QString &path,
                                      const QJsonObject &body, const std::optional<QString> &token);
[[nodiscard]] HttpRequest deleteRequest(const QUrl &base, const QString &path,
                                        const std::optional<QString> &token);

/// The body of a success. Otherwise throws: APIError with the status from a GET, whatever the body says; from
/// the other verbs ServerError if the body brings a message. An answer that is not HTTP counts as status -1,
/// and POST does not look into its body.
[[nodiscard]] QByteArray judged(HttpVerb verb, const HttpResponse &response);

/// What a bad status means whose body may bring the server's own words, in an `Answer` of that call.
template <typename Answer>
[[nodiscard]] std::exception_ptr refusal(const HttpResponse &response)
{
    const auto status = response.status.value_or(-1);
    try {
        if (auto message = json::decode<Answer>(response.body).message)
            return std::make_exception_ptr(ServerError(*std::move(message), status));
    } catch (const DecodingError &) {
        // an error page of a proxy, say: the status speaks for itself
    }
    return std::make_exception_ptr(APIError::http(status));
}

} // namespace navorin
