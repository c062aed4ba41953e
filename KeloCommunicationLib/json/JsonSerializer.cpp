#include <KeloCommunicationLib/json/JsonSerializer.h>

#include <QDebug>

namespace jsonSerializer::implementation
{

std::optional<QJsonArray> listIn(QJsonDocument const& document)
{
    if (document.isArray())
    {
        return document.array();
    }
    if (!document.isObject())
    {
        return std::nullopt;
    }
    QJsonObject const object = document.object();
    if (object.size() == 1 && object.constBegin()->isArray())
    {
        return object.constBegin()->toArray();
    }
    qWarning() << "jsonSerializer::implementation::FromJSON::convert"
               << "cannot convert json object to container type.";
    return std::nullopt;
}

} // namespace jsonSerializer::implementation
