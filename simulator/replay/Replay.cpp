#include "simulator/replay/Replay.h"

#include "simulator/faults/JsonAnswer.h"
#include "simulator/replay/Difference.h"

#include <algorithm>

namespace simulator
{

namespace
{

constexpr std::size_t mostUnmatched = 1000;

QString nameOf(Exchange const& exchange)
{
    return QStringLiteral("%1 %2").arg(QString::fromUtf8(exchange.method), QString::fromUtf8(exchange.target.path));
}

/// The head of the answer announces more than comes.
RawBytes cutAnswer(Answer const& answer, qint64 missingBytes)
{
    auto const length = "Content-Length: " + QByteArray::number(answer.body.size() + missingBytes) + "\r\n";
    return {.bytes = faults::wireHead(answer, length) + answer.body};
}

} // namespace

Replay::Replay(Recording recording, bool keepsTimes, bool speaksTls)
    : exchanges_(std::move(recording.exchanges)),
      addresses_(std::move(recording.addresses)),
      keepsTimes_(keepsTimes),
      speaksTls_(speaksTls)
{
}

Replay::Found Replay::answerTo(HttpRequest const& request, quint64 number)
{
    Question const question(request);
    Exchange* found = nullptr;
    Exchange const* nearest = nullptr;
    Difference least;
    for (auto& exchange : exchanges_)
    {
        auto const differs = difference(question, exchange);
        if (differs.size == 0)
        {
            found = &exchange;
            if (exchange.asked == 0)
            {
                break;
            }
        }
        else if (nearest == nullptr || differs.size < least.size)
        {
            nearest = &exchange;
            least = differs;
        }
    }
    if (found != nullptr)
    {
        return answerOf(*found, request);
    }
    auto const asked = QString::fromUtf8(request.method + ' ' + request.target);
    auto const text =
        QStringLiteral("%1; nearest is %2, %3: %4").arg(asked, nearest->place, nameOf(*nearest), least.text);
    unmatched_.push_back({number, text});
    unmatched_.erase(
        unmatched_.begin(), unmatched_.end() - static_cast<std::ptrdiff_t>(std::min(unmatched_.size(), mostUnmatched)));
    ++unmatchedCount_;
    return {.answer = Refusal(Reason::NotRecorded, text).answer(), .unmatched = text};
}

Replay::Found Replay::answerOf(Exchange& exchange, HttpRequest const& request) const
{
    ++exchange.asked;
    Found found = {.answer = exchange.answer, .time = keepsTimes_ ? exchange.time : std::chrono::milliseconds(0)};
    auto& answer = found.answer;
    if (auto const host = request.header("Host"); !host.isEmpty())
    {
        auto const origin = (speaksTls_ ? "https://" : "http://") + host;
        answer.body = exchange.isText ? addresses_.mapped(answer.body, origin) : answer.body;
        for (auto& [name, value] : answer.headers)
        {
            value = addresses_.mapped(value, origin);
        }
    }
    if (exchange.isCut && speaksTls_)
    {
        answer = Answer::drop();
    }
    else if (exchange.isCut)
    {
        answer.raw = cutAnswer(answer, exchange.missingBytes);
    }
    else if (exchange.missingBytes > 0)
    {
        answer.body = QByteArray(exchange.missingBytes, '\0');
    }
    return found;
}

void Replay::rewind()
{
    for (auto& exchange : exchanges_)
    {
        exchange.asked = 0;
    }
    unmatched_.clear();
    unmatchedCount_ = 0;
}

QJsonObject Replay::toJson() const
{
    QJsonArray neverAsked;
    for (auto const& exchange : exchanges_)
    {
        if (exchange.asked == 0)
        {
            neverAsked.append(QJsonObject{
                {"Entry", exchange.place}, {"Request", nameOf(exchange)}, {"Status", exchange.answer.status}});
        }
    }
    QJsonArray unmatched;
    for (auto const& [number, text] : unmatched_)
    {
        unmatched.append(QJsonObject{{"Number", static_cast<qint64>(number)}, {"Request", text}});
    }
    return {
        {"Entries", static_cast<qint64>(exchanges_.size())},
        {"NeverAsked", neverAsked},
        {"Unmatched", unmatched},
        {"UnmatchedCount", unmatchedCount_}};
}

} // namespace simulator
