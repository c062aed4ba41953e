#include "simulator/resources/Users.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

namespace simulator
{

namespace
{

Answer listUsers(Call const& call)
{
    auto const toJson = [](User const& row)
    {
        return QJsonObject{{"Reference", row.reference},       {"FirstName", row.firstName},
                           {"LastName", row.lastName},         {"UserName", row.userName},
                           {"PasswordHash", row.passwordHash}, {"Email", row.email},
                           {"TwoFactorKey", row.twoFactorKey}};
    };
    return Answer::json(jsonOfInstallation(call.state.users.users, knownInstallation(call.state, call.id()), toJson));
}

QJsonObject studyJson(Study const& row)
{
    QJsonArray partners;
    for (auto const& partner : row.partners)
    {
        partners.append(QJsonObject{{"StudyParticipantId", partner.participantId}, {"Name", partner.name}});
    }
    return {{"Id", row.id}, {"Name", row.name}, {"ClinicalPartners", partners}};
}

Answer listStudies(Call const& call)
{
    auto const list = jsonOfInstallation(call.state.users.studies, knownInstallation(call.state, call.id()), studyJson);
    return Answer::json(QJsonObject{{"StudyInfos", list}});
}

Answer listKeys(Call const& call)
{
    auto const list = jsonOfInstallation(
        call.state.users.keys, knownInstallation(call.state, call.id()),
        [](AuthenticationKey const& row) { return QJsonValue(row.key); });
    return Answer::json(QJsonObject{{"Keys", list}});
}

} // namespace

// clang-format off
std::vector<Route> userRoutes()
{
    return {
        {"getUsersForLicense", "GET", "/Installations/{}/users", {}, listUsers},
        {"getStudiesForLicense", "GET", "/Installations/{}/Studies", {}, listStudies},
        {"getThirdPartyAuthenticationKeys", "GET", "/Installations/{}/3rdpartyauthenticationkeys", {}, listKeys},
    };
}
// clang-format on

void seedUsers(State& state)
{
    state.users.users = {
        {"INST-1001", "USR-0001", "Sofia", "Lindqvist", "slindqvist", "pbkdf2$60000$q8Zr1w==$ZbVYz0h3mX5uT9sQf2c1Ag==",
         "sofia@harbour-street.example", "AQIDBHh2a2V5LXNsaW5kcXZpc3Q="},
        {"INST-1001", "USR-0002", "Paul", "Mercier", "Mercier",
         "pbkdf2$60000$Jm7c0A==$n1pTtE5rV8yKq4wXo6d3Lw==", "paul@harbour-street.example", "AQIDBHh2a2V5LW1lcmNpZXI="},
        {"INST-1001", "USR-0003", "Anita", "Rao", "anita.rao",
         "pbkdf2$60000$t2Bn9g==$c7GhR0aJk1LzPq5sWm8xYQ==", "anita@harbour-street.example", ""},
        {"INST-1001", "USR-0004", "Jonas", "Weber", "jweber",
         "pbkdf2$60000$Ks4d6Q==$e9FvB2nMt3HjUo7iXa6zRw==", "jonas@harbour-street.example", ""},
        {"INST-2002", "USR-0101", "Maja", "Lindqvist", "maja",
         "pbkdf2$60000$Lp0e7w==$h5DyC8kNs2GqVr4uTb1xZA==", "maja@lindqvist.example", ""},
    };
    state.users.studies = {
        {"INST-1001",
         "STD-2024-07",
         "Immediate loading in the posterior mandible",
         {{"PTC-11", "Northshore Oral Surgery"}, {"PTC-12", "Harbour Street Dental Practice"}}},
        {"INST-1001", "STD-2025-01", "Chairside temporary shells, one-year results", {{"PTC-31", "Klinik am Seeufer"}}},
        {"INST-1001", "STD-2025-03", "Scan accuracy over full arches", {}},
    };
    state.users.keys = {
        {"INST-1001", "3p-7c1f40a2d95e"},
        {"INST-1001", "3p-e08b6d13f7aa"},
    };
}

} // namespace simulator
