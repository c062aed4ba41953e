#pragma once

#include <optional>
#include <set>
#include <vector>

#include <QMap>
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

    /// Those of the given types; of all when no type is given.
    RequestList ofTypes(std::vector<collaboration::RequestType> const& types) const;
    /// Whether people have seen it; a referral of one's own is known without that.
    bool isShown(QString const& requestId) const;

    void remove(QString const& requestId);
    /// Adds the request, or replaces the one with its id; what was shown once stays so.
    void put(collaboration::RequestInfo const& request, bool isShown);

    /// Replaces the file in one step, so that an interrupted run leaves the earlier one. Throws a Failure.
    void save();

private:
    std::optional<OutputFile> file_;
    QString installation_;
    QMap<QString, collaboration::RequestInfo> requests_;
    std::set<QString> unshown_;
};

} // namespace cli
