#include "cli/ExchangeLog.h"

#include <algorithm>

namespace cli
{

namespace
{

bool isUpload(rest::TraceData const& exchange)
{
    return std::any_of(
        exchange.requestHeaders.begin(), exchange.requestHeaders.end(),
        [](auto const& header)
        {
            return header.first.compare("Content-Type", Qt::CaseInsensitive) == 0
                   && header.second == "application/octet-stream";
        });
}

} // namespace

void ExchangeLog::add(rest::TraceData const& exchange)
{
    std::lock_guard const lock(mutex_);
    auto& kept = exchanges_.emplace_back(exchange);
    if (isUpload(exchange))
    {
        kept.requestBody.clear();
    }
}

std::vector<rest::TraceData> ExchangeLog::all() const
{
    std::lock_guard const lock(mutex_);
    return exchanges_;
}

std::vector<rest::TraceData> ExchangeLog::takeNew()
{
    std::lock_guard const lock(mutex_);
    std::vector<rest::TraceData> fresh(exchanges_.begin() + static_cast<std::ptrdiff_t>(taken_), exchanges_.end());
    taken_ = exchanges_.size();
    return fresh;
}

} // namespace cli
