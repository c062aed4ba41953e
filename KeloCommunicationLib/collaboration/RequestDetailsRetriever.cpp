#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>

#include <algorithm>
#include <type_traits>
#include <unordered_map>

#include <QStringView>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/internal/EventLoopWait.h>
#include <platform/core/HostInfo.h>
#include <platform/threading/Future.h>

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

/// What a poll needs to know of a request that the host knows.
struct KnownRequest
{
    utility::Optional<QStringView> transaction; ///< nothing if it is known with several
    bool isListed = false;                      ///< the service still has it
};

std::unordered_map<QStringView, KnownRequest> byId(std::vector<RequestInfo> const& known)
{
    std::unordered_map<QStringView, KnownRequest> requests(known.size());
    for (RequestInfo const& request : known)
    {
        auto const [entry, isFirst] =
            requests.try_emplace(request.requestId, KnownRequest{.transaction = request.transactionId});
        if (!isFirst && entry->second.transaction != request.transactionId)
        {
            entry->second.transaction.reset();
        }
    }
    return requests;
}

} // namespace

/// What a sweep sends with every call, and the calls that are out.
struct RequestDetailsRetriever::Dispatch
{
    QString installationId;
    GetRequestDetailsInfo info;
    std::vector<threading::Future<utility::Optional<Details>>> calls;
    std::shared_ptr<Results> results = std::make_shared<Results>();
    /// What earlier sweeps have gathered. The first call takes it along, so that it is destroyed where that one ends.
    std::shared_ptr<Results> replaced = std::make_shared<Results>();
};

/// What a list of the service's tells of the known requests.
struct RequestDetailsRetriever::Updates
{
    QList<QString> removed;
    std::vector<std::pair<QString, RequestType>> changed;
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
    startSweep(true);
}

bool RequestDetailsRetriever::startSweep(bool evenIfEmpty)
{
    using Interface = TessalyConnectionInterface;
    Dispatch dispatch;
    {
        std::lock_guard const lock(*mutex_);
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
        if (dispatch.calls.empty() && !evenIfEmpty)
        {
            return false;
        }
        success_ = true;
        pendingCalls_ = dispatch.calls.size();
        dispatch.replaced->swap(*results_);
        results_ = dispatch.results;
    }
    // Only now, when the number of calls is final, may a reply that is there already be handled.
    for (auto& call : dispatch.calls)
    {
        // Only the continuation may keep a handle, or it would have to copy the details.
        auto const last = std::move(call);
        last.then(
            this, [this, sweep = std::weak_ptr(dispatch.results)](threading::Future<utility::Optional<Details>> details)
            { handleDetails(sweep, std::move(details).take()); });
    }
    return !dispatch.calls.empty();
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
    // The reply comes on any thread, perhaps when the retriever is gone: the continuation has only what is its own.
    auto const replaced = dispatch.calls.empty() ? dispatch.replaced : nullptr;
    dispatch.calls.push_back(
        (connection_.*operation)(dispatch.installationId, dispatch.info)
            .then([type, replaced, sweep = std::weak_ptr(dispatch.results)](Reply<std::vector<Group>> reply)
                  { return sweep.expired() ? std::nullopt : detailsOf(std::move(reply), type); }));
}

template <class Group>
utility::Optional<RequestDetailsRetriever::Details> RequestDetailsRetriever::detailsOf(
    Reply<std::vector<Group>> reply, RequestType type)
{
    auto groups = valueOf(std::move(reply));
    if (!groups)
    {
        return std::nullopt;
    }
    std::size_t count = 0;
    for (Group const& group : *groups)
    {
        count += group.collaborationRequestDetailInfos.size();
    }
    Details details;
    details.reserve(count);
    for (Group& group : *groups)
    {
        for (auto& entry : group.collaborationRequestDetailInfos)
        {
            if (isNews(common(entry), type))
            {
                details.push_back(collaboration::extendedDetails(group.partner, std::move(entry), type));
            }
        }
    }
    return details;
}

void RequestDetailsRetriever::handleDetails(std::weak_ptr<Results> const& sweep, utility::Optional<Details> details)
{
    auto const mutex = mutex_;
    std::lock_guard const lock(*mutex);
    if (sweep.lock() != results_)
    {
        return;
    }
    success_ = success_ && details.has_value();
    if (details)
    {
        results_->push_back(std::move(*details));
    }
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
        .then([known](Reply<std::vector<RequestInfo>> reply) { return updatesOf(known, std::move(reply)); })
        .then(
            this, [this, poll](threading::Future<utility::Optional<Updates>> updates)
            { handleUpdates(poll, std::move(updates).take()); });
}

utility::Optional<RequestDetailsRetriever::Updates> RequestDetailsRetriever::updatesOf(
    std::vector<RequestInfo> const& known, Reply<std::vector<RequestInfo>> reply)
{
    auto const received = valueOf(std::move(reply));
    if (!received)
    {
        return std::nullopt;
    }
    Updates updates;
    auto knownById = byId(known);
    for (RequestInfo const& request : *received)
    {
        auto const entry = knownById.find(request.requestId);
        bool const isKnown = entry != knownById.end();
        if (isKnown)
        {
            entry->second.isListed = true;
        }
        if (!isKnown || entry->second.transaction != request.transactionId)
        {
            updates.changed.emplace_back(request.requestId, request.requestType);
        }
    }
    for (RequestInfo const& request : known)
    {
        if (!knownById[request.requestId].isListed)
        {
            updates.removed.append(request.requestId);
        }
    }
    return updates;
}

void RequestDetailsRetriever::handleUpdates(quint64 poll, utility::Optional<Updates> updates)
{
    auto const mutex = mutex_;
    std::lock_guard const lock(*mutex);
    if (!updates)
    {
        Q_EMIT failed(QStringLiteral("Failed to get request transaction ids"));
        return;
    }
    if (poll >= handledPoll_)
    {
        handledPoll_ = poll;
        removedRequestIds_.swap(updates->removed);
        requestIds_.swap(updates->changed);
        // With nothing to fetch, a sweep that runs goes on and keeps what it has gathered.
        if (startSweep(pendingCalls_ == 0))
        {
            return;
        }
    }
    Q_EMIT finished();
}

std::vector<ExtendedRequestDetails> RequestDetailsRetriever::getAllRequestDetails() const
{
    std::size_t count = 0;
    for (Details const& details : *results_)
    {
        count += details.size();
    }
    std::vector<ExtendedRequestDetails> all;
    all.reserve(count);
    for (Details const& details : *results_)
    {
        all.insert(all.end(), details.begin(), details.end());
    }
    return all;
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
