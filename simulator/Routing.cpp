#include "simulator/Routing.h"

#include <QJsonDocument>
#include <QUrl>

#include <algorithm>

namespace simulator
{

namespace
{

QString decoded(QByteArray const& text)
{
    return QUrl::fromPercentEncoding(text);
}

bool isPlaceholder(QString const& segment)
{
    return segment == QLatin1String("{}");
}

/// The segments of the route's path, without its query.
QStringList patternOf(Route const& route)
{
    return QString::fromUtf8(route.path).section('?', 0, 0).split('/');
}

bool matches(QStringList const& pattern, QStringList const& segments)
{
    return pattern.size() == segments.size()
           && std::equal(
               pattern.begin(), pattern.end(), segments.begin(),
               [](QString const& wanted, QString const& got)
               { return isPlaceholder(wanted) ? !got.isEmpty() : wanted == got; });
}

QStringList idsOf(Route const& route, QStringList const& segments)
{
    QStringList ids;
    auto const pattern = patternOf(route);
    for (qsizetype at = 0; at < pattern.size(); ++at)
    {
        if (isPlaceholder(pattern[at]))
        {
            ids << segments[at];
        }
    }
    return ids;
}

void checkQuery(Route const& route, QHash<QString, QString> const& query)
{
    auto const wanted = Target(route.path).query;
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it)
    {
        auto const given = query.value(it.key());
        if (isPlaceholder(it.value()) ? given.isEmpty() : given != it.value())
        {
            throw Refusal(Reason::BadQuery, it.key() + '=' + it.value());
        }
    }
}

QJsonObject checkedBody(Schema schema, QByteArray const& raw)
{
    auto const document = QJsonDocument::fromJson(raw);
    if (!document.isObject())
    {
        throw Refusal(Reason::MalformedBody, {});
    }
    check(schema, document.object());
    return document.object();
}

bool takesBody(Route const& route, QByteArray const& raw)
{
    try
    {
        if (route.body)
        {
            checkedBody(*route.body, raw);
        }
        return true;
    }
    catch (Refusal const&)
    {
        return false;
    }
}

} // namespace

Target::Target(QByteArray const& rawTarget)
{
    auto const mark = rawTarget.indexOf('?');
    path = mark < 0 ? rawTarget : rawTarget.left(mark);
    for (auto const& segment : path.split('/'))
    {
        segments << decoded(segment);
    }
    if (mark < 0)
    {
        return;
    }
    for (auto const& pair : rawTarget.mid(mark + 1).split('&'))
    {
        auto const parts = pair.split('=');
        query.insert(decoded(parts.first()), decoded(pair.mid(parts.first().size() + 1)));
    }
}

Router::Router(std::vector<Route> routes) : routes_(std::move(routes))
{
    std::transform(routes_.begin(), routes_.end(), std::back_inserter(patterns_), patternOf);
}

std::vector<Route const*> Router::candidates(QByteArray const& method, Target const& target) const
{
    bool pathIsKnown = false;
    std::vector<Route const*> found;
    auto const wanted = method == "HEAD" ? QByteArray("GET") : method;
    for (std::size_t at = 0; at < routes_.size(); ++at)
    {
        if (matches(patterns_[at], target.segments))
        {
            pathIsKnown = true;
            if (wanted == routes_[at].method)
            {
                found.push_back(&routes_[at]);
            }
        }
    }
    if (found.empty())
    {
        throw Refusal(
            pathIsKnown ? Reason::WrongMethod : Reason::UnknownPath,
            QString::fromUtf8(method + ' ' + target.path + "; GET /_control lists them"));
    }
    return found;
}

Route const& Router::choose(std::vector<Route const*> const& candidates, QByteArray const& body)
{
    auto const last = std::prev(candidates.end());
    return **std::find_if(candidates.begin(), last, [&body](Route const* route) { return takesBody(*route, body); });
}

Answer Router::run(
    Route const& route, Target const& target, HttpRequest const& request, State& state, QJsonObject const& body)
{
    checkQuery(route, target.query);
    return route.handler(
        {.state = state,
         .ids = idsOf(route, target.segments),
         .query = target.query,
         .body = route.body ? checkedBody(*route.body, request.body) : body,
         .raw = request.body,
         .rawSize = request.bodySize,
         .rawMd5 = request.bodyMd5});
}

QStringList Router::operations() const
{
    QStringList names;
    for (auto const& route : routes_)
    {
        names << QLatin1String(route.operation);
    }
    names.removeDuplicates();
    return names;
}

} // namespace simulator
