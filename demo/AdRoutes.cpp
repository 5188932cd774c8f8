#include "AdRoutes.h"

#include "Routes.h"

namespace navorin::demo {

namespace {

constexpr auto loader = R"JS((function () {
  function fill() {
    var place = document.getElementById('mediaad-DABn6');
    var link = document.createElement('a');
    link.href = '/demo/ad';
    link.target = '_blank';
    link.dir = 'rtl';
    link.style.cssText = 'display:flex;align-items:center;justify-content:center;height:100vh;' +
        'text-decoration:none;font:600 17px Vazirmatn,sans-serif;color:#fff;' +
        'background:linear-gradient(120deg,#20304f,#4a2c5e 60%,#7b3f52)';
    link.textContent = 'این‌جا یک آگهی نمایشی است';
    place.appendChild(link);
  }
  if (document.readyState === 'loading')
    document.addEventListener('DOMContentLoaded', fill);
  else
    fill();
})();
)JS";

constexpr auto advertisedPage = R"HTML(<!DOCTYPE html>
<html lang="fa" dir="rtl"><meta charset="utf-8"><title>آگهی نمایشی</title>
<body style="font-family:sans-serif;margin:3em">این صفحه‌ی آگهی نمایشی است.</body></html>
)HTML";

Reply textReply(const char *text, const char *contentType)
{
    Reply reply;
    reply.contentType = contentType;
    reply.body = text;
    return reply;
}

} // namespace

void addAdRoutes(Routes &routes)
{
    routes.add("GET", "/serve/", [](const httplib::Request &, const std::string &rest) {
        return rest.ends_with("/loader.js") ? textReply(loader, "text/javascript; charset=utf-8")
                                            : Reply::error(404, "not found");
    });
    routes.add("GET", "/demo/ad", [](const auto &, const auto &) {
        return textReply(advertisedPage, "text/html; charset=utf-8");
    });
}

} // namespace navorin::demo
