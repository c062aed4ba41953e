#pragma once

#include <functional>

#include <QString>
#include <QUrl>

#include <KeloCommunicationLib/Export.h>
#include <platform/rest/Connection.h>

/// A session with one of the service's endpoints: a `rest::Connection` with this service's error parser and a time-out
/// of 30 seconds.
class KELO_EXPORT TessalyConnectionBase : public rest::Connection
{
public:
    /// A session without an address; `initialize` gives it one.
    TessalyConnectionBase();
    ~TessalyConnectionBase() override;

    /// As `rest::Connection::initialize`, then installs a copy of `m_callback`.
    void initialize(QUrl baseUrl, QString const& username, QString const& password, QString const& extra) override;

    /// The process-wide trace hook. Read without a lock whenever a connection is initialised, so set it before the
    /// first one is made. Several threads may call it at the same time.
    static std::function<void(rest::TraceData const&)> m_callback;
};
