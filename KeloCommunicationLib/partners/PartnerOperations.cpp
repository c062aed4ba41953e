#include <QJsonArray>
#include <QJsonDocument>
#include <QLatin1String>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>
#include <KeloCommunicationLib/partners/internal/LogoChain.h>

namespace
{

QString logoPath(QString const& installationId, QString const& partnerId)
{
    return pipeline::path("/Installations/%1/partners/%2/logo", installationId, partnerId);
}

/// Fetches logos over the connection, also from a continuation that runs while the connection is being destroyed.
///
/// The reference cannot dangle: the chain asks for logos only inside the completion of its list request, and not if
/// that was cancelled. A connection's destructor cancels its pending calls and waits for completions that run on other
/// threads, so such a completion ends before the `rest::Connection` does. What is derived from it may be gone by then;
/// therefore the chain holds the base and calls none of the connection's virtual functions.
logos::Source logoSource(rest::Connection const& connection, QString const& installationId)
{
    return [&connection, installationId](QString const& partnerId)
    { return pipeline::download(connection, logoPath(installationId, partnerId)); };
}

/// The portal's cases stand under "Cases", whatever stands beside them.
struct MiraShareCases
{
    static std::vector<mirashare::MiraShareItemData> read(QJsonDocument const& document)
    {
        using Converter = jsonSerializer::implementation::FromJSON<std::vector<mirashare::MiraShareItemData>, 1>;
        return Converter::convert(QJsonDocument(document.object().value(QLatin1String("Cases")).toArray()));
    }
};

} // namespace

TessalyConnectionInterface::Reply<std::vector<PartnerInfo>> TessalyConnection::getPartners(
    QString const& installationId, bool withLogos) const
{
    auto const list = get<std::vector<PartnerInfo>>(pipeline::path("/Installations/%1/partners", installationId));
    return withLogos ? logos::addTo(list, logoSource(*this, installationId)) : list;
}

threading::Future<QByteArray> TessalyConnection::getPartnerLogo(
    QString const& installationId, QString const& partnerId) const
{
    return download(logoPath(installationId, partnerId));
}

TessalyConnectionInterface::Reply<std::vector<PartnerAccountInfo>> TessalyConnection::getPartnerAccounts(
    QString const& installationId) const
{
    return get<std::vector<PartnerAccountInfo>>(pipeline::path("/Installations/%1/PartnerConnections", installationId));
}

TessalyConnectionInterface::Reply<std::vector<PartnerCaseInfo>> TessalyConnection::getPartnerCases(
    QString const& installationId, QString const& patientId) const
{
    auto const list = get<std::vector<PartnerCaseInfo>>(
        pipeline::path("/Installations/%1/PartnerCases/patients/%2", installationId, patientId));
    return logos::addTo(list, logoSource(*this, installationId));
}

TessalyConnectionInterface::Reply<std::vector<mirashare::CaseStatusResponse>>
TessalyConnection::updatePartnerCasesStatus(QString const& installationId, mirashare::Cases const& cases) const
{
    return post<std::vector<mirashare::CaseStatusResponse>>(
        pipeline::path("/Installations/%1/partnercases/refresh-status", installationId), jsonSerializer::toJson(cases));
}

TessalyConnectionInterface::Reply<mirashare::TestAccountConnectionResponse> TessalyConnection::testAccountConnection(
    QString const& installationId, QString const& partnerConnectionId) const
{
    return get<mirashare::TestAccountConnectionResponse>(pipeline::path(
        "/Installations/%1/test-connection?partnerConnectionId=%2", installationId, partnerConnectionId));
}

TessalyConnectionInterface::Reply<void> TessalyConnection::sharePartnerCaseRequest(
    mirashare::SharePartnerCaseRequest const& request) const
{
    return post<void>(pipeline::path("/%1", QStringLiteral("Cases/share")), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<mirashare::CreateCaseResponse> TessalyConnection::createCaseRequest(
    mirashare::CreateCaseRequest const& request) const
{
    return post<mirashare::CreateCaseResponse>(
        pipeline::path("/%1", QStringLiteral("Cases")), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<std::vector<mirashare::CaseFileId>> TessalyConnection::addNewDataRequest(
    mirashare::AddDataRequest const& request) const
{
    return post<std::vector<mirashare::CaseFileId>>(
        pipeline::path("Cases/%1/files?api-version=1.0", request.caseId), jsonSerializer::toJson(request));
}

TessalyConnectionInterface::Reply<std::vector<mirashare::MiraShareItemData>> TessalyConnection::getMiraShareCases(
    QString const& patientId, QString const& installationReference) const
{
    QUrl const url(
        pipeline::path("/Patients/%1/cases?InstallationReference=%2&api-version=0.0", patientId, installationReference),
        QUrl::TolerantMode);
    return pipeline::send<std::vector<mirashare::MiraShareItemData>, MiraShareCases>(
        *this, rest::RequestDataCreator::makeRequest(rest::HttpMethod::Get, url));
}
