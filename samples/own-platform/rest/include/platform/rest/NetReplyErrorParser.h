#pragma once

#include <memory>

#include <QJsonDocument>
#include <QString>

#include <platform/rest/NetworkReply.h>
#include <platform/rest/RestReply.h>

namespace rest
{

using NetReplyError = RestReplyStatus;

/// Classifies replies; the hooks are asked about answers with an error status.
class NetReplyErrorParser
{
public:
    virtual ~NetReplyErrorParser();

    NetReplyError parse(JsonReply const& reply) const;

private:
    virtual int parseErrorCode(std::shared_ptr<NetworkReply<QJsonDocument>> const& reply) const = 0;
    virtual QString parseErrorMessage(std::shared_ptr<NetworkReply<QJsonDocument>> const& reply) const = 0;
    virtual QString parseServerResponseStatus(std::shared_ptr<NetworkReply<QJsonDocument>> const& reply) const = 0;
};

} // namespace rest
