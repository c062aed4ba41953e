#pragma once

#include <optional>
#include <vector>

#include <QString>

#include <KeloCommunicationLib/collaboration/RequestRecords.h>

#include "cli/shell/OutputFile.h"

namespace cli
{

using RequestList = std::vector<collaboration::RequestInfo>;

/// The requests of one installation as they were last seen, kept in a file between two refreshes.
class KnownRequests
{
public:
    /// Reads the file; one that does not exist yet is an empty list. Throws a Failure for a file that is of another
    /// installation, not readable, or not writable later on. With an empty path nothing is known and nothing is kept.
    KnownRequests(QString const& path, QString const& installation);

    RequestList const& all() const { return requests_; }

    /// Those of the given types; of all when no type is given.
    RequestList ofTypes(std::vector<collaboration::RequestType> const& types) const;
    bool contains(QString const& requestId) const;

    void remove(QString const& requestId);
    /// Adds the request, or replaces the one with its id.
    void put(collaboration::RequestInfo const& request);

    /// Replaces the file in one step, so that an interrupted run leaves the earlier one. Throws a Failure.
    void save();

private:
    std::optional<OutputFile> file_;
    QString installation_;
    RequestList requests_;
};

} // namespace cli
