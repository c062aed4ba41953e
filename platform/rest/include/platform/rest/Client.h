#pragma once

#include <memory>

#include <platform/rest/Export.h>
#include <platform/rest/HttpRequestData.h>
#include <platform/rest/NetworkReply.h>

namespace rest
{

class Session;

/// The blocking face of a connection.
class PLATFORM_REST_EXPORT Client
{
public:
    explicit Client(std::shared_ptr<Session> session);

    /// Sends the request and waits for its finished reply; never null. Works on any thread. When the connection is
    /// closed or destroyed meanwhile, the reply is a network error.
    JsonReply send(HttpRequestData data) const;

private:
    std::shared_ptr<Session> session_;
};

} // namespace rest
