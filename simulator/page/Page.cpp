#include "simulator/page/Page.h"

#include <PageText.h>

#include <algorithm>
#include <iterator>

namespace simulator
{

namespace
{

struct File
{
    char const* name;
    char const* contentType;
    char const* text;
};

constexpr File pageFiles[] = {
    {"index.html", "text/html; charset=utf-8", indexHtml},
    {"page.css", "text/css; charset=utf-8", pageCss},
    {"page.js", "text/javascript; charset=utf-8", pageJs},
    {"icon.svg", "image/svg+xml", iconSvg},
};

} // namespace

Answer pageFile(QString const& name)
{
    auto const* const file = std::find_if(
        std::begin(pageFiles), std::end(pageFiles),
        [&name](File const& row) { return name == QLatin1String(row.name); });
    if (file == std::end(pageFiles))
    {
        throw Refusal(Reason::UnknownId, name);
    }
    return {
        .body = file->text,
        .contentType = file->contentType,
        .headers = {
            {"Content-Security-Policy",
             "default-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'; object-src 'none'; "
             "require-trusted-types-for 'script'"},
            {"X-Content-Type-Options", "nosniff"},
            {"Referrer-Policy", "no-referrer"},
            {"Cache-Control", "no-store"}}};
}

} // namespace simulator
