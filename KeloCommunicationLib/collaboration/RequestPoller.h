#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include <QList>
#include <QObject>
#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>
#include <KeloCommunicationLib/collaboration/PollClock.h>
#include <KeloCommunicationLib/collaboration/PollSchedule.h>
#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>
#include <platform/rest/RestReply.h>
#include <platform/utility/Optional.h>

class RequestDetailsRetriever;

/// What one poll found.
struct KELO_EXPORT RequestChanges
{
    std::vector<collaboration::ExtendedRequestDetails> added;
    std::vector<collaboration::ExtendedRequestDetails> changed;
    QList<QString> removed; ///< ids of known requests that the service does not have any more
};

/// Polls for requests that are new, changed or gone for as long as it lives, in a way that the service survives when
/// all its hosts do: `PollSchedule` tells how long it waits after what. No two polls run at a time.
///
/// It remembers what it has reported, so that each poll fetches only news, and reports a request once for each state;
/// news whose details could not be had are fetched by the next poll. It starts offline as well and recovers by itself.
///
/// A machine that has slept, or a program whose event loop has stood still, for more than ten seconds: whatever was
/// due, the next poll comes at a random moment as after a start, but not before the time that the service has asked
/// for. The time asleep counts as passed. Setting the date has no effect.
///
/// To be used in one thread, which needs an event loop. Receivers of its signals may call everything and delete it; it
/// may be deleted at any moment. A call that is out then goes on to its end and is ignored.
class KELO_EXPORT RequestPoller : public QObject
{
    Q_OBJECT

public:
    enum class State
    {
        Stopped,
        Waiting, ///< for the next poll
        Polling
    };
    Q_ENUM(State)

    /// Uses `connection`, which must outlive the poller, for every call. A stopped poller.
    explicit RequestPoller(TessalyConnectionInterface const& connection, QObject* parent = nullptr);
    /// As above, with a clock for tests.
    RequestPoller(
        TessalyConnectionInterface const& connection, std::unique_ptr<PollClock> clock, QObject* parent = nullptr);
    ~RequestPoller() override;

    /// The kinds of requests to poll for, all unless told. As all settings it is for before `start()`.
    void setTypes(std::vector<collaboration::RequestType> types);
    /// Which requests of these kinds the host has already; none unless told.
    void setKnownRequests(std::vector<collaboration::RequestInfo> known);
    void setSettings(PollSettings const& settings);

    /// The requests with the state that was last reported, to be kept for the next `setKnownRequests`.
    std::vector<collaboration::RequestInfo> const& knownRequests() const;

    /// Begins to poll, first at a random moment within `PollSettings::begin`; `pollNow()` serves those who wait.
    void start();
    /// Ends it: no signal but `stateChanged` comes any more. What a poll that runs finds is forgotten and will be found
    /// again; that poll delays the first one after a new start until it is over.
    void stop();
    /// Polls at once, whatever was scheduled, or right after the poll that runs, if that one succeeds: what the user
    /// asks for may be newer than its list. Any number of demands during a poll makes one more.
    ///
    /// False, and without effect, when the poller is stopped or the service has asked to be left alone for longer.
    bool pollNow();

    State state() const;
    /// How long until the next poll; nothing unless the state is Waiting.
    utility::Optional<std::chrono::milliseconds> untilNextPoll() const;

Q_SIGNALS:
    /// A poll has got the service's list; `changes` holds what it has fetched, which may be nothing.
    void polled(RequestChanges const& changes);
    /// A poll has not got the service's list, or not the details of all that is new (then after `polled`). `status` is
    /// the outcome of a call that failed. The next poll will come in any case.
    void failed(rest::RestReplyStatus const& status);
    /// The state has become another one, or another moment has been set for the next poll. The last signal of a poll.
    void stateChanged(RequestPoller::State state);

private:
    void waitToBegin();
    void wait(std::chrono::milliseconds delay);
    void armTimer();
    void handleTick();
    void poll();
    void handleEnd(bool hasList);
    /// What the retriever has found, from now on known.
    RequestChanges takeOver(RequestDetailsRetriever const& retriever);

    TessalyConnectionInterface const& connection_;
    std::unique_ptr<PollClock> clock_;
    PollSettings settings_;
    PollSchedule schedule_;
    std::vector<collaboration::RequestType> types_;
    std::vector<collaboration::RequestInfo> known_;      ///< what the host knows
    std::vector<collaboration::RequestInfo> ignored_;    ///< what there was nothing to report of
    std::unique_ptr<RequestDetailsRetriever> retriever_; ///< of the poll that runs
    bool isStarted_ = false;
    bool isDemanded_ = false;     ///< one more poll right after the one that runs
    bool isResultWanted_ = false; ///< of the poll that runs, as it was not stopped meanwhile
    /// In the clock's time.
    std::chrono::milliseconds nextPoll_{0};
    std::chrono::milliseconds nextTick_{0};       ///< when the timer should fire next
    std::chrono::milliseconds leftAloneUntil_{0}; ///< what the service has asked for
};
