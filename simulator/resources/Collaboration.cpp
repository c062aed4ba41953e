#include "simulator/resources/Collaboration.h"

#include "simulator/Lookup.h"
#include "simulator/State.h"
#include "simulator/resources/CollaborationHandlers.h"

namespace simulator
{

// clang-format off
std::vector<Route> collaborationRoutes()
{
    using namespace collaboration;
    using enum RequestKind;
    return {
        {"createCollaborationSession", "POST", "/Connections/{}/sessions", sessionMembers, openSessionWithPartner},
        {"createCollaborationSession", "POST", "/Installations/{}/sessions", Schema(), openSessionOfInstallation},
        {"createCollaborationSessionWithoutConnectionId", "POST", "/installations/{}/sessions", userMembers, openSessionOfInstallation},
        {"createRequest", "POST", "/Sessions/{}/request", createRequestMembers, createRequest},
        {"createRestorationCollaboration", "POST", "/Sessions/{}/request/restoration", createRestorationMembers, createRequestOf(Restoration)},
        {"createSurgeryPlanRequest", "POST", "/Sessions/{}/request/surgeryplan", createRequestMembers, createRequestOf(SurgeryPlan)},
        {"createReferralRequest", "POST", "/Sessions/{}/request/referral", createRequestMembers, createRequestOf(Referral)},
        {"updateRequest", "POST", "/Requests/{}/request", updateRequestMembers, updateRequest},
        {"updateSurgeryPlanRequest", "POST", "/Requests/surgeryplan/{}", updateSurgeryPlanMembers, updateSurgeryPlan},
        {"updateCollaborationRequestStatus", "POST", "/Requests/{}/status", statusMembers, updateStatus},
        {"getUnlockedStateForRequest", "POST", "/Requests/{}/unlocked-status", installationMembers, lockState},
        {"unlockTemplateRequest", "PUT", "/Requests/{}/unlock-file", installationMembers, unlock},
        {"markCollaborationFileAsSeen", "POST", "/CollaborationFiles/{}", installationMembers, markAsSeen},
        {"getRequests", "POST", "/Installations/{}/requests", listMembers, listRequests},
        {"getRequestId", "GET", "/Installations/{}/requests", {}, searchRequest},
        {"getCollaborationSessionRequestDetails", "POST", "/Installations/{}/requests/details", detailsMembers, detailsOfAllKinds},
        {"getDentalScanRequestDetails", "POST", "/Installations/{}/requests/dentalscan/details", detailsMembers, detailsOf(DentalScan)},
        {"getLabDesignRequestDetails", "POST", "/Installations/{}/requests/labdesign/details", detailsMembers, detailsOf(LabDesign)},
        {"getTempShellRequestDetails", "POST", "/Installations/{}/requests/tempshell/details", detailsMembers, detailsOf(TempShell)},
        {"getTemplateRequestDetails", "POST", "/Installations/{}/requests/template/details", detailsMembers, detailsOf(Template)},
        {"getRestorationURL", "POST", "/Installations/{}/requests/restoration/details", restorationUrlMembers, restorationUrls},
        {"getRestorationRequestDetails", "POST", "/Installations/{}/requests/restoration/details", detailsMembers, detailsOf(Restoration)},
        {"getSurgeryPlanRequestDetails", "POST", "/Installations/{}/requests/surgeryplan/details", detailsMembers, detailsOf(SurgeryPlan)},
        {"getCentralizedRestorationRequestDetails", "POST", "/Installations/{}/requests/centralizedrestoration/details", detailsMembers, detailsOf(CentralizedRestoration)},
        {"getReferralRequestDetails", "POST", "/Installations/{}/requests/referral/details", detailsMembers, detailsOf(Referral)},
        {"startConnection", "POST", "/Installations/{}/connections", startConnectionMembers, startConnection},
        {"updateConnectionStatus", "POST", "/Connections/{}", statusMembers, updateConnectionStatus},
        {"getConnectionsForLicense", "GET", "/Installations/{}/connections", {}, listConnections},
    };
}
// clang-format on

void touch(State& state, CollaborationRequest& request)
{
    state.tick();
    request.transactionId = state.newId("TX");
}

CollaborationRequest& addRequest(State& state, CollaborationRequest request)
{
    request.id = state.newId("REQ");
    request.key = QStringLiteral("KC-%1").arg(request.id.right(4));
    request.createdAt = state.tick();
    request.internalCaseIdentifier = state.newId("CASE");
    request.orderReference = state.newId("SO");
    request.transactionId = state.newId("TX");
    return state.collaboration.requests.add(std::move(request));
}

QString addFile(State& state, CollaborationRequest& request, CollaborationFile file)
{
    file.id = state.newId("FILE");
    request.fileIds << file.id;
    return state.collaboration.files.add(std::move(file)).id;
}

CollaborationRequest& requestById(State& state, QString const& id)
{
    return byId(state.collaboration.requests, id);
}

PartnerConnection& connectionById(State& state, QString const& id)
{
    return byId(state.collaboration.connections, id);
}

PartnerConnection partnerOf(State const& state, QString const& connectionId)
{
    if (connectionId.isEmpty())
    {
        return {.partnerId = "CENTRAL-1", .name = "Central Production"};
    }
    return byId(state.collaboration.connections, connectionId);
}

} // namespace simulator
