#include "cli/requests/KnownRequests.h"

#include <algorithm>
#include <iterator>

#include <QFile>
#include <QJsonDocument>

#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"
#include "cli/shell/StrictReader.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

Form formOfFile()
{
    using jsonSerializer::ValueKind;
    Form request = formOf(jsonSerializer::schemaOf<collaboration::RequestInfo>());
    request[u"RequestId"].isRequired = true;
    request[u"Type"].kind = ValueKind::Text; // earlier versions wrote the type's name, too
    return {
        .kind = ValueKind::Record,
        .parts = {
            {.key = u"Installation"_s, .isRequired = true},
            {.key = u"Requests"_s, .kind = ValueKind::List, .isRequired = true, .parts = {request}},
            {.key = u"Unshown"_s, .kind = ValueKind::List, .parts = {Form{}}}}};
}

} // namespace

KnownRequests::KnownRequests(QString const& path, QString const& installation) : installation_(installation)
{
    constexpr auto role = "file of known requests";
    if (path.isEmpty())
    {
        return;
    }
    auto const content = QFile::exists(path) ? std::optional(contentOf(role, path)) : std::nullopt;
    file_.emplace(role, path);
    if (!content)
    {
        return;
    }
    auto const json = readStrictly(path, *content, formOfFile());
    QString const owner = json[u"Installation"].toString();
    if (owner != installation)
    {
        throw badInput(u"The file of known requests \"%1\" belongs to the installation \"%2\"."_s.arg(path, owner));
    }
    for (auto const& entry : json[u"Requests"].toArray())
    {
        put(jsonSerializer::fromDescription<collaboration::RequestInfo>(entry.toObject()), true);
    }
    for (auto const& id : json[u"Unshown"].toArray())
    {
        unshown_.insert(id.toString());
    }
}

RequestList KnownRequests::ofTypes(std::vector<collaboration::RequestType> const& types) const
{
    RequestList list;
    std::copy_if(
        requests_.begin(), requests_.end(), std::back_inserter(list),
        [&types](auto const& request)
        { return types.empty() || std::find(types.begin(), types.end(), request.requestType) != types.end(); });
    return list;
}

bool KnownRequests::isShown(QString const& requestId) const
{
    return requests_.contains(requestId) && !unshown_.contains(requestId);
}

void KnownRequests::remove(QString const& requestId)
{
    requests_.remove(requestId);
    unshown_.erase(requestId);
}

void KnownRequests::put(collaboration::RequestInfo const& request, bool isShown)
{
    if (isShown)
    {
        unshown_.erase(request.requestId);
    }
    else if (!requests_.contains(request.requestId))
    {
        unshown_.insert(request.requestId);
    }
    requests_.insert(request.requestId, request);
}

void KnownRequests::save()
{
    if (file_)
    {
        QJsonObject const json{
            {u"Installation"_s, installation_},
            {u"Requests"_s, described(requests_)},
            {u"Unshown"_s, QJsonArray::fromStringList({unshown_.begin(), unshown_.end()})}};
        file_->write(QJsonDocument(json).toJson());
    }
}

} // namespace cli
