#pragma once

#include "simulator/State.h"

/// What each record of the state is made of: the one list by which it is written and read.
namespace simulator
{

/// Bytes that are no text.
struct Binary
{
    QByteArray& bytes;
};

template <class Visitor>
void members(Visitor& visit, PartnerConnection& connection)
{
    visit("Id", connection.id);
    visit("Installation", connection.installation);
    visit("PartnerId", connection.partnerId);
    visit("Name", connection.name);
    visit("ZipCode", connection.zipCode);
    visit("IsInitiator", connection.isInitiator);
    visit("Status", connection.status);
}

template <class Visitor>
void members(Visitor& visit, Session& session)
{
    visit("Id", session.id);
    visit("Installation", session.installation);
    visit("ConnectionId", session.connectionId);
}

template <class Visitor>
void members(Visitor& visit, CollaborationFile& file)
{
    visit("Id", file.id);
    visit("Name", file.name);
    visit("FileType", file.fileType);
    visit("Size", file.size);
    visit("ChunkSize", file.chunkSize);
    visit("CreatedBy", file.createdBy);
    visit("IsOwn", file.isOwn);
    visit("IsUploaded", file.isUploaded);
    visit("IsSeen", file.isSeen);
}

template <class Visitor>
void members(Visitor& visit, Note& note)
{
    visit("Text", note.text);
    visit("CreatedAt", note.createdAt);
    visit("CreatedBy", note.createdBy);
    visit("IsOwn", note.isOwn);
}

template <class Visitor>
void members(Visitor& visit, Patient& patient)
{
    visit("Id", patient.id);
    visit("FirstName", patient.firstName);
    visit("LastName", patient.lastName);
    visit("DateOfBirth", patient.dateOfBirth);
    visit("Gender", patient.gender);
}

template <class Visitor>
void members(Visitor& visit, ImplantConnection& implant)
{
    visit("Id", implant.id);
    visit("Tooth", implant.tooth);
    visit("ManufacturerId", implant.manufacturerId);
    visit("Category", implant.category);
    visit("Size", implant.size);
}

template <class Visitor>
void members(Visitor& visit, Restoration& restoration)
{
    visit("FirstTooth", restoration.firstTooth);
    visit("LastTooth", restoration.lastTooth);
    visit("Type", restoration.type);
    visit("Material", restoration.material);
    visit("Color", restoration.color);
    visit("Note", restoration.note);
    visit("BarType", restoration.barType);
    visit("UseAuthenticProducts", restoration.useAuthenticProducts);
    visit("Implants", restoration.implants);
}

template <class Visitor>
void members(Visitor& visit, CollaborationRequest& request)
{
    visit("Id", request.id);
    visit("TransactionId", request.transactionId);
    visit("Key", request.key);
    visit("Installation", request.installation);
    visit("ConnectionId", request.connectionId);
    visit("Kind", request.kind);
    visit("Status", request.status);
    visit("Version", request.version);
    visit("Metadata", request.metadata);
    visit("DueDate", request.dueDate);
    visit("CreatedAt", request.createdAt);
    visit("FileIds", request.fileIds);
    visit("Notes", request.notes);
    visit("InternalCaseIdentifier", request.internalCaseIdentifier);
    visit("OrderReference", request.orderReference);
    visit("TreatingClinician", request.treatingClinician);
    visit("RequesterPatientReference", request.requesterPatientReference);
    visit("Patient", request.patient);
    visit("Restorations", request.restorations);
    visit("IsFileLocked", request.isFileLocked);
}

template <class Visitor>
void members(Visitor& visit, Collaboration& collaboration)
{
    visit("Connections", collaboration.connections);
    visit("Sessions", collaboration.sessions);
    visit("Requests", collaboration.requests);
    visit("Files", collaboration.files);
}

template <class Visitor>
void members(Visitor& visit, PortalCase& portalCase)
{
    visit("Id", portalCase.id);
    visit("Installation", portalCase.installation);
    visit("PatientId", portalCase.patientId);
    visit("Name", portalCase.name);
    visit("Status", portalCase.status);
    visit("CreatedBy", portalCase.createdBy);
    visit("CreatedAt", portalCase.createdAt);
    visit("SharedWith", portalCase.sharedWith);
    visit("Files", portalCase.files);
}

template <class Visitor>
void members(Visitor& visit, Article& article)
{
    visit("Id", article.id);
    visit("Installation", article.installation);
    visit("Cents", article.cents);
    visit("IsForTeeth", article.isForTeeth);
}

template <class Visitor>
void members(Visitor& visit, ShippingAddress& address)
{
    visit("Id", address.id);
    visit("Installation", address.installation);
    visit("Name", address.name);
    visit("Street", address.street);
    visit("PostalCode", address.postalCode);
    visit("City", address.city);
    visit("Region", address.region);
    visit("Country", address.country);
}

template <class Visitor>
void members(Visitor& visit, UploadSlot& slot)
{
    visit("Id", slot.id);
    visit("Name", slot.name);
    visit("Size", slot.size);
    visit("Md5", slot.md5);
    visit("ReceivedBytes", slot.receivedBytes);
    visit("Uploads", slot.uploads);
}

template <class Visitor>
void members(Visitor& visit, OrderItem& item)
{
    visit("ArticleNumber", item.articleNumber);
    visit("Quantity", item.quantity);
    visit("FirstTooth", item.firstTooth);
    visit("LastTooth", item.lastTooth);
    visit("Files", item.files);
}

template <class Visitor>
void members(Visitor& visit, Order& order)
{
    visit("Id", order.id);
    visit("ProductionIdentifier", order.productionIdentifier);
    visit("Kind", order.kind);
    visit("Installation", order.installation);
    visit("State", order.state);
    visit("Items", order.items);
    visit("Request", order.request);
}

template <class Visitor>
void members(Visitor& visit, Orders& orders)
{
    visit("Articles", orders.articles);
    visit("Addresses", orders.addresses);
    visit("Orders", orders.orders);
}

template <class Visitor>
void members(Visitor& visit, PartnerPlatform& platform)
{
    visit("Id", platform.id);
    visit("Installation", platform.installation);
    visit("Name", platform.name);
    visit("ShouldCreateConnection", platform.shouldCreateConnection);
    visit("ShouldAnonymize", platform.shouldAnonymize);
    visit("Logo", platform.logo);
}

template <class Visitor>
void members(Visitor& visit, PartnerAccount& account)
{
    visit("Id", account.id);
    visit("Installation", account.installation);
    visit("PartnerId", account.partnerId);
    visit("UserName", account.userName);
    visit("GivenName", account.givenName);
    visit("IsConnected", account.isConnected);
}

template <class Visitor>
void members(Visitor& visit, PartnerCase& partnerCase)
{
    visit("CaseId", partnerCase.caseId);
    visit("AccountId", partnerCase.accountId);
    visit("Installation", partnerCase.installation);
    visit("PatientId", partnerCase.patientId);
    visit("Status", partnerCase.status);
    visit("CreatedAt", partnerCase.createdAt);
    visit("AllowsUpdates", partnerCase.allowsUpdates);
    visit("PlatformCaseId", partnerCase.platformCaseId);
}

template <class Visitor>
void members(Visitor& visit, Partners& partners)
{
    visit("Platforms", partners.platforms);
    visit("CollaboratorLogos", partners.collaboratorLogos);
    visit("Accounts", partners.accounts);
    visit("Cases", partners.cases);
}

template <class Visitor>
void members(Visitor& visit, StatisticsUpload& upload)
{
    Binary data = {upload.data};
    visit("Type", upload.type);
    visit("Data", data);
    visit("ReceivedAt", upload.receivedAt);
}

template <class Visitor>
void members(Visitor& visit, Account& account)
{
    visit("Installation", account.installation);
    visit("AccountId", account.accountId);
    visit("AccountName", account.accountName);
    visit("Email", account.email);
    visit("Token", account.token);
    visit("SiteId", account.siteId);
    visit("TwoFactorEnabled", account.twoFactorEnabled);
    visit("TwoFactorRefreshTime", account.twoFactorRefreshTime);
}

template <class Visitor>
void members(Visitor& visit, Accounts& accounts)
{
    visit("Accounts", accounts.accounts);
    visit("Addresses", accounts.addresses);
}

template <class Visitor>
void members(Visitor& visit, Document& document)
{
    visit("Installation", document.installation);
    visit("Kind", document.kind);
    visit("FileId", document.fileId);
    visit("FileName", document.fileName);
    visit("FileSize", document.fileSize);
    visit("Language", document.language);
}

template <class Visitor>
void members(Visitor& visit, Release& release)
{
    visit("Installation", release.installation);
    visit("Version", release.version);
    visit("IsForced", release.isForced);
}

template <class Visitor>
void members(Visitor& visit, Documents& documents)
{
    visit("Documents", documents.documents);
    visit("Releases", documents.releases);
}

template <class Visitor>
void members(Visitor& visit, User& user)
{
    visit("Installation", user.installation);
    visit("Reference", user.reference);
    visit("FirstName", user.firstName);
    visit("LastName", user.lastName);
    visit("UserName", user.userName);
    visit("PasswordHash", user.passwordHash);
    visit("Email", user.email);
    visit("TwoFactorKey", user.twoFactorKey);
}

template <class Visitor>
void members(Visitor& visit, ClinicalPartner& partner)
{
    visit("ParticipantId", partner.participantId);
    visit("Name", partner.name);
}

template <class Visitor>
void members(Visitor& visit, Study& study)
{
    visit("Installation", study.installation);
    visit("Id", study.id);
    visit("Name", study.name);
    visit("Partners", study.partners);
}

template <class Visitor>
void members(Visitor& visit, AuthenticationKey& key)
{
    visit("Installation", key.installation);
    visit("Key", key.key);
}

template <class Visitor>
void members(Visitor& visit, Users& users)
{
    visit("Users", users.users);
    visit("Studies", users.studies);
    visit("Keys", users.keys);
}

template <class Visitor>
void members(Visitor& visit, Catalog& catalog)
{
    visit("Installation", catalog.installation);
    visit("Version", catalog.version);
    visit("OldestUsable", catalog.oldestUsable);
    visit("FileId", catalog.fileId);
    visit("FileSize", catalog.fileSize);
}

/// Not the random numbers, which are drawn from only while a state is seeded.
template <class Visitor>
void members(Visitor& visit, State& state)
{
    visit("Now", state.now);
    visit("LastNumbers", state.lastNumbers);
    visit("Installations", state.installations);
    visit("Collaboration", state.collaboration);
    visit("Cases", state.cases);
    visit("Orders", state.orders);
    visit("Partners", state.partners);
    visit("Statistics", state.statistics);
    visit("Accounts", state.accounts);
    visit("Documents", state.documents);
    visit("Users", state.users);
    visit("Catalogs", state.catalogs);
}

} // namespace simulator
