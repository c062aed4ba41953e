#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>

#include <algorithm>
#include <type_traits>
#include <unordered_map>

#include <QDebug>
#include <QStringView>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/internal/EventLoopWait.h>
#include <KeloCommunicationLib/connection/internal/PlatformExtras.h>
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

/// The service refuses such calls with words that do not tell the host its mistake.
void warnWithoutInstallation(char const* method)
{
    if (installationReference().isEmpty())
    {
        qWarning() << method << "The host environment names no installation.";
    }
}

/// The reply of a finished call; that of one without an answer when it was cancelled.
template <class T>
rest::RestReply<T> replyOf(TessalyConnectionInterface::Reply<T> finished)
{
    if (!finished.isCanceled())
    {
        return KeloCommunicationLib::internal::taken(std::move(finished));
    }
    rest::RestReply<T> reply;
    reply.status.kind = 1;
    reply.status.message = QStringLiteral("The call was cancelled.");
    return reply;
}

bool isSuccessful(rest::RestReplyStatus const& status)
{
    return kelo::errorCode(status) == KeloErrorCode::Success;
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
    std::vector<std::pair<RequestType, Reply<Details>>> calls;
    std::shared_ptr<Results> results = std::make_shared<Results>();
    /// What earlier sweeps have gathered. The first call takes it along, so that it is destroyed where that one ends.
    std::shared_ptr<Results> replaced = std::make_shared<Results>();
};

/// What a list of the service's tells of the known requests.
struct RequestDetailsRetriever::Updates
{
    QList<QString> removed;
    std::vector<RequestInfo> changed;
};

RequestDetailsRetriever::RequestDetailsRetriever(TessalyConnectionInterface const& connection)
    : connection_(connection), mutex_(std::make_shared<std::recursive_mutex>())
{
}

RequestDetailsRetriever::~RequestDetailsRetriever() = default;

void RequestDetailsRetriever::setRequestIds(std::vector<std::pair<QString, RequestType>> const& requestIds)
{
    std::lock_guard const lock(*mutex_);
    requests_.clear();
    for (auto const& [id, type] : requestIds)
    {
        requests_.push_back({id, QString(), type});
    }
}

void RequestDetailsRetriever::setRequestIds(std::vector<RequestInfo> const& requests)
{
    std::lock_guard const lock(*mutex_);
    requests_ = requests;
}

void RequestDetailsRetriever::setOnlyActiveRequests(bool onlyActiveRequests)
{
    std::lock_guard const lock(*mutex_);
    onlyActiveRequests_ = onlyActiveRequests;
}

void RequestDetailsRetriever::execute()
{
    if (startSweep(true))
    {
        warnWithoutInstallation("RequestDetailsRetriever::execute");
    }
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
        failedTypes_.clear();
        sweepStatus_ = rest::RestReplyStatus();
        failedListStatus_.reset();
        pendingCalls_ = dispatch.calls.size();
        dispatch.replaced->swap(*results_);
        results_ = dispatch.results;
    }
    // Only now, when the number of calls is final, may a reply that is there already be handled.
    for (auto& [type, call] : dispatch.calls)
    {
        // Only the continuation may keep a handle, or it would have to copy the details.
        auto const last = std::move(call);
        last.then(
            this, [this, type = type, sweep = std::weak_ptr(dispatch.results)](Reply<Details> details)
            { handleDetails(sweep, type, replyOf(std::move(details))); });
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
    dispatch.calls.emplace_back(
        type, (connection_.*operation)(dispatch.installationId, dispatch.info)
                  .then([type, replaced, sweep = std::weak_ptr(dispatch.results)](Reply<std::vector<Group>> reply)
                        { return sweep.expired() ? rest::RestReply<Details>() : detailsOf(std::move(reply), type); }));
}

template <class Group>
rest::RestReply<RequestDetailsRetriever::Details> RequestDetailsRetriever::detailsOf(
    Reply<std::vector<Group>> reply, RequestType type)
{
    auto received = replyOf(std::move(reply));
    rest::RestReply<Details> details;
    details.status = received.status;
    if (!isSuccessful(details.status))
    {
        return details;
    }
    std::size_t count = 0;
    for (Group const& group : received.value)
    {
        count += group.collaborationRequestDetailInfos.size();
    }
    details.value.reserve(count);
    for (Group& group : received.value)
    {
        for (auto& entry : group.collaborationRequestDetailInfos)
        {
            if (isNews(common(entry), type))
            {
                details.value.push_back(collaboration::extendedDetails(group.partner, std::move(entry), type));
            }
        }
    }
    return details;
}

void RequestDetailsRetriever::handleDetails(
    std::weak_ptr<Results> const& sweep, RequestType type, rest::RestReply<Details> details)
{
    auto const mutex = mutex_;
    std::lock_guard const lock(*mutex);
    if (sweep.lock() != results_)
    {
        return;
    }
    if (isSuccessful(details.status))
    {
        results_->push_back(std::move(details.value));
    }
    else
    {
        failedTypes_.push_back(type);
        sweepStatus_ = details.status;
    }
    --pendingCalls_;
    if (pendingCalls_ == 0)
    {
        failedListStatus_.reset();
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
    warnWithoutInstallation("RequestDetailsRetriever::getUpdates");
    connection_.getRequests(installationReference(), std::move(info))
        .then([known](Reply<std::vector<RequestInfo>> reply) { return updatesOf(known, std::move(reply)); })
        .then(this, [this, poll](Reply<Updates> updates) { handleUpdates(poll, replyOf(std::move(updates))); });
}

rest::RestReply<RequestDetailsRetriever::Updates> RequestDetailsRetriever::updatesOf(
    std::vector<RequestInfo> const& known, Reply<std::vector<RequestInfo>> reply)
{
    auto const received = replyOf(std::move(reply));
    rest::RestReply<Updates> updates;
    updates.status = received.status;
    if (!isSuccessful(updates.status))
    {
        return updates;
    }
    auto knownById = byId(known);
    for (RequestInfo const& request : received.value)
    {
        auto const entry = knownById.find(request.requestId);
        bool const isKnown = entry != knownById.end();
        if (isKnown)
        {
            entry->second.isListed = true;
        }
        if (!isKnown || entry->second.transaction != request.transactionId)
        {
            updates.value.changed.push_back(request);
        }
    }
    for (RequestInfo const& request : known)
    {
        if (!knownById[request.requestId].isListed)
        {
            updates.value.removed.append(request.requestId);
        }
    }
    return updates;
}

void RequestDetailsRetriever::handleUpdates(quint64 poll, rest::RestReply<Updates> updates)
{
    auto const mutex = mutex_;
    std::lock_guard const lock(*mutex);
    if (!isSuccessful(updates.status))
    {
        failedListStatus_ = updates.status;
        Q_EMIT failed(QStringLiteral("Failed to get request transaction ids"));
        return;
    }
    if (poll >= handledPoll_)
    {
        handledPoll_ = poll;
        removedRequestIds_.swap(updates.value.removed);
        requests_.swap(updates.value.changed);
        // With nothing to fetch, a sweep that runs goes on and keeps what it has gathered.
        if (startSweep(pendingCalls_ == 0))
        {
            return;
        }
    }
    failedListStatus_.reset();
    Q_EMIT finished();
}

std::vector<RequestInfo> const& RequestDetailsRetriever::getRequests() const
{
    return requests_;
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
    return failedTypes_.empty();
}

std::vector<RequestType> RequestDetailsRetriever::failedTypes() const
{
    return failedTypes_;
}

rest::RestReplyStatus RequestDetailsRetriever::lastStatus() const
{
    return failedListStatus_ ? *failedListStatus_ : sweepStatus_;
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
    auto received = replyOf(std::move(reply));
    if (!isSuccessful(received.status))
    {
        return std::nullopt;
    }
    for (auto& group : received.value)
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
    for (RequestInfo const& request : requests_)
    {
        if (request.requestType == type)
        {
            ids.append(request.requestId);
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
