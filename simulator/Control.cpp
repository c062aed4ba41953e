#include "simulator/Control.h"

#include "simulator/Service.h"

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
    {"Status", Kind::Integer, false},
    {"Milliseconds", Kind::Integer, false},
    {"Body", Kind::Any, false},
};

Answer reset(Desk& desk, Call const& call)
{
    auto const seed = call["Seed"].toInteger(desk.seed);
    desk.reset(static_cast<unsigned>(seed));
    return Answer::noContent();
}

Answer addFault(Desk& desk, Router const& contract, Call const& call)
{
    auto const operation = call["Operation"].toString("*");
    if (operation != QLatin1String("*") && !contract.knowsOperation(operation))
    {
        throw Refusal(Reason::BadValue, "Operation");
    }
    desk.faults.add(call.body);
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
         [&](Call const& call) { return addFault(desk, contract, call); }},
        {"faults", "GET", "/_control/faults", {}, [&desk](Call const&) { return Answer::json(desk.faults.toJson()); }},
        {"clearFaults", "DELETE", "/_control/faults", {}, [&desk](Call const&) { return clearFaults(desk); }},
        {"orders", "GET", "/_control/orders", {}, storedOrders},
        {"cases", "GET", "/_control/cases", {}, storedCases},
        {"stats", "GET", "/_control/stats", {}, storedStatistics},
    };
}

} // namespace simulator
