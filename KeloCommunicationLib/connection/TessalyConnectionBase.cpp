#include <KeloCommunicationLib/connection/TessalyConnectionBase.h>

#include <chrono>
#include <memory>
#include <utility>

#include <KeloCommunicationLib/connection/KeloErrorParser.h>

std::function<void(rest::TraceData const&)> TessalyConnectionBase::m_callback;

TessalyConnectionBase::TessalyConnectionBase()
    : rest::Connection(std::make_unique<KeloErrorParser>(), std::chrono::seconds(30), nullptr)
{
}

TessalyConnectionBase::~TessalyConnectionBase() = default;

void TessalyConnectionBase::initialize(
    QUrl baseUrl, QString const& username, QString const& password, QString const& extra)
{
    rest::Connection::initialize(std::move(baseUrl), username, password, extra);
    if (m_callback)
    {
        setTraceCallback(m_callback);
    }
}
