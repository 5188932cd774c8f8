#include "Routes.h"

#include "Accounts/Refusal.h"

namespace navorin::demo {

void Routes::add(std::string method, std::string path, Handler handler)
{
    m_routes.push_back({std::move(method), std::move(path), std::move(handler)});
}

Reply Routes::called(const Route &route, const httplib::Request &request)
{
    try {
        return route.handler(request, request.path.substr(route.path.size()));
    } catch (const Refusal &refusal) {
        return Reply::error(refusal.status(), refusal.what());
    }
}

Reply Routes::answer(const httplib::Request &request) const
{
    const std::string &method = request.method == "HEAD" ? std::string("GET") : request.method;
    bool otherMethod = false;
    for (const Route &route : m_routes) {
        const bool whole = route.path.back() != '/';
        const bool matches =
            whole ? request.path == route.path
                  : request.path.starts_with(route.path) && request.path.size() > route.path.size();
        if (matches && route.method == method)
            return called(route, request);
        otherMethod = otherMethod || matches;
    }
    return otherMethod ? Reply::error(405, "این روش مجاز نیست") : Reply::error(404, "پیدا نشد");
}

} // namespace navorin::demo
