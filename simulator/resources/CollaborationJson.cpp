#include "simulator/State.h"

#include <QMap>

namespace simulator
{

namespace
{

QString isoTime(QDateTime const& time)
{
    return time.toString(Qt::ISODateWithMs);
}

template <typename List, typename Writer>
QJsonArray arrayOf(List const& list, Writer writer)
{
    QJsonArray array;
    for (auto const& element : list)
    {
        array.append(writer(element));
    }
    return array;
}

QJsonObject fileJson(CollaborationFile const& file)
{
    auto const chunkSize = file.chunkSize > 0 ? file.chunkSize : file.size;
    return {
        {"Id", file.id},
        {"State", file.isUploaded ? 1 : 0},
        {"Name", file.name},
        {"Size", file.size},
        {"NumberOfChunks", chunkSize > 0 ? (file.size + chunkSize - 1) / chunkSize : 0},
        {"ChunkSize", file.chunkSize},
        {"FileType", file.fileType},
        {"CreatedBy", file.createdBy},
        {"IsCreator", file.isOwn},
        {"IsMarkedAsSeen", file.isSeen},
    };
}

QJsonObject noteJson(Note const& note)
{
    return {
        {"Text", note.text},
        {"CreatedAt", isoTime(note.createdAt)},
        {"CreatedBy", note.createdBy},
        {"IsCreator", note.isOwn},
    };
}

QJsonObject implantJson(ImplantConnection const& implant)
{
    return {
        {"ToothNumber", implant.tooth},
        {"ImplantConnectionId", implant.id},
        {"ManufacturerId", implant.manufacturerId},
        {"ImplantCategory", implant.category},
        {"Size", implant.size},
    };
}

QJsonObject restorationJson(Restoration const& restoration)
{
    return {
        {"ImplantConnections", arrayOf(restoration.implants, implantJson)},
        {"ToothNumberStart", restoration.firstTooth},
        {"ToothNumberEnd", restoration.lastTooth},
        {"Type", restoration.type},
        {"Material", restoration.material},
        {"Color", restoration.color},
        {"Note", restoration.note},
        {"UseAuthenticProducts", restoration.useAuthenticProducts},
        {"BarType", restoration.barType},
    };
}

QString portalUrl(char const* page, QString const& requestId)
{
    return QStringLiteral("https://portal.kelo.example/%1/%2").arg(QLatin1String(page), requestId);
}

void addMembersOfKind(QJsonObject& json, CollaborationRequest const& request)
{
    switch (request.kind)
    {
    case RequestKind::Template:
        json.insert("OrderId", request.orderReference);
        break;
    case RequestKind::Restoration:
    case RequestKind::CentralizedRestoration:
        json.insert("Restorations", arrayOf(request.restorations, restorationJson));
        json.insert("RestorationURL", portalUrl("restorations", request.id));
        break;
    case RequestKind::SurgeryPlan:
        json.insert("SurgeryPlanURL", portalUrl("surgeryplans", request.id));
        json.insert("RequesterPatientReference", request.requesterPatientReference);
        break;
    case RequestKind::Referral:
        json.insert("ReferralURL", portalUrl("referrals", request.id));
        json.insert("RequesterPatientReference", request.requesterPatientReference);
        break;
    case RequestKind::DentalScan:
    case RequestKind::LabDesign:
    case RequestKind::TempShell:
        break;
    }
}

} // namespace

QJsonObject toJson(PartnerConnection const& connection)
{
    return {
        {"ConnectionId", connection.id},
        {"Name", connection.name},
        {"IsInitiator", connection.isInitiator},
        {"ZipCode", connection.zipCode},
        {"Status", connectionStatusTexts.at(static_cast<std::size_t>(connection.status))},
    };
}

QJsonObject toJson(CollaborationRequest const& request, IdList<CollaborationFile> const& files)
{
    QJsonObject json = {
        {"Id", request.id},
        {"TransactionId", request.transactionId},
        {"Key", request.key},
        {"Status", request.status},
        {"VersionNumber", request.version},
        {"Metadata", request.metadata},
        {"DueDate", request.dueDate.toString(Qt::ISODate)},
        {"CreationTimestamp", isoTime(request.createdAt)},
        {"Files", arrayOf(request.fileIds, [&files](QString const& id) { return fileJson(*files.find(id)); })},
        {"NoteInfos", arrayOf(request.notes, noteJson)},
        {"InternalCaseIdentifier", request.internalCaseIdentifier},
        {"OrderReference", request.orderReference},
        {"TreatingClinician", request.treatingClinician},
        {"PatientId", request.patient.id},
        {"PatientFirstName", request.patient.firstName},
        {"PatientLastName", request.patient.lastName},
        {"PatientDateOfBirth", request.patient.dateOfBirth.toString(Qt::ISODate)},
        {"PatientGender", request.patient.gender},
    };
    addMembersOfKind(json, request);
    return json;
}

QJsonArray groupedByPartner(State const& state, std::vector<CollaborationRequest const*> const& requests)
{
    QStringList order;
    QMap<QString, QJsonArray> entries;
    for (auto const* request : requests)
    {
        if (!entries.contains(request->connectionId))
        {
            order << request->connectionId;
        }
        entries[request->connectionId].append(toJson(*request, state.collaboration.files));
    }
    return arrayOf(
        order,
        [&](QString const& connectionId)
        {
            auto const partner = partnerOf(state, connectionId);
            return QJsonObject{
                {"PartnershipId", partner.id},
                {"Id", partner.partnerId},
                {"PartnerName", partner.name},
                {"CollaborationRequestDetailInfos", entries[connectionId]},
            };
        });
}

} // namespace simulator
