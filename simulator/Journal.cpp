#include "simulator/Journal.h"

#include <QStringDecoder>

namespace simulator
{

namespace
{

constexpr qsizetype keptBytes = 1 << 20; // of each body: uploads of volumes must not fill the memory

} // namespace

quint64 Journal::add(HttpRequest const& request)
{
    auto& entry = entries_.emplace_back(Entry{.request = request, .size = request.bodySize});
    entry.request.body.truncate(keptBytes);
    entry.request.authorization.clear();
    return firstNumber_ + entries_.size() - 1;
}

void Journal::complete(quint64 number, QString const& operation, int status)
{
    if (number >= firstNumber_)
    {
        auto& entry = entries_.at(number - firstNumber_);
        entry.operation = operation;
        entry.status = status;
    }
}

void Journal::clear()
{
    firstNumber_ += entries_.size();
    entries_.clear();
}

QJsonObject Journal::toJson(Entry const& entry)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString const text = decoder(entry.request.body);
    QJsonObject json = {
        {"Method", QString::fromUtf8(entry.request.method)},
        {"Target", QString::fromUtf8(entry.request.target)},
        {"Operation", entry.operation},
        {"Size", entry.size},
        {"Status", entry.status},
    };
    if (decoder.hasError())
    {
        json.insert("BodyBase64", QString::fromLatin1(entry.request.body.toBase64()));
    }
    else
    {
        json.insert("Body", text);
    }
    return json;
}

QJsonObject Journal::toJson() const
{
    QJsonArray requests;
    QMap<QString, int> counts;
    for (auto const& entry : entries_)
    {
        requests.append(toJson(entry));
        auto const target = QString::fromUtf8(entry.request.target);
        ++counts[QString::fromUtf8(entry.request.method) + ' ' + target.section('?', 0, 0)];
    }
    QJsonObject countsJson;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
    {
        countsJson.insert(it.key(), it.value());
    }
    return {{"Requests", requests}, {"Counts", countsJson}};
}

} // namespace simulator
