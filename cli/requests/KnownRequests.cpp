#include "cli/requests/KnownRequests.h"

#include <algorithm>

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

auto hasId(QString const& id)
{
    return [id](collaboration::RequestInfo const& request) { return request.requestId == id; };
}

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
            {.key = u"Requests"_s, .kind = ValueKind::List, .isRequired = true, .parts = {request}}}};
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
        requests_.push_back(jsonSerializer::fromDescription<collaboration::RequestInfo>(entry.toObject()));
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

bool KnownRequests::contains(QString const& requestId) const
{
    return std::any_of(requests_.begin(), requests_.end(), hasId(requestId));
}

void KnownRequests::remove(QString const& requestId)
{
    std::erase_if(requests_, hasId(requestId));
}

void KnownRequests::put(collaboration::RequestInfo const& request)
{
    auto const found = std::find_if(requests_.begin(), requests_.end(), hasId(request.requestId));
    if (found == requests_.end())
    {
        requests_.push_back(request);
    }
    else
    {
        *found = request;
    }
}

void KnownRequests::save()
{
    if (file_)
    {
        QJsonObject const json{{u"Installation"_s, installation_}, {u"Requests"_s, described(requests_)}};
        file_->write(QJsonDocument(json).toJson());
    }
}

} // namespace cli
