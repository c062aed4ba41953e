#include "cli/KnownRequests.h"

#include <algorithm>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include "cli/Outcome.h"
#include "cli/RequestView.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

auto hasId(QString const& id)
{
    return [id](collaboration::RequestInfo const& request) { return request.requestId == id; };
}

} // namespace

KnownRequests::KnownRequests(QString const& path, QString const& installation)
    : path_(path), installation_(installation)
{
    QFile file(path);
    if (path.isEmpty() || !file.exists())
    {
        return;
    }
    if (!file.open(QIODevice::ReadOnly))
    {
        throw badInput(u"Cannot read the file of known requests \"%1\": %2."_s.arg(path, file.errorString()));
    }
    auto const json = QJsonDocument::fromJson(file.readAll()).object();
    if (!json[u"Requests"].isArray())
    {
        throw badInput(u"\"%1\" is not a file of known requests."_s.arg(path));
    }
    if (json[u"Installation"].toString() != installation)
    {
        throw badInput(u"The file of known requests \"%1\" belongs to the installation \"%2\"."_s.arg(
            path, json[u"Installation"].toString()));
    }
    for (auto const& entry : json[u"Requests"].toArray())
    {
        requests_.push_back(
            {.requestId = entry[u"RequestId"].toString(),
             .transactionId = entry[u"TransactionId"].toString(),
             .requestType = static_cast<collaboration::RequestType>(entry[u"RequestType"].toInt(-1))});
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

void KnownRequests::save() const
{
    if (path_.isEmpty())
    {
        return;
    }
    QSaveFile file(path_);
    QJsonObject const json{{u"Installation"_s, installation_}, {u"Requests"_s, listJson(requests_)}};
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(json).toJson()) < 0 || !file.commit())
    {
        throw badInput(u"Cannot write the file of known requests \"%1\": %2."_s.arg(path_, file.errorString()));
    }
}

} // namespace cli
