#include "cli/shell/Answers.h"

#include <memory>
#include <utility>

#include <KeloCommunicationLib/connection/KeloErrorParser.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>

namespace cli
{

bool Answer::has(Shape shape) const
{
    switch (shape)
    {
    case Shape::Object:
        return json.isObject();
    case Shape::List:
        return jsonSerializer::implementation::listIn(json).has_value();
    case Shape::Anything:
        break;
    }
    return true;
}

void Answers::add(rest::TraceData const& exchange)
{
    int const classification = exchange.httpStatus == 0 || !exchange.error.isEmpty() ? 2
                               : exchange.httpStatus / 100 == 2                      ? 0
                                                                                     : 1;
    auto const json = QJsonDocument::fromJson(exchange.responseBody);
    auto const status = KeloErrorParser().parse(std::make_shared<rest::NetworkReply<QJsonDocument>>(
        exchange.httpStatus, classification, exchange.httpStatus, exchange.error, json));
    std::lock_guard const lock(mutex_);
    fresh_.push_back({status, json});
    hasAny_ = true;
}

std::vector<Answer> Answers::fresh() const
{
    std::lock_guard const lock(mutex_);
    return fresh_;
}

std::vector<Answer> Answers::takeFresh()
{
    std::lock_guard const lock(mutex_);
    return std::exchange(fresh_, {});
}

bool Answers::hasAny() const
{
    std::lock_guard const lock(mutex_);
    return hasAny_;
}

} // namespace cli
