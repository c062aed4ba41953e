#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include <QByteArray>
#include <QString>

#include <KeloCommunicationLib/connection/TessalyConnection.h>

/// The kinds of calls that are sent through faults: one by one by the matrix, mixed by the soak.
namespace test
{

enum class Outcome : int
{
    Ok,        ///< success with the right content
    Other,     ///< success with other content
    Refused,   ///< status kind 2
    Lost,      ///< status kind 1
    Failed,    ///< a failure of an interface that does not tell which
    Cancelled, ///< without a reply
    Broken     ///< as no call may end: lost without a reason, or more than once
};

/// For people, in the order of the enumeration.
inline constexpr char const* outcomeNames[] = {"ok", "other", "refused", "lost", "failed", "cancelled", "BROKEN"};

/// A file of an order: where it goes, and what its content is made from.
struct Slot
{
    QString reference = {};
    QString marker = {};
    int lines = 1;
};

/// What one call is about.
struct Subject
{
    QString marker = {};                                   ///< of a write: text that nothing else on the wire has
    QString shell = {};                                    ///< what is downloaded
    QString order = {};                                    ///< whose state is asked for
    Slot file = {};                                        ///< what is uploaded, or announced with an order
    std::vector<collaboration::RequestInfo> requests = {}; ///< whose details are asked for
};

/// How a call ended. `Ok` only says that it is a success; whose content is right, the caller knows.
struct Ending
{
    Outcome outcome = Outcome::Cancelled;
    QByteArray content = {}; ///< what it brought, as text to be compared
    bool maybeProcessed = false;
    bool isPartial = false; ///< not all could be fetched, which is no failure of the call
    QString order = {};     ///< that was created
    Slot slot = {};         ///< of its file
};

struct Running
{
    threading::Future<Ending> ending;
    std::function<void()> cancel = [] {};
};

using Connection = std::shared_ptr<TessalyConnection>;

struct Call
{
    char const* name = "";
    int weight = 0; ///< how often in mixed traffic
    /// Makes the call; one that blocks has ended then.
    Running (*start)(Connection const& connection, Subject const& subject) = nullptr;
    /// The right content; null: that of the resource, which stays as it is.
    QByteArray (*right)(Subject const& subject) = nullptr;
    bool isWrite = false;
    bool showsSpoiling = true; ///< whether every fault that spoils answers shows in its content
    Outcome whenRefused = Outcome::Refused;
    Outcome whenLost = Outcome::Lost;
};

std::span<Call const> calls();
Call const& callNamed(char const* name);

} // namespace test
