#include "simulator/Journal.h"

#include <QStringDecoder>

#include <algorithm>

namespace simulator
{

namespace
{

constexpr qsizetype keptBytes = 1 << 20;  // of each body: uploads of volumes must not fill the memory
constexpr qsizetype mostBytes = 64 << 20; // of all bodies
constexpr std::size_t mostEntries = 20'000;

/// As text, or in base64 where it is none.
void insertBody(QJsonObject& json, char const* key, QByteArray const& body)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString const text = decoder(body);
    if (decoder.hasError())
    {
        json.insert(QLatin1String(key) + "Base64", QString::fromLatin1(body.toBase64()));
    }
    else
    {
        json.insert(QLatin1String(key), text);
    }
}

bool isSecret(QByteArray const& header)
{
    return header.endsWith("authorization") || header.endsWith("cookie");
}

QJsonObject headersJson(std::vector<std::pair<QByteArray, QByteArray>> const& headers)
{
    QJsonObject json;
    for (auto const& [name, value] : headers)
    {
        auto const key = QString::fromLatin1(name);
        auto const text = isSecret(name.toLower()) ? "(redacted)" : QString::fromUtf8(value);
        json[key] = json.contains(key) ? json[key].toString() + ", " + text : text;
    }
    return json;
}

QJsonObject briefJson(Journal::Entry const& entry)
{
    QJsonObject json = {
        {"Number", static_cast<qint64>(entry.number)},
        {"Time", entry.time.toString(Qt::ISODateWithMs)},
        {"Method", QString::fromUtf8(entry.request.method)},
        {"Target", QString::fromUtf8(entry.request.target)},
        {"Operation", entry.outcome.operation},
        {"Size", entry.request.bodySize},
        {"Status", QJsonValue()},
    };
    if (entry.status)
    {
        json["Status"] = *entry.status;
        json["Milliseconds"] = entry.milliseconds;
    }
    if (!entry.outcome.unmatched.isEmpty())
    {
        json["Unmatched"] = entry.outcome.unmatched;
    }
    if (entry.outcome.fault != 0)
    {
        json["Fault"] = QJsonObject{{"Id", entry.outcome.fault}, {"Kind", entry.outcome.faultKind}};
    }
    return json;
}

bool passes(Journal::Entry const& entry, Journal::Filter const& filter)
{
    return (filter.operation.isEmpty() || entry.outcome.operation == filter.operation)
           && (filter.method.isEmpty() || QString::fromUtf8(entry.request.method) == filter.method)
           && (!filter.status || entry.status == filter.status) && entry.number > filter.since;
}

} // namespace

quint64 Journal::add(HttpRequest const& request)
{
    auto& entry = entries_.emplace_back(
        Entry{.number = firstNumber_ + entries_.size(), .request = request, .time = QDateTime::currentDateTimeUtc()});
    entry.clock.start();
    entry.request.body.truncate(keptBytes);
    bytes_ += entry.request.body.size();
    auto const number = entry.number;
    keepWithinBounds();
    return number;
}

void Journal::complete(quint64 number, Outcome const& outcome, Answer const& answer)
{
    if (number >= firstNumber_)
    {
        auto& entry = entries_.at(number - firstNumber_);
        entry.outcome = outcome;
        entry.status = answer.status;
        entry.milliseconds = entry.clock.elapsed();
        entry.answer = answer.body.left(keptBytes);
        entry.answerHeaders = answer.headers;
        if (!answer.dropped && !answer.body.isEmpty())
        {
            entry.answerHeaders.emplace_back("Content-Type", answer.contentType);
        }
        bytes_ += entry.answer.size();
        keepWithinBounds();
    }
}

void Journal::keepWithinBounds()
{
    while (entries_.size() > mostEntries || bytes_ > mostBytes)
    {
        bytes_ -= entries_.front().request.body.size() + entries_.front().answer.size();
        entries_.pop_front();
        ++firstNumber_;
        ++dropped_;
    }
}

void Journal::clear()
{
    firstNumber_ += entries_.size();
    entries_.clear();
    bytes_ = 0;
    dropped_ = 0;
}

std::vector<Journal::Entry const*> Journal::select(Filter const& filter) const
{
    std::vector<Entry const*> found;
    for (auto const& entry : entries_)
    {
        if (passes(entry, filter))
        {
            found.push_back(&entry);
        }
    }
    return found;
}

Journal::Entry const* Journal::find(quint64 number) const
{
    auto const isThere = number >= firstNumber_ && number < firstNumber_ + entries_.size();
    return isThere ? &entries_[number - firstNumber_] : nullptr;
}

QJsonObject Journal::toJson(Entry const& entry)
{
    auto json = briefJson(entry);
    json.insert("Headers", headersJson(entry.request.headers));
    insertBody(json, "Body", entry.request.body);
    if (entry.status)
    {
        json.insert("AnswerHeaders", headersJson(entry.answerHeaders));
        insertBody(json, "Answer", entry.answer);
    }
    return json;
}

QJsonObject Journal::toBriefJson(Filter const& filter, std::size_t limit) const
{
    auto const selected = select(filter);
    QJsonArray requests;
    for (auto at = selected.size() - std::min(selected.size(), limit); at < selected.size(); ++at)
    {
        requests.append(briefJson(*selected[at]));
    }
    return {
        {"Requests", requests},
        {"Matching", static_cast<qint64>(selected.size())},
        {"Total", static_cast<qint64>(entries_.size())},
        {"Dropped", static_cast<qint64>(dropped_)}};
}

QJsonObject Journal::toJson(Filter const& filter, std::size_t limit) const
{
    auto const selected = select(filter);
    QJsonArray requests;
    QJsonObject counts;
    for (std::size_t at = 0; at < selected.size(); ++at)
    {
        auto const& request = selected[at]->request;
        auto const path = QString::fromUtf8(request.method + ' ' + request.target).section('?', 0, 0);
        counts[path] = counts[path].toInt() + 1;
        if (selected.size() - at <= limit)
        {
            requests.append(toJson(*selected[at]));
        }
    }
    return {{"Requests", requests}, {"Counts", counts}, {"Dropped", static_cast<qint64>(dropped_)}};
}

} // namespace simulator
