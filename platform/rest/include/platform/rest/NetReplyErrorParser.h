#pragma once

#include <memory>

#include <QString>

#include <platform/rest/Export.h>
#include <platform/rest/NetworkReply.h>
#include <platform/rest/RestReply.h>

namespace rest
{

/// The classified outcome of a reply.
using NetReplyError = RestReplyStatus;

/// Classifies replies; a service derives from it to read its own error bodies. The hooks are asked only for answers
/// with an error status.
class PLATFORM_REST_EXPORT NetReplyErrorParser
{
public:
    NetReplyErrorParser() = default;
    NetReplyErrorParser(NetReplyErrorParser const&) = default;
    NetReplyErrorParser(NetReplyErrorParser&&) = default;
    NetReplyErrorParser& operator=(NetReplyErrorParser const&) = default;
    NetReplyErrorParser& operator=(NetReplyErrorParser&&) = default;
    virtual ~NetReplyErrorParser();

    /// Kind 0 for HTTP 2xx, 1 when there was no usable answer (message: the transport's text), 2 for any other answer.
    NetReplyError parse(JsonReply const& reply) const;

private:
    virtual int parseErrorCode(std::shared_ptr<NetworkReply<QJsonDocument>> const& reply) const = 0;
    virtual QString parseErrorMessage(std::shared_ptr<NetworkReply<QJsonDocument>> const& reply) const = 0;
    virtual QString parseServerResponseStatus(std::shared_ptr<NetworkReply<QJsonDocument>> const& reply) const = 0;
};

} // namespace rest
