#pragma once

#include "simulator/Routing.h"
#include "simulator/resources/Collaboration.h"

/// What the rows of `collaborationRoutes` are made of: what each body must hold, and who answers. Handlers throw a
/// Refusal and then leave the state as it is.
namespace simulator::collaboration
{

// ---- CollaborationConnections.cpp: connections and sessions

extern Schema const startConnectionMembers;
extern Schema const sessionMembers;
extern Schema const userMembers;

Answer listConnections(Call const& call);
Answer startConnection(Call const& call);
Answer updateConnectionStatus(Call const& call);
Answer openSessionWithPartner(Call const& call);
Answer openSessionOfInstallation(Call const& call);

// ---- CollaborationRequests.cpp: creating and changing requests, their locks and seen marks

extern Schema const createRequestMembers;
extern Schema const createRestorationMembers;
extern Schema const updateRequestMembers;
extern Schema const updateSurgeryPlanMembers;
extern Schema const statusMembers; // a connection's, too
extern Schema const installationMembers;

/// Makes requests of the kind that "Type" tells.
Answer createRequest(Call const& call);
Handler createRequestOf(RequestKind kind);
Answer updateRequest(Call const& call);
Answer updateSurgeryPlan(Call const& call);
Answer updateStatus(Call const& call);
Answer lockState(Call const& call);
Answer unlock(Call const& call);
Answer markAsSeen(Call const& call);

// ---- CollaborationLists.cpp: lists and details

extern Schema const listMembers;
extern Schema const detailsMembers;
extern Schema const restorationUrlMembers;

Answer listRequests(Call const& call);
Answer searchRequest(Call const& call);
Answer detailsOfAllKinds(Call const& call);
Handler detailsOf(RequestKind kind);
Answer restorationUrls(Call const& call);

} // namespace simulator::collaboration
