#pragma once

#include "Platform/Http/HttpSession.h"
#include "Services/SharedInstance.h"

#include <QFuture>
#include <QImage>
#include <QPromise>
#include <QSize>
#include <QUrl>

#include <array>
#include <condition_variable>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace navorin {

/// Fetches pictures and prepares them at the size they are shown, a few at once, on threads of its own. It
/// keeps nothing: what may be kept is the disk cache's business. Usable from any thread.
class ArtworkLoader
{
public:
    static ArtworkLoader &shared();
    /// Ends what is under way; those futures are cancelled.
    ~ArtworkLoader();

    /// For the session that fetches pictures: its answers are kept on disk, in the user's cache folder, as
    /// long as their headers allow and up to a total.
    [[nodiscard]] static HttpSessionConfiguration sessionConfiguration();

    /// The picture at `address` (http, https or file), cut to fill `pixels` and its corners rounded by
    /// `radius` pixels. A null picture if there is none to show, for whatever reason. Equal requests under
    /// way share their work, and what nobody waits for any more is given up.
    [[nodiscard]] QFuture<QImage> load(const QUrl &address, QSize pixels, qreal radius);

private:
    friend class NavorinRadioApp;
    friend struct TestAccess;

    explicit ArtworkLoader(HttpSession &session);
    static SharedInstance<ArtworkLoader> &instance();

    struct Order
    {
        QUrl address;
        QSize pixels;
        qreal radius = 0;

        bool operator==(const Order &) const = default;
    };
    struct Job
    {
        Order order;
        std::vector<QPromise<QImage>> waiting;
        bool isRunning = false;
        std::optional<QFuture<HttpResponse>> exchange;

        [[nodiscard]] bool isWanted() const;
        [[nodiscard]] bool isAbandoned() const;
    };
    using Jobs = std::list<Job>;

    void work();
    std::optional<Jobs::iterator> nextJob();
    [[nodiscard]] QByteArray fetched(Job &job);
    void abandonUnwanted();
    bool dropUnwanted(Jobs::iterator job);
    void deliver(Jobs::iterator job, const QImage &picture);

    HttpSession &m_session;
    std::mutex m_mutex; ///< guards all below but the threads
    std::condition_variable m_wake;
    Jobs m_jobs;
    bool m_isEnding = false;
    std::array<std::thread, 4> m_threads;
};

} // namespace navorin
