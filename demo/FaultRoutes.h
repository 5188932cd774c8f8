#pragma once

namespace navorin::demo {

class Faults;
class Routes;

/// Faults switched at run time: POST /demo/fault with `{"fault": "/stream/persian=cut:20000", "times": 1}`
/// (`times` is optional), DELETE /demo/fault?prefix=/stream/persian (without a prefix: all), GET lists them.
void addFaultRoutes(Routes &routes, Faults &faults);

} // namespace navorin::demo
