#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include <QList>
#include <QObject>
#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>
#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>
#include <platform/rest/RestReply.h>
#include <platform/utility/Optional.h>

/// Gathers the details of requests of mixed kinds in one sweep, and polls for requests that are new, changed or gone.
///
/// A reply becomes details, or the outcome of a poll, on the thread that finishes it. What it has become is taken over
/// in this object's thread, which therefore needs an event loop; nothing is taken over once the object is gone. A sweep
/// that is started while another one runs takes its place: the replies of the older one are ignored, and the end of the
/// newer one is the end of both.
///
/// Every call names the installation of the host's environment (`core::setHostEnvironment`, or `KELO_INSTALLATION`),
/// not one of the connection's. Where the host names none, a warning is logged for each sweep and poll.
///
/// `execute`, `getUpdates` and the setters may be called from any thread. The results are read in this object's thread
/// or in a receiver of `finished()`; the getters do not lock. Signals are emitted while the retriever is locked: a
/// receiver in this object's thread may call everything, start the next sweep and delete the retriever; it must not
/// wait for another thread that is about to call the retriever.
class KELO_EXPORT RequestDetailsRetriever : public QObject
{
    Q_OBJECT

public:
    /// Uses `connection`, which must outlive the retriever, for every call.
    explicit RequestDetailsRetriever(TessalyConnectionInterface const& connection);
    ~RequestDetailsRetriever() override;

    /// The requests of the next sweep.
    void setRequestIds(std::vector<std::pair<QString, collaboration::RequestType>> const& requestIds);
    void setRequestIds(std::vector<collaboration::RequestInfo> const& requests);
    /// Whether sweeps and look-ups ask for active requests only, as they do unless told otherwise; polls always ask for
    /// all.
    void setOnlyActiveRequests(bool onlyActiveRequests);

    /// Starts a sweep, which ends with `finished()`. Without a request of a known type nothing is sent and nothing
    /// emitted, not even for a sweep whose place this one takes.
    void execute();

    /// Compares the service's list of requests of the given types with `known`, then starts a sweep for those that are
    /// new or have changed. `known` is copied in this call; a request that it holds more than once has changed unless
    /// all its transactions are the service's.
    ///
    /// Every poll ends with a signal. When its list cannot be had, that is `failed()`. When there is nothing to fetch,
    /// or when the list of a later poll came first and makes this one void, it is `finished()`, emitted at once: a
    /// sweep that runs meanwhile keeps what it has gathered, goes on and ends with a `finished()` of its own. Otherwise
    /// it is the `finished()` of the poll's sweep.
    void getUpdates(
        std::vector<collaboration::RequestType> const& types, std::vector<collaboration::RequestInfo>& known);

    /// The requests of the next sweep, or of the last one if none were set since. Those that a poll set have the state
    /// in which the service listed them.
    std::vector<collaboration::RequestInfo> const& getRequests() const;
    /// The details gathered by the last sweep so far, in the order of arrival; none after a poll with nothing to fetch
    /// while no sweep ran.
    std::vector<collaboration::ExtendedRequestDetails> getAllRequestDetails() const;
    /// The known requests that the last poll did not find any more.
    QList<QString> const& getRemovedRequestIds() const;
    /// False once a call of the last sweep has failed or was cancelled; true again after a poll with nothing to fetch
    /// while no sweep ran.
    bool isSuccess() const;
    /// The kinds of request whose details the last sweep could not get, in the order in which their calls failed; none
    /// when `isSuccess()`.
    std::vector<collaboration::RequestType> failedTypes() const;
    /// Why: after `failed()` what became of the poll's list, until a sweep or a poll ends otherwise; else what became
    /// of the call of the last sweep that failed last, or success (kind 0) if none did. A cancelled call counts as one
    /// without an answer (kind 1).
    rest::RestReplyStatus lastStatus() const;

    /// The details of one restoration request; nothing when the call fails, is cancelled or does not find it. The
    /// calling thread goes on with its events while it waits.
    utility::Optional<collaboration::ExtendedRequestDetails> getRestorationRequestDetails(
        collaboration::RequestInfo const& request) const;
    /// As above, of one centralized restoration request.
    utility::Optional<collaboration::ExtendedRequestDetails> getCentralizedRestorationRequestDetails(
        collaboration::RequestInfo const& request) const;

Q_SIGNALS:
    /// A sweep is over, whether its calls succeeded or not, or a poll that needed none; emitted once for each.
    void finished();
    /// The list of requests could not be had; results and request ids are as before.
    void failed(QString const& message);
    /// Never emitted; the ids are read with `getRemovedRequestIds()`.
    void removed(QList<QString> const& requestIds);

private:
    template <class T>
    using Reply = TessalyConnectionInterface::Reply<T>;
    template <class Group>
    using DetailsOperation =
        Reply<std::vector<Group>> (TessalyConnectionInterface::*)(QString const&, GetRequestDetailsInfo) const;
    using RestorationOperation = DetailsOperation<collaboration::RestorationRequestDetail>;
    using Details = std::vector<collaboration::ExtendedRequestDetails>;
    /// The details of each reply by themselves, so that taking a reply over moves none of them.
    using Results = std::vector<Details>;
    struct Dispatch;
    struct Updates;

    /// Starts a sweep, one of nothing only if `evenIfEmpty`; false if there was nothing to send.
    bool startSweep(bool evenIfEmpty);
    template <class Group>
    void request(Dispatch& dispatch, collaboration::RequestType type, DetailsOperation<Group> operation);
    template <class Group>
    static rest::RestReply<Details> detailsOf(Reply<std::vector<Group>> reply, collaboration::RequestType type);
    void handleDetails(
        std::weak_ptr<Results> const& sweep, collaboration::RequestType type, rest::RestReply<Details> details);
    static rest::RestReply<Updates> updatesOf(
        std::vector<collaboration::RequestInfo> const& known, Reply<std::vector<collaboration::RequestInfo>> reply);
    void handleUpdates(quint64 poll, rest::RestReply<Updates> updates);
    QList<QString> getRequestIds(collaboration::RequestType type) const;
    GetRequestDetailsInfo detailsInfo() const;
    utility::Optional<collaboration::ExtendedRequestDetails> lookUp(
        QString requestId, collaboration::RequestType type, RestorationOperation operation) const;

    std::vector<collaboration::RequestInfo> requests_; ///< of the next sweep, or of the last one since
    TessalyConnectionInterface const& connection_;
    bool onlyActiveRequests_ = true;
    /// Recursive, so that receivers of the signals may call the retriever; shared, so that they may delete it.
    std::shared_ptr<std::recursive_mutex> mutex_;
    std::size_t pendingCalls_ = 0;
    /// Of the sweep whose replies count. It goes with that sweep or the retriever; by this a reply on another thread
    /// can tell that nobody waits for it any more.
    std::shared_ptr<Results> results_ = std::make_shared<Results>();
    std::vector<collaboration::RequestType> failedTypes_;       ///< of that sweep
    rest::RestReplyStatus sweepStatus_;                         ///< of the last of its calls that failed
    utility::Optional<rest::RestReplyStatus> failedListStatus_; ///< if the last signal was `failed()`
    QList<QString> removedRequestIds_;
    quint64 lastPoll_ = 0;    ///< number of the latest poll
    quint64 handledPoll_ = 0; ///< number of the latest poll whose list was had and handled
};
