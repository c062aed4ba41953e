#include "testkit/platform/Exchanges.h"

#include <algorithm>

#include <QJsonObject>

namespace platformcheck
{

namespace
{

class PlainParser final : public rest::NetReplyErrorParser
{
    int parseErrorCode(JsonReply const&) const override { return 7; }

    QString parseErrorMessage(JsonReply const&) const override { return QStringLiteral("message"); }

    QString parseServerResponseStatus(JsonReply const&) const override { return {}; }
};

} // namespace

QUrl relative(QByteArray const& path)
{
    return QUrl(QString::fromUtf8(path));
}

std::unique_ptr<rest::Connection> makeConnection(std::chrono::milliseconds timeout)
{
    return std::make_unique<rest::Connection>(std::make_unique<PlainParser>(), timeout, nullptr);
}

std::unique_ptr<rest::Connection> connectTo(QUrl const& baseUrl, std::chrono::milliseconds timeout)
{
    auto connection = makeConnection(timeout);
    connection->initialize(baseUrl, QStringLiteral("user"), QStringLiteral("secret"), {});
    return connection;
}

std::unique_ptr<rest::Connection> carelesslyConnectTo(RawServer const& server)
{
    auto connection = connectTo(server.url());
    connection->disableCertificateChecking();
    return connection;
}

rest::HttpRequestData get(QByteArray const& target)
{
    return rest::RequestDataCreator::makeRequest(HttpMethod::Get, relative(target));
}

rest::HttpRequestData write(HttpMethod method, QByteArray const& body, std::chrono::milliseconds timeout)
{
    return rest::RequestDataCreator::makeRequest(method, relative("/x"), body, timeout);
}

rest::HttpRequestData writeJson(std::chrono::milliseconds timeout)
{
    return rest::RequestDataCreator::makeRequestData(
        HttpMethod::Post, relative("/x"), QJsonObject{{QStringLiteral("a"), 1}}, timeout, true);
}

JsonReply replyOf(rest::FutureJsonReply const& call)
{
    JsonReply const reply = valueOf(call);
    require(reply != nullptr, "a call ends with a null reply");
    return reply;
}

JsonReply send(rest::Connection const& connection, rest::HttpRequestData const& data)
{
    return replyOf(connection.request(data));
}

BinaryReply download(rest::Connection const& connection, QByteArray const& target, std::chrono::milliseconds timeout)
{
    auto received = std::make_shared<BinaryReply>();
    auto const call = connection.downloadBinary(
        relative(target), [received](BinaryReply const& reply) { *received = reply; }, timeout);
    requireFinished(call);
    require(*received != nullptr, "a download ends without its callback or with a null reply");
    return *received;
}

bool isSaidToBeProcessedPerhaps(JsonReply const& reply)
{
    return reply->errorText().contains(QLatin1String("may have processed"));
}

QByteArray compact(JsonReply const& reply)
{
    return reply->body().toJson(QJsonDocument::Compact);
}

int countOf(RawServer const& server, QByteArray const& target)
{
    auto const requests = server.requests();
    auto const count = std::count_if(
        requests.begin(), requests.end(), [&target](RawRequest const& request) { return request.target == target; });
    return static_cast<int>(count);
}

} // namespace platformcheck
