#include <KeloCommunicationLib/json/internal/Converters.h>
#include <KeloCommunicationLib/partners/internal/PartnerFields.h>

KELO_READABLE(PartnerInfo);
KELO_READABLE(PartnerAccountInfo);
KELO_READABLE(PartnerCaseInfo);

KELO_READABLE(mirashare::MiraShareItemData);
KELO_WRITABLE(mirashare::CaseFileInfo);
KELO_WRITABLE(mirashare::Prescription);
KELO_WRITABLE(mirashare::CreateCaseRequest);
KELO_READABLE(mirashare::CaseFileId);
KELO_READABLE(mirashare::CreateCaseResponse);
KELO_WRITABLE(mirashare::Cases);
KELO_WRITABLE(mirashare::AddDataRequest);
KELO_READABLE(mirashare::CaseStatusResponse);
KELO_WRITABLE(mirashare::SharePartnerCaseRequest);
KELO_READABLE(mirashare::TestAccountConnectionResponse);

KELO_READABLE(operations::PortalCases);
