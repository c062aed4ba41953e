#pragma once

#include <memory>
#include <vector>

#include <QString>
#include <QUrl>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/connection/KeloErrorCode.h>

class TessalyConnection;

/// A blocking view of a connection for callers that cannot work with futures: each call returns its value, the outcome
/// of the last one is asked for afterwards.
class KELO_EXPORT TessalyConnectionProxyInterface
{
public:
    virtual ~TessalyConnectionProxyInterface();

    /// Starts a new session; the earlier one, if any, is ended. Nothing is sent.
    virtual void initialize(QUrl const& baseUrl, QString const& username, QString const& password) = 0;
    /// Authentication keys for outside parties; empty when the service was unreachable. Blocks. Needs `initialize`
    /// first. GET Installations/{id}/3rdpartyauthenticationkeys.
    virtual std::vector<QString> getThirdPartyAuthenticationKeys(QString const& installationId) = 0;
    /// Whether the last call succeeded; true before the first.
    virtual bool isSuccess() const = 0;
    /// The code of the last call; `Success` before the first.
    virtual KeloErrorCode getKeloErrorCode() const = 0;

protected:
    TessalyConnectionProxyInterface() = default;
    TessalyConnectionProxyInterface(TessalyConnectionProxyInterface const&) = default;
    TessalyConnectionProxyInterface& operator=(TessalyConnectionProxyInterface const&) = default;
};

/// The proxy of a `TessalyConnection` of its own. Belongs to one thread.
class KELO_EXPORT TessalyConnectionProxy : public TessalyConnectionProxyInterface
{
public:
    TessalyConnectionProxy();
    ~TessalyConnectionProxy() override;

    void initialize(QUrl const& baseUrl, QString const& username, QString const& password) override;
    std::vector<QString> getThirdPartyAuthenticationKeys(QString const& installationId) override;
    bool isSuccess() const override;
    KeloErrorCode getKeloErrorCode() const override;

private:
    std::unique_ptr<TessalyConnection> connection_;
    bool success_ = true;
    KeloErrorCode lastCode_ = KeloErrorCode::Success;
};
