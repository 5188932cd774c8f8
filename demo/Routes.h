#pragma once

#include "Reply.h"

#include <httplib.h>

#include <functional>

namespace navorin::demo {

/// Which handler answers which path. A path that ends in "/" takes everything below it, and the handler gets
/// the rest of it, percent-decoded. A handler may throw a Refusal.
class Routes
{
public:
    using Handler = std::function<Reply(const httplib::Request &request, const std::string &rest)>;

    /// `method` is upper case; GET answers HEAD too.
    void add(std::string method, std::string path, Handler handler);
    [[nodiscard]] Reply answer(const httplib::Request &request) const;

private:
    struct Route
    {
        std::string method;
        std::string path;
        Handler handler;
    };

    [[nodiscard]] static Reply called(const Route &route, const httplib::Request &request);

    std::vector<Route> m_routes;
};

} // namespace navorin::demo
