#include <platform/rest/Client.h>

#include <platform/rest/internal/Session.h>

namespace rest
{

Client::Client(std::shared_ptr<Session> session) : session_(std::move(session)) {}

JsonReply Client::send(HttpRequestData data) const
{
    bool const isWrite = data.method != HttpMethod::Get;
    FutureJsonReply const future = session_->request(std::move(data));
    if (JsonReply reply = future.get())
    {
        return reply;
    }
    QString text = QStringLiteral("The connection was closed before the answer came.");
    if (isWrite)
    {
        text += QStringLiteral(" The server may have processed the request.");
    }
    return std::make_shared<NetworkReply<QJsonDocument>>(
        0, 2, static_cast<int>(LocalError::Closed), std::move(text), QJsonDocument());
}

} // namespace rest
