#include "simulator/Control.h"

#include "simulator/Service.h"
#include "simulator/faults/ServiceFaultKinds.h"

namespace simulator
{

namespace
{

constexpr Member partnerActionMembers[] = {
    {"Action", Kind::Text},
    {"RequestId", Kind::Text, false},
    {"Type", Kind::Integer, false},
    {"ConnectionId", Kind::Text, false},
    {"Status", Kind::Integer, false},
    {"Text", Kind::Text, false},
    {"Name", Kind::Text, false},
    {"FileType", Kind::Text, false},
    {"Size", Kind::Integer, false},
    {"PatientFirstName", Kind::Text, false},
    {"PatientLastName", Kind::Text, false},
};

constexpr Member advanceOrderMembers[] = {{"Action", Kind::Text}, {"Reference", Kind::Text}};

constexpr Member faultMembers[] = {
    {"Kind", Kind::Text},
    {"Operation", Kind::Text, false},
    {"Times", Kind::Integer, false},
    {"Milliseconds", Kind::Integer, false},
    {"Status", Kind::Integer, false},
    {"Body", Kind::Any, false},
    {"Member", Kind::Text, false},
    {"Location", Kind::Text, false},
    {"Seconds", Kind::Integer, false},
    {"Mebibytes", Kind::Integer, false},
};

constexpr Member toxicMembers[] = {
    {"Type", Kind::Text},
    {"Stream", Kind::Text, false},
    {"Toxicity", Kind::Any, false},
    {"Attributes", Kind::Any, false},
};

Answer reset(Desk& desk, Call const& call)
{
    auto const seed = call["Seed"].toInteger(desk.seed);
    desk.reset(static_cast<unsigned>(seed));
    return Answer::noContent();
}

faults::FaultProxy& proxyOf(Desk const& desk)
{
    if (desk.faultProxy == nullptr)
    {
        throw Refusal(Reason::NotNow, "no fault proxy stands in front");
    }
    return *desk.faultProxy;
}

Answer addToxic(Desk& desk, Call const& call)
try
{
    proxyOf(desk).add(faults::ToxicSettings::fromJson(call.body));
    return Answer::noContent();
}
catch (std::invalid_argument const& error)
{
    throw Refusal(Reason::BadValue, QString::fromUtf8(error.what()));
}

Answer clearToxics(Desk& desk)
{
    proxyOf(desk).clear();
    return Answer::noContent();
}

Answer clearJournal(Desk& desk)
{
    desk.journal.clear();
    return Answer::noContent();
}

Answer clearFaults(Desk& desk)
{
    desk.faults.clear();
    return Answer::noContent();
}

} // namespace

void addFault(Desk& desk, Router const& contract, QJsonObject const& rule)
{
    auto const* kind = faults::findServiceFaultKind(rule["Kind"].toString());
    if (kind == nullptr)
    {
        throw Refusal(Reason::BadValue, "Kind");
    }
    check(faultMembers, rule);
    auto const operation = rule["Operation"].toString("*");
    if (operation != QLatin1String("*") && !contract.knowsOperation(operation))
    {
        throw Refusal(Reason::BadValue, "Operation");
    }
    if (kind->writesRaw && desk.speaksTls)
    {
        throw Refusal(Reason::BadValue, "Kind: not over TLS");
    }
    desk.faults.add(*kind, rule);
}

std::vector<Route> controlRoutes(Desk& desk, Router const& contract)
{
    return {
        {"reset", "POST", "/_control/reset", {}, [&desk](Call const& call) { return reset(desk, call); }},
        {"advanceOrder", "POST", "/_control/partner-action", advanceOrderMembers, advanceOrder},
        {"partnerAction", "POST", "/_control/partner-action", partnerActionMembers, partnerAction},
        {"journal",
         "GET",
         "/_control/journal",
         {},
         [&desk](Call const&) { return Answer::json(desk.journal.toJson()); }},
        {"clearJournal", "DELETE", "/_control/journal", {}, [&desk](Call const&) { return clearJournal(desk); }},
        {"addFault", "POST", "/_control/fault", faultMembers,
         [&](Call const& call)
         {
             addFault(desk, contract, call.body);
             return Answer::noContent();
         }},
        {"faults", "GET", "/_control/faults", {}, [&desk](Call const&) { return Answer::json(desk.faults.toJson()); }},
        {"clearFaults", "DELETE", "/_control/faults", {}, [&desk](Call const&) { return clearFaults(desk); }},
        {"addToxic", "POST", "/_control/toxic", toxicMembers,
         [&desk](Call const& call) { return addToxic(desk, call); }},
        {"toxics",
         "GET",
         "/_control/toxics",
         {},
         [&desk](Call const&) { return Answer::json(proxyOf(desk).toJson()); }},
        {"clearToxics", "DELETE", "/_control/toxics", {}, [&desk](Call const&) { return clearToxics(desk); }},
        {"orders", "GET", "/_control/orders", {}, storedOrders},
        {"cases", "GET", "/_control/cases", {}, storedCases},
        {"stats", "GET", "/_control/stats", {}, storedStatistics},
    };
}

} // namespace simulator
