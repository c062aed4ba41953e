#include "simulator/faults/JsonAnswer.h"

#include <QJsonDocument>

namespace simulator::faults
{

namespace
{

class MemberWalk
{
public:
    MemberWalk(QString name, MemberChange const& change) : name_(std::move(name)), change_(change) {}

    QJsonValue changed(QJsonValue const& value) const
    {
        if (value.isArray())
        {
            QJsonArray array;
            for (auto const& element : value.toArray())
            {
                array.append(changed(element));
            }
            return array;
        }
        return value.isObject() ? QJsonValue(changed(value.toObject())) : value;
    }

private:
    QJsonObject changed(QJsonObject const& before) const
    {
        QJsonObject after;
        for (auto const& key : before.keys())
        {
            auto const value = before[key];
            auto const isMeant = name_.isEmpty() || key == name_;
            auto const changedValue = isMeant ? change_(value) : value;
            // Inserting an undefined value leaves the member out.
            after.insert(key, changedValue == value ? changed(value) : changedValue);
        }
        return after;
    }

    QString const name_;
    MemberChange const& change_;
};

QByteArray textOf(QJsonValue const& value)
{
    auto const document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson(QJsonDocument::Compact);
}

} // namespace

void changeMembers(Answer& answer, QJsonObject const& settings, MemberChange const& change)
{
    auto const document = QJsonDocument::fromJson(answer.body);
    if (!document.isNull())
    {
        MemberWalk const walk(settings["Member"].toString(), change);
        auto const body = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
        answer.body = textOf(walk.changed(body));
    }
}

QByteArray bodyOr(QJsonObject const& settings, QByteArray const& usual)
{
    auto const body = settings["Body"];
    return body.isUndefined() ? usual : body.isString() ? body.toString().toUtf8() : textOf(body);
}

QByteArray wireHead(Answer const& answer, QByteArray const& framing)
{
    // 204 announces that there is no body, whatever follows.
    auto const status = answer.status == 204 ? 200 : answer.status;
    return "HTTP/1.1 " + QByteArray::number(status) + " Status\r\nContent-Type: " + answer.contentType + "\r\n"
           + framing + "\r\n";
}

} // namespace simulator::faults
