#include <KeloCommunicationLib/connection/KeloErrorParser.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QLatin1String>

#include <KeloCommunicationLib/connection/KeloErrorCode.h>

namespace
{

QString errorMember(rest::JsonReply const& reply, QLatin1String key)
{
    return reply->body().array().at(0).toObject().value(key).toString();
}

} // namespace

int KeloErrorParser::parseErrorCode(std::shared_ptr<rest::NetworkReply<QJsonDocument>> const& reply) const
{
    // The service sends the code as a string; a number is no code.
    bool readable = false;
    int const code = errorMember(reply, QLatin1String("Code")).toInt(&readable, 10);
    return readable ? code : static_cast<int>(KeloErrorCode::UnreadableError);
}

QString KeloErrorParser::parseErrorMessage(std::shared_ptr<rest::NetworkReply<QJsonDocument>> const& reply) const
{
    return errorMember(reply, QLatin1String("Message"));
}

QString KeloErrorParser::parseServerResponseStatus(std::shared_ptr<rest::NetworkReply<QJsonDocument>> const&) const
{
    return QString();
}
