#include <KeloCommunicationLib/account/VantorStatsConnection.h>

#include <chrono>

#include <QDebug>
#include <QUrl>

#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <platform/core/HostInfo.h>

VantorStatsConnection::VantorStatsConnection()
{
    setUseProxyAutoDiscovery(HostInfo::getHTTPProxyAutoDiscovery());
    TessalyConnectionBase::initialize(
        HostInfo::getVantorStatsURL(), HostInfo::getKELOUsername(), HostInfo::getKELOPassword(), QString());
}

VantorStatsConnection::~VantorStatsConnection() = default;

VantorStatsConnection::Result VantorStatsConnection::uploadVantorStats(VantorStats const& stats) const
{
    rest::JsonReply const reply = httpConnection().send(rest::RequestDataCreator::makeRequestData(
        rest::HttpMethod::Post, QUrl(), jsonSerializer::toJson(stats), std::chrono::milliseconds(0), true));
    if (rest::isNetworkError(reply))
    {
        qWarning() << "VantorStatsConnection : Upload of Stats file failed:" << reply->errorCode()
                   << reply->errorText();
        return {false, reply->errorCode()};
    }
    return {true, reply->errorCode()};
}
