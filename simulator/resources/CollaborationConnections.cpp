#include "simulator/resources/CollaborationHandlers.h"

#include "simulator/Lookup.h"
#include "simulator/State.h"

namespace simulator::collaboration
{

namespace
{

constexpr Member startConnectionRow[] = {
    {"UserReference", Kind::Text},
    {"InstallationReference", Kind::Text},
    {"Note", Kind::Text},
    {"ConnectionToken", Kind::Text}};
constexpr Member sessionRow[] = {{"InstallationReference", Kind::Text}, {"UserReference", Kind::Text}};
constexpr Member userRow[] = {{"UserReference", Kind::Text}};

Answer openSession(State& state, QString const& installation, QString const& connectionId)
{
    auto const& session = state.collaboration.sessions.add(
        {.id = state.newId("SES"), .installation = installation, .connectionId = connectionId});
    return Answer::json(QJsonObject{{"SessionId", session.id}});
}

} // namespace

Schema const startConnectionMembers = startConnectionRow;
Schema const sessionMembers = sessionRow;
Schema const userMembers = userRow;

Answer listConnections(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    QJsonArray list;
    for (auto const& connection : call.state.collaboration.connections)
    {
        if (connection.installation == installation)
        {
            list.append(toJson(connection));
        }
    }
    return Answer::json(list);
}

Answer startConnection(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    if (call.text("InstallationReference") != installation)
    {
        throw Refusal(Reason::BadValue, "InstallationReference");
    }
    auto const token = call.text("ConnectionToken");
    if (token.isEmpty())
    {
        throw Refusal(Reason::BadValue, "ConnectionToken");
    }
    auto const& connection = call.state.collaboration.connections.add(
        {.id = call.state.newId("CON"),
         .installation = installation,
         .partnerId = call.state.newId("PARTNER"),
         .name = "Partner " + token,
         .isInitiator = true,
         .status = 1});
    return Answer::json(QJsonObject{{"ConnectionId", connection.id}, {"ConnectionStatus", connection.status}});
}

Answer updateConnectionStatus(Call const& call)
{
    auto& connection = connectionById(call.state, call.id());
    if (connection.installation != knownInstallation(call.state, call.text("InstallationReference")))
    {
        throw Refusal(Reason::UnknownId, connection.id);
    }
    auto const status = call.number("Status");
    if (status < 0 || status >= static_cast<int>(connectionStatusTexts.size()))
    {
        throw Refusal(Reason::BadValue, "Status");
    }
    connection.status = status;
    return Answer::noContent();
}

Answer openSessionWithPartner(Call const& call)
{
    auto const& connection = connectionById(call.state, call.id());
    if (connection.installation != knownInstallation(call.state, call.text("InstallationReference")))
    {
        throw Refusal(Reason::UnknownId, connection.id);
    }
    return openSession(call.state, connection.installation, connection.id);
}

Answer openSessionOfInstallation(Call const& call)
{
    return openSession(call.state, knownInstallation(call.state, call.id()), {});
}

} // namespace simulator::collaboration
