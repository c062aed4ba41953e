#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>

#include <algorithm>
#include <functional>
#include <type_traits>

#include <QHash>
#include <QSet>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/internal/EventLoopWait.h>
#include <platform/core/HostInfo.h>

using collaboration::ExtendedRequestDetails;
using collaboration::RequestInfo;
using collaboration::RequestType;

namespace
{

QString installationReference()
{
    return settings::registry::getInstallationReference(QString());
}

/// The value of a call that succeeded; nothing when it failed or was cancelled.
template <class T>
utility::Optional<T> valueOf(TessalyConnectionInterface::Reply<T> finished)
{
    if (finished.isCanceled())
    {
        return std::nullopt;
    }
    rest::RestReply<T> reply = std::move(finished).take();
    if (kelo::errorCode(reply.status) != KeloErrorCode::Success)
    {
        return std::nullopt;
    }
    return std::move(reply.value);
}

/// The part of an entry that requests of every kind have.
template <class Entry>
collaboration::RequestDetails const& common(Entry const& entry)
{
    if constexpr (std::is_same_v<Entry, collaboration::RequestDetails>)
    {
        return entry;
    }
    else
    {
        return entry.requestDetails;
    }
}

/// A referral that holds nothing from the partner is no news.
bool isNews(collaboration::RequestDetails const& request, RequestType type)
{
    return type != RequestType::Referral
           || std::any_of(
               request.files.begin(), request.files.end(),
               [](collaboration::FileInfo const& file) { return !file.isCreator; });
}

/// The transactions of each request; several if a list holds the request more than once.
QHash<QString, QSet<QString>> transactionsByRequest(std::vector<RequestInfo> const& requests)
{
    QHash<QString, QSet<QString>> transactions;
    for (RequestInfo const& request : requests)
    {
        transactions[request.requestId].insert(request.transactionId);
    }
    return transactions;
}

/// Whether the service has details of such a request.
bool hasDetails(RequestInfo const& request)
{
    return request.requestType >= RequestType::DentalScan && request.requestType <= RequestType::Referral;
}

} // namespace

/// What a sweep sends with every call, and what remains to be done once all calls are out.
struct RequestDetailsRetriever::Dispatch
{
    QString installationId;
    GetRequestDetailsInfo info;
    std::vector<std::function<void()>> attachments;
};

RequestDetailsRetriever::RequestDetailsRetriever(TessalyConnectionInterface const& connection)
    : connection_(connection), mutex_(std::make_shared<std::recursive_mutex>())
{
}

RequestDetailsRetriever::~RequestDetailsRetriever() = default;

void RequestDetailsRetriever::setRequestIds(std::vector<std::pair<QString, RequestType>> const& requestIds)
{
    std::lock_guard const lock(*mutex_);
    requestIds_ = requestIds;
}

void RequestDetailsRetriever::setRequestIds(std::vector<RequestInfo> const& requests)
{
    std::lock_guard const lock(*mutex_);
    requestIds_.clear();
    for (RequestInfo const& request : requests)
    {
        requestIds_.emplace_back(request.requestId, request.requestType);
    }
}

void RequestDetailsRetriever::setOnlyActiveRequests(bool onlyActiveRequests)
{
    std::lock_guard const lock(*mutex_);
    onlyActiveRequests_ = onlyActiveRequests;
}

void RequestDetailsRetriever::execute()
{
    using Interface = TessalyConnectionInterface;
    Dispatch dispatch;
    {
        std::lock_guard const lock(*mutex_);
        ++sweep_;
        success_ = true;
        pendingCalls_ = 0;
        results_.clear();
        dispatch.installationId = installationReference();
        dispatch.info = detailsInfo();
        request(dispatch, RequestType::DentalScan, &Interface::getDentalScanRequestDetails);
        request(dispatch, RequestType::LabDesign, &Interface::getLabDesignRequestDetails);
        request(dispatch, RequestType::TempShell, &Interface::getTempShellRequestDetails);
        request(dispatch, RequestType::Restoration, &Interface::getRestorationRequestDetails);
        request(dispatch, RequestType::Template, &Interface::getTemplateRequestDetails);
        request(dispatch, RequestType::SurgeryPlan, &Interface::getSurgeryPlanRequestDetails);
        request(dispatch, RequestType::CentralizedRestoration, &Interface::getCentralizedRestorationRequestDetails);
        request(dispatch, RequestType::Referral, &Interface::getReferralRequestDetails);
    }
    // Only now, when the number of calls is final, may a reply that is there already be handled.
    for (std::function<void()> const& attach : dispatch.attachments)
    {
        attach();
    }
}

template <class Group>
void RequestDetailsRetriever::request(Dispatch& dispatch, RequestType type, DetailsOperation<Group> operation)
{
    QList<QString> ids = getRequestIds(type);
    if (ids.isEmpty())
    {
        return;
    }
    dispatch.info.setRequestIds(std::move(ids));
    Reply<std::vector<Group>> const reply = (connection_.*operation)(dispatch.installationId, dispatch.info);
    ++pendingCalls_;
    dispatch.attachments.emplace_back(
        [this, reply, type, sweep = sweep_]
        {
            reply.then(
                this, [this, type, sweep](Reply<std::vector<Group>> finished)
                { handleDetails(sweep, type, std::move(finished)); });
        });
}

template <class Group>
void RequestDetailsRetriever::handleDetails(quint64 sweep, RequestType type, Reply<std::vector<Group>> reply)
{
    auto const mutex = mutex_;
    std::lock_guard const lock(*mutex);
    if (sweep != sweep_)
    {
        return;
    }
    auto groups = valueOf(std::move(reply));
    if (groups)
    {
        collect(std::move(*groups), type);
    }
    finishCall(groups.has_value());
}

template <class Group>
void RequestDetailsRetriever::collect(std::vector<Group> groups, RequestType type)
{
    for (Group& group : groups)
    {
        for (auto& entry : group.collaborationRequestDetailInfos)
        {
            if (isNews(common(entry), type))
            {
                results_.push_back(collaboration::extendedDetails(group.partner, std::move(entry), type));
            }
        }
    }
}

void RequestDetailsRetriever::finishCall(bool ok)
{
    success_ = success_ && ok;
    --pendingCalls_;
    if (pendingCalls_ == 0)
    {
        Q_EMIT finished();
    }
}

void RequestDetailsRetriever::getUpdates(std::vector<RequestType> const& types, std::vector<RequestInfo>& known)
{
    GetRequestsInfo info;
    info.setOnlyActiveRequests(false);
    info.setVersionNumber(CollaborationRequestVersion::getVersion());
    info.setSelectedTypes(types);
    quint64 poll = 0;
    {
        std::lock_guard const lock(*mutex_);
        poll = ++lastPoll_;
    }
    connection_.getRequests(installationReference(), std::move(info))
        .then(
            this, [this, poll, known = known](Reply<std::vector<RequestInfo>> reply)
            { handleList(poll, known, std::move(reply)); });
}

void RequestDetailsRetriever::handleList(
    quint64 poll, std::vector<RequestInfo> const& known, Reply<std::vector<RequestInfo>> reply)
{
    auto const mutex = mutex_;
    std::lock_guard const lock(*mutex);
    auto const received = valueOf(std::move(reply));
    if (!received)
    {
        Q_EMIT failed(QStringLiteral("Failed to get request transaction ids"));
    }
    else if (poll < handledPoll_)
    {
        Q_EMIT finished();
    }
    else
    {
        handledPoll_ = poll;
        handleUpdates(known, *received);
    }
}

void RequestDetailsRetriever::handleUpdates(
    std::vector<RequestInfo> const& known, std::vector<RequestInfo> const& received)
{
    auto const knownTransactions = transactionsByRequest(known);
    auto const receivedTransactions = transactionsByRequest(received);
    removedRequestIds_.clear();
    for (RequestInfo const& request : known)
    {
        if (!receivedTransactions.contains(request.requestId))
        {
            removedRequestIds_.append(request.requestId);
        }
    }
    std::vector<RequestInfo> changed;
    for (RequestInfo const& request : received)
    {
        if (knownTransactions.value(request.requestId) != QSet<QString>{request.transactionId})
        {
            changed.push_back(request);
        }
    }
    setRequestIds(changed);
    if (std::any_of(changed.begin(), changed.end(), &hasDetails))
    {
        execute();
        return;
    }
    // There is nothing to fetch. What a sweep that still runs has gathered is not this poll's to clear.
    if (pendingCalls_ == 0)
    {
        success_ = true;
        results_.clear();
    }
    Q_EMIT finished();
}

std::vector<ExtendedRequestDetails> RequestDetailsRetriever::getAllRequestDetails() const
{
    return results_;
}

QList<QString> const& RequestDetailsRetriever::getRemovedRequestIds() const
{
    return removedRequestIds_;
}

bool RequestDetailsRetriever::isSuccess() const
{
    return success_;
}

utility::Optional<ExtendedRequestDetails> RequestDetailsRetriever::getRestorationRequestDetails(
    RequestInfo const& request) const
{
    return lookUp(
        request.requestId, RequestType::Restoration, &TessalyConnectionInterface::getRestorationRequestDetails);
}

utility::Optional<ExtendedRequestDetails> RequestDetailsRetriever::getCentralizedRestorationRequestDetails(
    RequestInfo const& request) const
{
    return lookUp(
        request.requestId, RequestType::CentralizedRestoration,
        &TessalyConnectionInterface::getCentralizedRestorationRequestDetails);
}

utility::Optional<ExtendedRequestDetails> RequestDetailsRetriever::lookUp(
    QString requestId, RequestType type, RestorationOperation operation) const
{
    GetRequestDetailsInfo info = detailsInfo();
    info.setRequestIds({requestId});
    auto reply = (connection_.*operation)(installationReference(), std::move(info));
    // The events that run meanwhile may end the retriever's life, and the life of what the caller passed.
    KeloCommunicationLib::internal::waitWithEventLoop(reply);
    auto groups = valueOf(std::move(reply)).value_or(std::vector<collaboration::RestorationRequestDetail>());
    for (auto& group : groups)
    {
        for (collaboration::RestorationRequest& entry : group.collaborationRequestDetailInfos)
        {
            if (entry.requestDetails.id == requestId)
            {
                return collaboration::extendedDetails(group.partner, std::move(entry), type);
            }
        }
    }
    return std::nullopt;
}

QList<QString> RequestDetailsRetriever::getRequestIds(RequestType type) const
{
    QList<QString> ids;
    for (auto const& [id, idType] : requestIds_)
    {
        if (idType == type)
        {
            ids.append(id);
        }
    }
    return ids;
}

GetRequestDetailsInfo RequestDetailsRetriever::detailsInfo() const
{
    std::lock_guard const lock(*mutex_);
    return GetRequestDetailsInfo(
        onlyActiveRequests_, CollaborationRequestVersion::getVersion(), QList<QString>(), RequestType::Unset);
}
