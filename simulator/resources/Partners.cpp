#include "simulator/resources/Partners.h"

#include "simulator/Lookup.h"
#include "simulator/Routing.h"
#include "simulator/State.h"

#include <QJsonDocument>

#include <array>

namespace simulator
{

namespace
{

/// The way of a case at its partner: every refresh takes it one step on, up to the last. A case in a status that is not
/// among these stays in it.
constexpr std::array<char const*, 5> caseSteps = {"Created", "Draft", "Accepted", "Updating Status", "Finished"};

QString connectionPage(PartnerAccount const& account)
{
    return "https://partners.kelo.example/connections/" + account.id;
}

/// The element with this id, if it belongs to the installation.
template <typename List>
auto const& ownById(List const& list, QString const& installation, QString const& id)
{
    for (auto const& element : list)
    {
        if (element.id == id && element.installation == installation)
        {
            return element;
        }
    }
    throw Refusal(Reason::UnknownId, id);
}

QString partnerName(State const& state, PartnerAccount const& account)
{
    return ownById(state.partners.platforms, account.installation, account.partnerId).name;
}

// ---- platforms and accounts --------------------------------------------------------------------------------------

Answer listPlatforms(Call const& call)
{
    auto const toJson = [](PartnerPlatform const& platform)
    {
        return QJsonObject{
            {"PartnerId", platform.id},
            {"PartnerName", platform.name},
            {"ShouldCreatePartnerConnection", platform.shouldCreateConnection},
            {"ShouldAnonymizeCaseData", platform.shouldAnonymize},
            {"CreatePartnerConnectionUrl", "https://partners.kelo.example/connect/" + platform.id}};
    };
    auto const installation = knownInstallation(call.state, call.id());
    return Answer::json(jsonOfInstallation(call.state.partners.platforms, installation, toJson));
}

Answer logo(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    auto const collaborators = call.state.partners.collaboratorLogos.value(call.ids.value(1));
    if (!collaborators.isEmpty())
    {
        return {.body = collaborators, .contentType = "text/plain"};
    }
    auto const& platform = ownById(call.state.partners.platforms, installation, call.ids.value(1));
    if (platform.logo.isEmpty())
    {
        throw Refusal(Reason::UnknownId, platform.id + " has no logo");
    }
    return {.body = platform.logo, .contentType = "text/plain"};
}

Answer listAccounts(Call const& call)
{
    auto const toJson = [&call](PartnerAccount const& account)
    {
        return QJsonObject{
            {"PartnerConnectionId", account.id},
            {"PartnerId", account.partnerId},
            {"PartnerName", partnerName(call.state, account)},
            {"UserName", account.userName},
            {"GivenName", account.givenName},
            {"IsConnected", account.isConnected},
            {"ManagePartnerConnectionUrl", connectionPage(account)}};
    };
    auto const installation = knownInstallation(call.state, call.id());
    return Answer::json(jsonOfInstallation(call.state.partners.accounts, installation, toJson));
}

Answer testAccount(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    auto const& account = ownById(call.state.partners.accounts, installation, call.query.value("partnerConnectionId"));
    return Answer::json(
        QJsonObject{{"IsConnected", account.isConnected}, {"ManagePartnerConnectionUrl", connectionPage(account)}});
}

// ---- cases at partners -------------------------------------------------------------------------------------------

QJsonObject toJson(State const& state, PartnerCase const& partnerCase)
{
    auto const& account = byId(state.partners.accounts, partnerCase.accountId);
    return {
        {"CaseId", partnerCase.caseId},
        {"CaseStatus", partnerCase.status},
        {"CreatedAt", partnerCase.createdAt.toString(Qt::ISODate)},
        {"PartnerId", account.partnerId},
        {"PartnerName", partnerName(state, account)},
        {"PartnerConnectionId", account.id},
        {"PartnerConnectionUserName", account.userName},
        {"AllowCaseUpdates", partnerCase.allowsUpdates},
        {"PartnerPlatformCaseId", partnerCase.platformCaseId}};
}

/// A patient of whom no case was sent has none; hosts ask for all their patients.
Answer casesOfPatient(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    QJsonArray list;
    for (auto const& partnerCase : call.state.partners.cases)
    {
        if (partnerCase.installation == installation && partnerCase.patientId == call.ids.value(1))
        {
            list.append(toJson(call.state, partnerCase));
        }
    }
    return Answer::json(list);
}

/// The one body of the service that is a bare array.
QStringList caseIdsOf(QByteArray const& body)
{
    auto const document = QJsonDocument::fromJson(body);
    if (!document.isArray())
    {
        throw Refusal(Reason::MalformedBody, "a JSON array of case ids is wanted");
    }
    QStringList ids;
    auto const elements = document.array();
    for (auto const& element : elements)
    {
        if (!element.isString())
        {
            throw Refusal(Reason::WrongType, "case id");
        }
        ids << element.toString();
    }
    return ids;
}

QString nextStatus(QString const& status)
{
    auto const at = std::find(caseSteps.begin(), std::prev(caseSteps.end()), status);
    return at == std::prev(caseSteps.end()) ? status : QString::fromLatin1(*std::next(at));
}

/// Takes every case asked for one step on and answers with its status; ids of which nothing is known are left out.
Answer refreshStatus(Call const& call)
{
    auto const installation = knownInstallation(call.state, call.id());
    QJsonArray list;
    for (auto const& id : caseIdsOf(call.raw))
    {
        for (auto& partnerCase : call.state.partners.cases)
        {
            if (partnerCase.installation == installation && partnerCase.caseId == id)
            {
                partnerCase.status = nextStatus(partnerCase.status);
                list.append(QJsonObject{{"CaseId", id}, {"Status", partnerCase.status}});
            }
        }
    }
    return Answer::json(list);
}

constexpr Member shareMembers[] = {
    {"userReference", Kind::Text}, {"caseId", Kind::Text}, {"partnerConnectionId", Kind::Text}};

/// A case that was shared over this account before is updated at the partner, if the partner takes updates.
Answer shareCase(Call const& call)
{
    auto const& account = byId(call.state.partners.accounts, call.text("partnerConnectionId"));
    auto const caseId = call.text("caseId");
    caseVisibleTo(call.state, account.installation, caseId);
    if (!account.isConnected)
    {
        throw Refusal(Reason::NotNow, account.id + " is not connected");
    }
    for (auto const& partnerCase : call.state.partners.cases)
    {
        if (partnerCase.caseId == caseId && partnerCase.accountId == account.id)
        {
            if (!partnerCase.allowsUpdates)
            {
                throw Refusal(Reason::NotNow, caseId + " takes no updates");
            }
            return Answer::noContent();
        }
    }
    sendToPartner(call.state, caseId, account);
    return Answer::noContent();
}

} // namespace

// clang-format off
std::vector<Route> partnerRoutes()
{
    return {
        {"getPartners", "GET", "/Installations/{}/partners", {}, listPlatforms},
        {"getPartnerLogo", "GET", "/Installations/{}/partners/{}/logo", {}, logo},
        {"getPartnerAccounts", "GET", "/Installations/{}/PartnerConnections", {}, listAccounts},
        {"getPartnerCases", "GET", "/Installations/{}/PartnerCases/patients/{}", {}, casesOfPatient},
        {"updatePartnerCasesStatus", "POST", "/Installations/{}/partnercases/refresh-status", {}, refreshStatus},
        {"testAccountConnection", "GET", "/Installations/{}/test-connection?partnerConnectionId={}", {}, testAccount},
        {"sharePartnerCaseRequest", "POST", "/Cases/share", shareMembers, shareCase},
    };
}
// clang-format on

PartnerCase& sendToPartner(State& state, QString const& caseId, PartnerAccount const& account)
{
    auto& portalCase = caseVisibleTo(state, account.installation, caseId);
    if (auto const name = partnerName(state, account); !portalCase.sharedWith.contains(name))
    {
        portalCase.sharedWith << name;
    }
    return state.partners.cases.emplace_back(PartnerCase{
        .caseId = caseId,
        .accountId = account.id,
        .installation = account.installation,
        .patientId = portalCase.patientId,
        .status = caseSteps.front(),
        .createdAt = state.tick(),
        .allowsUpdates = true,
        .platformCaseId = state.newId("PLATFORMCASE")});
}

} // namespace simulator
