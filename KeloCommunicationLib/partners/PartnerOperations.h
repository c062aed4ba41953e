#pragma once

#include <vector>

#include <QByteArray>

#include <KeloCommunicationLib/connection/Operation.h>
#include <KeloCommunicationLib/connection/OperationRecords.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>

/// Partners and case sharing. What each does and gives is told at the interface's member of its name.
namespace operations
{

using rest::HttpMethod;

// clang-format off
inline constexpr Operation<void, std::vector<PartnerInfo>> getPartners{{"getPartners", HttpMethod::Get, "/Installations/%1/partners", {"installationId"}}};
inline constexpr Operation<void, QByteArray> getPartnerLogo{{"getPartnerLogo", HttpMethod::Get, "/Installations/%1/partners/%2/logo", {"installationId", "partnerId"}}};
inline constexpr Operation<void, std::vector<PartnerAccountInfo>> getPartnerAccounts{{"getPartnerAccounts", HttpMethod::Get, "/Installations/%1/PartnerConnections", {"installationId"}}};
inline constexpr Operation<void, std::vector<PartnerCaseInfo>> getPartnerCases{{"getPartnerCases", HttpMethod::Get, "/Installations/%1/PartnerCases/patients/%2", {"installationId", "patientId"}}};
inline constexpr Operation<mirashare::Cases, std::vector<mirashare::CaseStatusResponse>> updatePartnerCasesStatus{{"updatePartnerCasesStatus", HttpMethod::Post, "/Installations/%1/partnercases/refresh-status", {"installationId"}}};
inline constexpr Operation<void, mirashare::TestAccountConnectionResponse> testAccountConnection{{"testAccountConnection", HttpMethod::Get, "/Installations/%1/test-connection?partnerConnectionId=%2", {"installationId", "partnerConnectionId"}}};
inline constexpr Operation<mirashare::SharePartnerCaseRequest, void> sharePartnerCaseRequest{{.name = "sharePartnerCaseRequest", .method = HttpMethod::Post, .path = "/%1", .constant = "Cases/share"}};
inline constexpr Operation<mirashare::CreateCaseRequest, mirashare::CreateCaseResponse> createCaseRequest{{.name = "createCaseRequest", .method = HttpMethod::Post, .path = "/%1", .constant = "Cases"}};
inline constexpr Operation<mirashare::AddDataRequest, std::vector<mirashare::CaseFileId>> addNewDataRequest{{"addNewDataRequest", HttpMethod::Post, "Cases/%1/files?api-version=1.0", {"caseId"}}};
inline constexpr Operation<void, PortalCases> getMiraShareCases{{"getMiraShareCases", HttpMethod::Get, "/Patients/%1/cases?InstallationReference=%2&api-version=0.0", {"patientId", "installationId"}}};
// clang-format on

} // namespace operations
