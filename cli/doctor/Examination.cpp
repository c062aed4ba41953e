#include "cli/doctor/Examination.h"

#include <algorithm>

#include <KeloCommunicationLib/connection/KeloErrors.h>

namespace cli
{

QByteArray Exchange::header(QByteArray const& name) const
{
    auto const& headers = trace.responseHeaders;
    auto const found = std::find_if(
        headers.begin(), headers.end(),
        [&name](auto const& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? QByteArray() : found->second;
}

bool Exchange::isOfService() const
{
    bool const hasError = kelo::errorCode(status) != KeloErrorCode::UnreadableError || !status.message.isEmpty();
    return status.kind == 0 ? reply->body().isObject() : status.kind == 2 && hasError;
}

void Examination::open(CommonOptions const& given)
{
    context.emplace(given);
    if (auto const wanted = context->timeout(); wanted.count() > 0)
    {
        patience = Patience(wanted);
    }
    // The context's own, so that a trace is recorded, and then this one's.
    context->connection().setTraceCallback(
        [traced = traced_, hook = TessalyConnectionBase::m_callback](rest::TraceData const& exchange)
        {
            hook(exchange);
            std::lock_guard const lock(traced->mutex);
            traced->last = exchange;
        });
}

Exchange Examination::ask(operations::Route const& operation)
{
    auto& connection = context->connection();
    connection.setDefaultTimeout(patience.limit());
    auto const path = QString::fromLatin1(operation.path).replace(QLatin1String("%1"), context->installation());
    Exchange exchange;
    exchange.reply =
        connection.httpConnection().send(rest::RequestDataCreator::makeRequest(operation.method, QUrl(path)));
    exchange.status = connection.getErrorParser()->parse(exchange.reply);
    std::lock_guard const lock(traced_->mutex);
    exchange.trace = std::exchange(traced_->last, std::nullopt).value_or(rest::TraceData());
    return exchange;
}

} // namespace cli
