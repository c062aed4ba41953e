#pragma once

#include "simulator/Http.h"
#include "simulator/Schema.h"

#include <QHash>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace simulator
{

struct State;

/// One request as a handler sees it: decoded and checked against the route's schema.
struct Call
{
    State& state;
    QStringList ids; // what stands in the place of each "{}" of the route, in order
    QHash<QString, QString> query;
    QJsonObject body;
    QByteArray raw; // the body as it arrived; of a very long one the beginning, see HttpRequest
    qint64 rawSize = 0;
    QByteArray rawMd5;

    QString id() const { return ids.value(0); }
    QJsonValue operator[](char const* key) const { return body.value(QLatin1String(key)); }
    QString text(char const* key) const { return (*this)[key].toString(); }
    int number(char const* key, int absent = 0) const { return (*this)[key].toInt(absent); }
};

using Handler = std::function<Answer(Call const&)>;

/// One resource: which operation it carries, where it stands ("{}" for an id; a query it cannot do without may follow),
/// what its body must hold (nothing: it is not looked at), who answers. Two operations may share method and path; the
/// first whose schema takes the body gets the call.
struct Route
{
    char const* operation;
    char const* method;
    char const* path;
    std::optional<Schema> body;
    Handler handler;
    Schema query = {};        // of a control resource: what its query may hold, which then stands for the body
    char const* meaning = ""; // what people are told of a control resource
};

/// A request target taken apart: the segments and the query are percent-decoded, the path is as it arrived.
struct Target
{
    explicit Target(QByteArray const& rawTarget);

    QByteArray path;
    QStringList segments;
    QHash<QString, QString> query;
};

/// Finds the routes of a request. The order of the rows decides where several take the same request.
class Router
{
public:
    explicit Router(std::vector<Route> routes);

    /// Throws a Refusal: unknown path, or wrong method for a known path.
    std::vector<Route const*> candidates(QByteArray const& method, Target const& target) const;

    /// The first candidate that takes the body. When none does, the last one is given, whose check then says why.
    static Route const& choose(std::vector<Route const*> const& candidates, QByteArray const& body);

    /// Checks query and body, then runs the route's handler; throws a Refusal. `body`: what the handler gets of a
    /// request whose body is not looked at.
    static Answer run(
        Route const& route, Target const& target, HttpRequest const& request, State& state,
        QJsonObject const& body = {});

    std::vector<Route> const& routes() const { return routes_; }
    /// The names of the operations, each once.
    QStringList operations() const;

private:
    std::vector<Route> routes_;
    std::vector<QStringList> patterns_; // the segments of each route's path
};

} // namespace simulator
