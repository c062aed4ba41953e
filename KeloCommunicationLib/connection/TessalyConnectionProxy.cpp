#include <KeloCommunicationLib/connection/TessalyConnectionProxy.h>

#include <utility>

#include <KeloCommunicationLib/connection/TessalyConnection.h>

TessalyConnectionProxyInterface::~TessalyConnectionProxyInterface() = default;

TessalyConnectionProxy::TessalyConnectionProxy() = default;

TessalyConnectionProxy::~TessalyConnectionProxy() = default;

void TessalyConnectionProxy::initialize(QUrl const& baseUrl, QString const& username, QString const& password)
{
    connection_ = TessalyConnection::makeConnection(baseUrl, username, password);
}

std::vector<QString> TessalyConnectionProxy::getThirdPartyAuthenticationKeys(QString const& installationId)
{
    auto [code, keys] = connection_->getThirdPartyAuthenticationKeys(installationId);
    lastCode_ = code;
    success_ = code == KeloErrorCode::Success;
    return std::move(keys);
}

bool TessalyConnectionProxy::isSuccess() const
{
    return success_;
}

KeloErrorCode TessalyConnectionProxy::getKeloErrorCode() const
{
    return lastCode_;
}
