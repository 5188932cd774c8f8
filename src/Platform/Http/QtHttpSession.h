#pragma once

#include "Platform/Http/HttpSession.h"

#include <QThread>

#include <memory>

namespace navorin {

/// The real session, over Qt's network access on a thread of its own. Redirects are followed, never to
/// something less safe. Nothing is sent twice behind the caller's back that may not be, and no cookie is
/// kept.
///
/// Destroying it ends what is under way: those futures fail with TransportError::Kind::Cancelled. No thread
/// may be inside `send` then.
class QtHttpSession final : public HttpSession
{
public:
    explicit QtHttpSession(HttpSessionConfiguration configuration = {});
    ~QtHttpSession() override;

    [[nodiscard]] QFuture<HttpResponse> send(HttpRequest request) override;

private:
    class Worker;

    QThread m_thread;
    Worker *m_worker; ///< lives on m_thread, deleted as it ends
};

} // namespace navorin
