#pragma once

#include "Platform/Http/HttpSession.h"

#include <QThread>

#include <mutex>

namespace navorin {

/// The real session, over Qt's network access on a thread of its own. Redirects are followed, never to
/// something less safe. Nothing is sent twice behind the caller's back that may not be, and no cookie is
/// kept.
///
/// Destroying it closes it. No thread may be inside `send` or `stream` then.
class QtHttpSession final : public HttpSession
{
public:
    explicit QtHttpSession(HttpSessionConfiguration configuration = {});
    ~QtHttpSession() override;

    [[nodiscard]] QFuture<HttpResponse> send(HttpRequest request) override;
    [[nodiscard]] QFuture<void> stream(HttpRequest request, std::shared_ptr<HttpByteSink> sink,
                                       std::stop_token stop) override;

    /// Ends what is under way: those futures, and all later ones, fail with TransportError::Kind::Cancelled.
    /// Any thread but the session's own.
    void close();

private:
    class Worker;
    struct Parcel;

    void post(Parcel parcel);

    QThread m_thread;
    std::mutex m_mutex; ///< guards m_worker
    Worker *m_worker;   ///< lives on m_thread, deleted as it ends; null once the session is closed
};

} // namespace navorin
