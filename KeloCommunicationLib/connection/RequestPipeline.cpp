#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>

#include <chrono>

#include <KeloCommunicationLib/connection/KeloErrors.h>

namespace KeloCommunicationLib::internal
{

QString pathOf(operations::Route const& route, Values values)
{
    QString path = QString::fromLatin1(route.path);
    auto const* const begin = values.begin();
    auto count = values.size();
    if (route.appended != nullptr)
    {
        // Part of the path before the others are filled in.
        --count;
        path += begin[count];
    }
    if (route.constant != nullptr)
    {
        path = path.arg(QLatin1String(route.constant));
    }
    else if (count == 1)
    {
        path = path.arg(begin[0]);
    }
    else if (count == 2)
    {
        path = path.arg(begin[0], begin[1]);
    }
    return path;
}

QUrl urlOf(operations::Route const& route, Values values)
{
    return QUrl(pathOf(route, values), QUrl::TolerantMode);
}

rest::HttpRequestData requestTo(operations::Route const& route, Values values)
{
    return rest::RequestDataCreator::makeRequest(route.method, urlOf(route, values));
}

void forgetWhetherProcessed(rest::RestReplyStatus& status)
{
    if (status.kind == 1)
    {
        status.message = kelo::withoutMaybeProcessed(status.message);
    }
}

threading::Future<QByteArray> download(rest::Connection const& connection, QUrl const& url)
{
    auto promise = std::make_shared<threading::Promise<QByteArray>>();
    threading::Future<QByteArray> const result = promise->future();
    threading::Future<void> const transfer = connection.downloadBinary(
        url,
        [promise](rest::BinaryReply const& reply)
        { promise->setValue(reply->httpStatusCode() == 200 ? reply->body() : QByteArray()); },
        std::chrono::milliseconds(0));
    promise->onCancel([transfer] { transfer.cancel(); });
    // Aborted on the connection's side (closed, destroyed) there is no reply, and nothing is left that could finish the
    // promise.
    transfer.then([promise](threading::Future<void> const&) { promise->cancel(); });
    return result;
}

} // namespace KeloCommunicationLib::internal
