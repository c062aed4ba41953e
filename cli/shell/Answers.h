#pragma once

#include <mutex>
#include <vector>

#include <QJsonDocument>

#include <platform/rest/RestReply.h>
#include <platform/rest/TraceData.h>

namespace cli
{

/// What an answer must be like to be taken for one of the service's.
enum class Shape : int
{
    Anything,
    Object,
    List
};

/// What became of one exchange.
struct Answer
{
    rest::RestReplyStatus status;
    QJsonDocument json; ///< null if it was none

    bool has(Shape shape) const;
};

/// What the library leaves untold: whether an answer was JSON of the wanted shape, and the status for the operations
/// whose results have none. Fed by the trace hook; may be used from any thread.
class Answers
{
public:
    void add(rest::TraceData const& exchange);
    /// Those since the last call of `takeFresh`, in the order in which the exchanges ended.
    std::vector<Answer> fresh() const;
    std::vector<Answer> takeFresh();
    /// Whether there ever was one.
    bool hasAny() const;

private:
    mutable std::mutex mutex_;
    bool hasAny_ = false;
    std::vector<Answer> fresh_;
};

} // namespace cli
