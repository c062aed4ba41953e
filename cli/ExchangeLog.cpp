#include "cli/ExchangeLog.h"

namespace cli
{

void ExchangeLog::add(rest::TraceData const& exchange)
{
    std::lock_guard const lock(mutex_);
    exchanges_.push_back(exchange);
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
