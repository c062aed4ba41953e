#include <KeloCommunicationLib/partners/PartnerOperations.h>

#include <utility>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>
#include <KeloCommunicationLib/partners/internal/LogoChain.h>

using namespace KeloCommunicationLib::internal;

namespace
{

template <class T>
using Reply = TessalyConnectionInterface::Reply<T>;

/// Fetches logos over the connection, also from a continuation that runs while the connection is being destroyed.
///
/// The reference cannot dangle: the chain asks for logos only inside the completion of its list request, and not if
/// that was cancelled. A connection's destructor cancels its pending calls and waits for completions that run on other
/// threads, so such a completion ends before the `rest::Connection` does. What is derived from it may be gone by then;
/// therefore the chain holds the base and calls none of the connection's virtual functions.
logos::Source logoSource(rest::Connection const& connection, QString const& installationId)
{
    return [&connection, installationId](QString const& partnerId)
    {
        return KeloCommunicationLib::internal::download(
            connection, urlOf(operations::getPartnerLogo, {installationId, partnerId}));
    };
}

} // namespace

Reply<std::vector<PartnerInfo>> TessalyConnection::getPartners(QString const& installationId, bool withLogos) const
{
    return withLogos ? logos::addTo<PartnerInfo>(
               *this, requestTo(operations::getPartners, {installationId}), logoSource(*this, installationId))
                     : call(*this, operations::getPartners, {installationId});
}

threading::Future<QByteArray> TessalyConnection::getPartnerLogo(
    QString const& installationId, QString const& partnerId) const
{
    return download(pathOf(operations::getPartnerLogo, {installationId, partnerId}));
}

Reply<std::vector<PartnerAccountInfo>> TessalyConnection::getPartnerAccounts(QString const& installationId) const
{
    return call(*this, operations::getPartnerAccounts, {installationId});
}

Reply<std::vector<PartnerCaseInfo>> TessalyConnection::getPartnerCases(
    QString const& installationId, QString const& patientId) const
{
    return logos::addTo<PartnerCaseInfo>(
        *this, requestTo(operations::getPartnerCases, {installationId, patientId}), logoSource(*this, installationId));
}

Reply<std::vector<mirashare::CaseStatusResponse>> TessalyConnection::updatePartnerCasesStatus(
    QString const& installationId, mirashare::Cases const& cases) const
{
    return call(*this, operations::updatePartnerCasesStatus, {installationId}, cases);
}

Reply<mirashare::TestAccountConnectionResponse> TessalyConnection::testAccountConnection(
    QString const& installationId, QString const& partnerConnectionId) const
{
    return call(*this, operations::testAccountConnection, {installationId, partnerConnectionId});
}

Reply<void> TessalyConnection::sharePartnerCaseRequest(mirashare::SharePartnerCaseRequest const& request) const
{
    return call(*this, operations::sharePartnerCaseRequest, {}, request);
}

Reply<mirashare::CreateCaseResponse> TessalyConnection::createCaseRequest(
    mirashare::CreateCaseRequest const& request) const
{
    return call(*this, operations::createCaseRequest, {}, request);
}

Reply<std::vector<mirashare::CaseFileId>> TessalyConnection::addNewDataRequest(
    mirashare::AddDataRequest const& request) const
{
    return call(*this, operations::addNewDataRequest, {request.caseId}, request);
}

Reply<std::vector<mirashare::MiraShareItemData>> TessalyConnection::getMiraShareCases(
    QString const& patientId, QString const& installationReference) const
{
    using Cases = rest::RestReply<std::vector<mirashare::MiraShareItemData>>;
    return sendFor<operations::PortalCases, Cases>(
        *this, requestTo(operations::getMiraShareCases, {patientId, installationReference}),
        [](rest::RestReply<operations::PortalCases>&& reply, threading::Promise<Cases> promise) {
            std::move(promise).setValue({std::move(reply.status), std::move(reply.value.cases)});
        });
}
