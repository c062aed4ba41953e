#include "cli/Commands.h"

#include <algorithm>
#include <limits>

#include <QEventLoop>
#include <QJsonObject>

#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>

#include "cli/requests/KnownRequests.h"
#include "cli/requests/RequestView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using RequestTypes = std::vector<collaboration::RequestType>;

struct Changes
{
    std::vector<collaboration::ExtendedRequestDetails> fresh;
    std::vector<collaboration::ExtendedRequestDetails> changed;
    QList<QString> removed;
};

/// Lets the retriever find out what has happened since `known`; throws a Failure unless it got all of it.
Changes retrieveChanges(Context const& context, RequestTypes const& types, KnownRequests const& known)
{
    RequestDetailsRetriever retriever(context.connection());
    // A request that was closed since the last time is news as well.
    retriever.setOnlyActiveRequests(false);
    QEventLoop loop;
    QObject::connect(&retriever, &RequestDetailsRetriever::finished, &loop, &QEventLoop::quit);
    QObject::connect(&retriever, &RequestDetailsRetriever::failed, &loop, &QEventLoop::quit);
    RequestList knownRequests = known.ofTypes(types);
    retriever.getUpdates(types, knownRequests);
    loop.exec();
    constexpr auto all = std::numeric_limits<std::size_t>::max();
    context.check(retriever.lastStatus(), Shape::List, all);
    Changes changes{.fresh = {}, .changed = {}, .removed = retriever.getRemovedRequestIds()};
    auto requests = retriever.getAllRequestDetails();
    // The kinds' replies arrive in any order; what is shown must not depend on it.
    std::stable_sort(
        requests.begin(), requests.end(),
        [](auto const& left, auto const& right) { return left.requestType < right.requestType; });
    for (auto const& request : requests)
    {
        (known.contains(request.requestDetails.id) ? changes.changed : changes.fresh).push_back(request);
    }
    return changes;
}

void remember(KnownRequests& known, Changes const& changes)
{
    std::for_each(changes.removed.begin(), changes.removed.end(), [&known](QString const& id) { known.remove(id); });
    for (auto const* requests : {&changes.fresh, &changes.changed})
    {
        for (auto const& request : *requests)
        {
            auto const& details = request.requestDetails;
            known.put({details.id, details.transactionId, request.requestType});
        }
    }
    known.save();
}

QJsonObject changesJson(Changes const& changes)
{
    return {
        {u"New"_s, described(changes.fresh)},
        {u"Changed"_s, described(changes.changed)},
        {u"Removed"_s, QJsonArray::fromStringList(changes.removed)}};
}

QString changesText(Changes const& changes)
{
    std::vector<QStringList> rows;
    for (auto const& request : changes.fresh)
    {
        rows.push_back(QStringList{u"new"_s} + summaryRow(request));
    }
    for (auto const& request : changes.changed)
    {
        rows.push_back(QStringList{u"changed"_s} + summaryRow(request));
    }
    for (auto const& id : changes.removed)
    {
        rows.push_back({u"removed"_s, id});
    }
    QString const counts = u"%1 new, %2 changed, %3 removed\n"_s.arg(changes.fresh.size())
                               .arg(changes.changed.size())
                               .arg(changes.removed.size());
    return rows.empty() ? counts : tableText(QStringList{u"CHANGE"_s} + summaryHeader(), rows) + counts;
}

} // namespace

Action requestsRefresh(Arguments& arguments)
{
    auto const typeNames = arguments.texts("--type", "Only these types, by name or number");
    auto const file = arguments.text(
        "--known", "Keeps what was seen in this file and shows what has happened since; without it, everything is new");
    return [=](Context const& context)
    {
        auto const types = requestTypes(*typeNames);
        KnownRequests known(*file, context.installation());
        auto const changes = retrieveChanges(context, types, known);
        context.output().show(changesJson(changes), changesText(changes));
        remember(known, changes);
    };
}

} // namespace cli
