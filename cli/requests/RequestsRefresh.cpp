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
#include "cli/shell/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using collaboration::ExtendedRequestDetails;
using collaboration::RequestInfo;
using collaboration::RequestType;
using RequestTypes = std::vector<RequestType>;

struct Changes
{
    std::vector<ExtendedRequestDetails> fresh = {};
    std::vector<ExtendedRequestDetails> changed = {};
    QList<QString> removed = {};
};

QString progressText(RequestDetailsRetriever const& retriever)
{
    auto const wanted = retriever.getRequests().size();
    return wanted == 0 ? u"Asking for the list of requests"_s
                       : u"%1 requests are new or have changed, the details of %2 are here"_s.arg(wanted).arg(
                           retriever.getAllRequestDetails().size());
}

/// The requests' kinds arrive in any order; what is shown must not depend on it.
std::vector<ExtendedRequestDetails> sortedDetails(RequestDetailsRetriever const& retriever)
{
    auto requests = retriever.getAllRequestDetails();
    std::stable_sort(
        requests.begin(), requests.end(),
        [](auto const& left, auto const& right) { return left.requestType < right.requestType; });
    return requests;
}

/// What is new against `known`, which is brought up to date.
Changes takeOver(RequestDetailsRetriever const& retriever, KnownRequests& known)
{
    Changes changes;
    for (QString const& id : retriever.getRemovedRequestIds())
    {
        if (known.isShown(id))
        {
            changes.removed << id;
        }
        known.remove(id);
    }
    QSet<QString> shown;
    for (auto const& request : sortedDetails(retriever))
    {
        QString const& id = request.requestDetails.id;
        shown.insert(id);
        (known.isShown(id) ? changes.changed : changes.fresh).push_back(request);
    }
    // What was listed without coming is looked for again the next time; but the retriever leaves out own referrals.
    for (RequestInfo const& request : retriever.getRequests())
    {
        if (shown.contains(request.requestId) || request.requestType == RequestType::Referral)
        {
            known.put(request, shown.contains(request.requestId));
        }
    }
    return changes;
}

/// Lets the retriever find out what has happened since `known`; throws a Failure unless it got all of it.
Changes retrieveChanges(Context const& context, RequestTypes const& types, KnownRequests& known)
{
    RequestDetailsRetriever retriever(context.connection());
    // A request that was closed since the last time is news as well.
    retriever.setOnlyActiveRequests(false);
    QEventLoop loop;
    QObject::connect(&retriever, &RequestDetailsRetriever::finished, &loop, &QEventLoop::quit);
    QObject::connect(&retriever, &RequestDetailsRetriever::failed, &loop, &QEventLoop::quit);
    RequestList knownRequests = known.ofTypes(types);
    {
        Waiting const waiting([&retriever] { return progressText(retriever); });
        retriever.getUpdates(types, knownRequests);
        loop.exec();
    }
    constexpr auto all = std::numeric_limits<std::size_t>::max();
    context.check(retriever.lastStatus(), Shape::List, all);
    return takeOver(retriever, known);
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
    auto header = summaryHeader();
    header.insert(header.begin(), u"CHANGE"_s);
    QString const counts = u"%1 new, %2 changed, %3 removed\n"_s.arg(changes.fresh.size())
                               .arg(changes.changed.size())
                               .arg(changes.removed.size());
    return rows.empty() ? counts : tableText(header, rows) + counts;
}

} // namespace

Action requestsRefresh(Arguments& arguments)
{
    auto const typeNames = arguments.texts("--type", "Only these types, by name or number", requestTypeNames);
    auto const file = arguments.text(
        "--known", "Keeps what was seen in this file and shows what has happened since; without it, everything is new",
        Offer::Kind::Files);
    return [=](Context const& context)
    {
        auto const types = requestTypes(*typeNames);
        KnownRequests known(*file, context.installation());
        auto const changes = retrieveChanges(context, types, known);
        context.output().show(changesJson(changes), changesText(changes));
        known.save();
    };
}

} // namespace cli
