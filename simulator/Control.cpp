#include "simulator/Control.h"

#include "simulator/StateJson.h"
#include "simulator/Verification.h"
#include "simulator/faults/ServiceFaultKinds.h"
#include "simulator/faults/ToxicKinds.h"
#include "simulator/page/Page.h"

#include <QJsonDocument>

#include <arpa/inet.h>

namespace simulator
{

namespace
{

constexpr qint64 anyNumber = 1'000'000;

constexpr Member resetMembers[] = {
    integer("Seed", 0, 4'294'967'295, nullptr, "of other data; the data it started with unless given"),
};

constexpr Member partnerActionMembers[] = {
    {"Action", Kind::Text, true, {}, "note, addFile, status, reply (all three), withdraw or create"},
    optional("RequestId", Kind::Text, "the request; not for create"),
    integer("Type", 0, static_cast<int>(RequestKind::Referral), nullptr, "create: the kind of request"),
    optional("ConnectionId", Kind::Text, "create: the partner; the first unless given"),
    integer("Status", 0, anyNumber, nullptr, "status, reply: the new one"),
    optional("Text", Kind::Text, "note, reply: what the partner says"),
    optional("Name", Kind::Text, "addFile, reply: the file's name"),
    optional("FileType", Kind::Text, "addFile, reply"),
    integer("Size", 0, 1LL << 50, nullptr, "addFile, reply: bytes"),
    optional("PatientFirstName", Kind::Text, "create"),
    optional("PatientLastName", Kind::Text, "create"),
};

constexpr Member advanceOrderMembers[] = {
    {"Action", Kind::Text, true, {}, "advanceOrder: the order gets to its next state"},
    {"Reference", Kind::Text, true, {}, "of the order"},
};

constexpr Member journalQuery[] = {
    optional("operation", Kind::Text, "only those of the operation"),
    optional("method", Kind::Text, "only those with the HTTP method"),
    integer("status", 0, 599, nullptr, "only those answered with the status; 0: the connection was closed"),
    integer("since", 0, std::numeric_limits<qint64>::max(), nullptr, "only those with a greater number"),
    integer("limit", 0, anyNumber, nullptr, "only the last so many"),
    integer("brief", 0, 1, nullptr, "1: without headers, bodies, answers and counts"),
};

constexpr Member requestsQuery[] = {
    optional("text", Kind::Any, "only those with the text in their id, kind, partner, patient or installation"),
    integer("limit", 0, anyNumber, nullptr, "only the last so many"),
};

/// A recording has no data that could be told or changed.
void requireData(Desk const& desk)
{
    if (desk.replay)
    {
        throw Refusal(Reason::NotNow, "a recording is replayed, which keeps no data");
    }
}

faults::FaultProxy& proxyOf(Desk const& desk)
{
    if (desk.faultProxy == nullptr)
    {
        throw Refusal(Reason::NotNow, "no fault proxy stands in front; start with --fault-proxy");
    }
    return *desk.faultProxy;
}

QJsonObject objectOf(QByteArray const& body)
{
    auto const document = QJsonDocument::fromJson(body);
    if (!document.isObject())
    {
        throw Refusal(Reason::MalformedBody, {});
    }
    return document.object();
}

Answer reset(Desk& desk, Call const& call)
{
    if (!call.raw.isEmpty())
    {
        auto const body = objectOf(call.raw);
        check(resetMembers, body);
        if (body.contains("Seed"))
        {
            requireData(desk);
            desk.start = seededState(static_cast<unsigned>(body["Seed"].toInteger()));
        }
    }
    desk.reset();
    return Answer::noContent();
}

Answer getJournal(Desk& desk, Call const& call)
{
    Journal::Filter filter = {
        .operation = call.text("operation"),
        .method = call.text("method"),
        .since = static_cast<quint64>(call["since"].toInteger())};
    if (!call["status"].isUndefined())
    {
        filter.status = call.number("status");
    }
    auto const limit = static_cast<std::size_t>(call["limit"].toInteger(anyNumber));
    auto const isBrief = call.number("brief") == 1;
    return Answer::json(isBrief ? desk.journal.toBriefJson(filter, limit) : desk.journal.toJson(filter, limit));
}

Answer getJournalEntry(Desk& desk, Call const& call)
{
    if (auto const* const entry = desk.journal.find(call.id().toULongLong()))
    {
        return Answer::json(Journal::toJson(*entry));
    }
    throw Refusal(Reason::UnknownId, call.id());
}

Answer changes(Desk& desk, Call const&)
{
    return Answer::json(QJsonObject{{"Changes", desk.changes}});
}

Answer putState(Desk& desk, Call const& call)
{
    if (call.rawSize > call.raw.size())
    {
        throw Refusal(Reason::MalformedBody, QStringLiteral("longer than %1 bytes").arg(call.raw.size()));
    }
    requireData(desk);
    desk.state = stateFromText(call.raw);
    return Answer::noContent();
}

Answer getState(Desk& desk, Call const&)
{
    requireData(desk);
    return Answer::page(toJson(desk.state));
}

Answer clearJournal(Desk& desk, Call const&)
{
    desk.journal.clear();
    return Answer::noContent();
}

Answer getReplay(Desk& desk, Call const&)
{
    if (!desk.replay)
    {
        throw Refusal(Reason::NotNow, "nothing is replayed; start with --replay");
    }
    return Answer::page(desk.replay->toJson());
}

Answer listFaults(Desk& desk, Call const&)
{
    return Answer::json(desk.faults.toJson());
}

Answer clearFaults(Desk& desk, Call const&)
{
    desk.faults.clear();
    return Answer::noContent();
}

Answer numbered(int id)
{
    return Answer::json(QJsonObject{{"Id", id}});
}

Answer removed(bool wasThere, Call const& call)
{
    if (!wasThere)
    {
        throw Refusal(Reason::UnknownId, call.id());
    }
    return Answer::noContent();
}

Answer removeFault(Desk& desk, Call const& call)
{
    return removed(desk.faults.remove(call.id().toInt()), call);
}

Answer addToxic(Desk& desk, Call const& call)
{
    return numbered(proxyOf(desk).add(faults::ToxicSettings::fromJson(call.body))->id);
}

Answer listToxics(Desk& desk, Call const&)
{
    return Answer::json(proxyOf(desk).toJson());
}

Answer clearToxics(Desk& desk, Call const&)
{
    proxyOf(desk).clear();
    return Answer::noContent();
}

Answer removeToxic(Desk& desk, Call const& call)
{
    return removed(proxyOf(desk).remove(call.id().toInt()), call);
}

/// The query as the members of an object, numbers as numbers.
QJsonObject checkedQuery(Route const& route, QHash<QString, QString> const& query)
try
{
    QJsonObject json;
    for (auto const& key : query.keys())
    {
        bool isNumber = false;
        auto const number = query[key].toLongLong(&isNumber);
        json.insert(key, isNumber ? QJsonValue(number) : QJsonValue(query[key]));
    }
    check(route.query, json);
    return json;
}
catch (Refusal const& refusal)
{
    throw Refusal(Reason::BadQuery, refusal.what());
}

bool isIpAddress(QByteArray const& host)
{
    in_addr address = {};
    return ::inet_pton(AF_INET, host.constData(), &address) == 1;
}

template <class Kinds>
QJsonArray describeKinds(char const* key, Kinds const& kinds, auto parametersOf)
{
    QJsonArray array;
    for (auto const* kind : kinds)
    {
        array.append(
            QJsonObject{{key, kind->name}, {"Meaning", kind->meaning}, {"Parameters", describe(parametersOf(*kind))}});
    }
    return array;
}

} // namespace

Control::Control(Desk& desk, Router const& contract, QByteArray listenAddress)
    : desk_(desk), contract_(contract), listenAddress_(std::move(listenAddress)), routes_(resources())
{
}

bool Control::isControl(Target const& target)
{
    return target.path == "/_control" || target.path.startsWith("/_control/");
}

// One row a resource; the sentence is what GET /_control says of it.
// clang-format off
std::vector<Route> Control::resources() // NOLINT(readability-function-size): a table
{
    auto const on = [this](Answer (*answer)(Desk&, Call const&)) -> Handler
    { return [this, answer](Call const& call) { return answer(desk_, call); }; };
    auto const ofData = [this](Answer (*answer)(Call const&)) -> Handler
    {
        return [this, answer](Call const& call)
        {
            requireData(desk_);
            return answer(call);
        };
    };
    auto const index = [this](Call const&) { return Answer::page(this->index()); };
    auto const addFault = [this](Call const& call) { return numbered(this->addFault(objectOf(call.raw))); };
    auto const verifyJournal = [this](Call const& call)
    {
        verify(desk_.journal, call.body, contract_.operations());
        return Answer::json(QJsonObject{{"Verified", true}});
    };
    using faults::toxicMembers;
    return {
        {"index", "GET", "/_control", {}, index, {}, "this list"},
        {"page", "GET", "/_control/", {}, [](Call const&) { return pageFile("index.html"); }, {}, "a page for a browser, with most of this"},
        {"pageFile", "GET", "/_control/page/{}", {}, [](Call const& call) { return pageFile(call.id()); }, {}, "what that page is made of"},
        {"changes", "GET", "/_control/changes", {}, on(changes), {}, "a number that is another one after whatever may have changed data, journal or faults"},
        {"reset", "POST", "/_control/reset", {}, on(reset), {}, "as freshly started: its first data, no journal, no faults of the service; {\"Seed\": n} makes other data"},
        {"getState", "GET", "/_control/state", {}, on(getState), {}, "all data, as --data takes them"},
        {"putState", "PUT", "/_control/state", {}, on(putState), {}, "puts other data in the place of all, until the next reset"},
        {"advanceOrder", "POST", "/_control/partner-action", advanceOrderMembers, ofData(advanceOrder), {}, "what the service does with an order meanwhile"},
        {"partnerAction", "POST", "/_control/partner-action", partnerActionMembers, ofData(partnerAction), {}, "what a partner does with a request meanwhile"},
        {"getJournal", "GET", "/_control/journal", {}, on(getJournal), journalQuery, "requests with their answers, oldest first; the oldest go when there are too many"},
        {"getJournalEntry", "GET", "/_control/journal/{}", {}, on(getJournalEntry), {}, "the one of that number"},
        {"clearJournal", "DELETE", "/_control/journal", {}, on(clearJournal), {}, "forgets them"},
        {"verify", "POST", "/_control/verify", expectationsMembers, verifyJournal, {}, "200 if the journal holds what is expected, else 409 with the difference"},
        {"replay", "GET", "/_control/replay", {}, on(getReplay), {}, "of --replay: what was recorded and never asked for, and the last requests that are not in the recording"},
        {"addFault", "POST", "/_control/fault", {}, addFault, {}, "spoils coming calls; answers the number of the fault"},
        {"listFaults", "GET", "/_control/faults", {}, on(listFaults), {}, "the faults, and how often each has struck"},
        {"clearFaults", "DELETE", "/_control/faults", {}, on(clearFaults), {}, "takes them away"},
        {"removeFault", "DELETE", "/_control/faults/{}", {}, on(removeFault), {}, "takes one away by its number"},
        {"addToxic", "POST", "/_control/toxic", toxicMembers, on(addToxic), {}, "spoils the line at the fault proxy; better sent to the address without the faults"},
        {"listToxics", "GET", "/_control/toxics", {}, on(listToxics), {}, "the toxics, and how often each has struck"},
        {"clearToxics", "DELETE", "/_control/toxics", {}, on(clearToxics), {}, "takes them away"},
        {"removeToxic", "DELETE", "/_control/toxics/{}", {}, on(removeToxic), {}, "takes one away by its number"},
        {"requests", "GET", "/_control/requests", {}, ofData(storedRequests), requestsQuery, "the requests as their partners see them, oldest first, and what partner-action can make of them"},
        {"orders", "GET", "/_control/orders", {}, ofData(storedOrders), {}, "every order with its uploads, and how many orders its body has created"},
        {"cases", "GET", "/_control/cases", {}, ofData(storedCases), {}, "the portal's cases with the files announced to them"},
        {"stats", "GET", "/_control/stats", {}, ofData(storedStatistics), {}, "the usage statistics received"},
    };
}
// clang-format on

Answer Control::handle(HttpRequest const& request, Target const& target)
{
    checkOrigin(request);
    auto const& route = Router::choose(routes_.candidates(request.method, target), request.body);
    auto const query = checkedQuery(route, target.query);
    desk_.changes += request.method == "GET" ? 0 : 1;
    return Router::run(route, target, request, desk_.state, query);
}

int Control::addFault(QJsonObject const& rule)
{
    auto const* const kind = faults::findServiceFaultKind(rule["Kind"].toString());
    if (kind != nullptr && kind->writesRaw && desk_.speaksTls)
    {
        throw Refusal(Reason::BadValue, "Kind: not over TLS");
    }
    return desk_.faults.add(rule, contract_.operations());
}

void Control::checkOrigin(HttpRequest const& request) const
{
    auto const host = request.header("Host");
    auto const name = host.startsWith('[') ? host.left(host.indexOf(']') + 1) : host.split(':').first();
    auto const isLoopback = name == "localhost" || name == "[::1]" || (isIpAddress(name) && name.startsWith("127."));
    // Who makes a name of his own point here has no influence on addresses.
    auto const isOwn = name == listenAddress_ || (listenAddress_ == "0.0.0.0" && isIpAddress(name));
    if (!host.isEmpty() && !isLoopback && !isOwn)
    {
        throw Refusal(
            Reason::ForeignPage, "Host " + QString::fromUtf8(host) + "; say 127.0.0.1 or the --listen address");
    }
    auto const origin = request.header("Origin");
    if (!origin.isEmpty() && origin != "http://" + host && origin != "https://" + host)
    {
        throw Refusal(Reason::ForeignPage, "Origin " + QString::fromUtf8(origin));
    }
}

QJsonObject Control::index() const
{
    QJsonArray resources;
    for (auto const& route : routes_.routes())
    {
        QJsonObject resource = {{"Method", route.method}, {"Path", route.path}, {"Meaning", route.meaning}};
        auto const isFault = QLatin1String(route.operation) == QLatin1String("addFault");
        if (auto const body = isFault ? faultMembers : route.body.value_or(Schema()); !body.empty())
        {
            resource["Body"] = describe(body);
        }
        if (!route.query.empty())
        {
            resource["Query"] = describe(route.query);
        }
        resources.append(resource);
    }
    QJsonArray operations;
    for (auto const& route : contract_.routes())
    {
        operations.append(QJsonObject{{"Name", route.operation}, {"Method", route.method}, {"Path", route.path}});
    }
    QJsonArray installations;
    for (auto const& id : desk_.state.installations.keys())
    {
        installations.append(QJsonObject{{"Id", id}, {"Name", desk_.state.installations[id]}});
    }
    QJsonValue proxy;
    if (desk_.faultProxy != nullptr)
    {
        proxy =
            QJsonObject{{"Port", desk_.faultProxy->port()}, {"PortWithoutFaults", desk_.faultProxy->upstreamPort()}};
    }
    auto const ofFault = [](FaultKind const& kind) { return kind.parameters; };
    auto const ofToxic = [](faults::ToxicKind const& kind) { return kind.attributes; };
    return {
        {"Resources", resources},
        {"Installations", installations},
        {"Operations", operations},
        {"FaultProxy", proxy},
        {"Faults", describeKinds("Kind", faults::serviceFaultKinds(), ofFault)},
        {"Toxics", describeKinds("Type", faults::toxicKinds(), ofToxic)}};
}

} // namespace simulator
