#include "simulator/resources/Statistics.h"

#include "simulator/Routing.h"
#include "simulator/State.h"

namespace simulator
{

namespace
{

constexpr Member uploadMembers[] = {{"SelectedType", Kind::Text}, {"Data", Kind::Text}};

/// Takes base64 only in its one canonical form: padded, no line breaks, nothing else in between.
QByteArray decoded(QString const& base64)
{
    auto const text = base64.toUtf8();
    auto const result = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!result || result.decoded.toBase64() != text)
    {
        throw Refusal(Reason::BadValue, "Data");
    }
    return result.decoded;
}

Answer upload(Call const& call)
{
    auto const data = decoded(call.text("Data"));
    call.state.statistics.push_back({call.text("SelectedType"), data, call.state.tick()});
    return Answer::noContent();
}

} // namespace

std::vector<Route> statisticsRoutes()
{
    return {{"uploadVantorStats", "POST", "/stats", uploadMembers, upload}};
}

Answer storedStatistics(Call const& call)
{
    QJsonArray list;
    for (auto const& stored : call.state.statistics)
    {
        list.append(QJsonObject{
            {"SelectedType", stored.type},
            {"Data", QString::fromLatin1(stored.data.toBase64())},
            {"Size", stored.data.size()},
            {"ReceivedAt", stored.receivedAt.toString(Qt::ISODate)}});
    }
    return Answer::json(list);
}

} // namespace simulator
