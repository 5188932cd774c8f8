#include "FaultRoutes.h"

#include "Faults.h"
#include "Routes.h"

#include <nlohmann/json.hpp>

namespace navorin::demo {

using Json = nlohmann::ordered_json;

namespace {

Reply listFaults(const Faults &faults)
{
    Json list = Json::array();
    for (const Fault &fault : faults.list())
        list.push_back({{"fault", fault.toString()}, {"times", fault.times}});
    return Reply::json(Json{{"code", 200}, {"message", "ok"}, {"data", list}}.dump());
}

Reply addFault(Faults &faults, const std::string &body)
{
    const Json json = Json::parse(body, nullptr, false);
    const bool readable = json.is_object() && json.contains("fault") && json["fault"].is_string();
    auto fault = readable ? Fault::parse(json["fault"].get<std::string>()) : std::nullopt;
    if (!fault)
        return Reply::error(400, R"(expected {"fault": "PATHPREFIX=KIND[:ARG]", "times": N})");
    if (json.contains("times") && json["times"].is_number_integer())
        fault->times = json["times"].get<int>();
    faults.add(*fault);
    return listFaults(faults);
}

} // namespace

void addFaultRoutes(Routes &routes, Faults &faults)
{
    routes.add("GET", "/demo/fault", [&faults](const auto &, const auto &) { return listFaults(faults); });
    routes.add("POST", "/demo/fault", [&faults](const httplib::Request &request, const auto &) {
        return addFault(faults, request.body);
    });
    routes.add("DELETE", "/demo/fault", [&faults](const httplib::Request &request, const auto &) {
        faults.remove(request.get_param_value("prefix"));
        return listFaults(faults);
    });
}

} // namespace navorin::demo
