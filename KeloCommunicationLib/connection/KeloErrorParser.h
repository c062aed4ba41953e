#pragma once

#include <memory>

#include <QJsonDocument>
#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <platform/rest/NetReplyErrorParser.h>

/// Reads the service's error bodies: an array whose first element holds "Code", a string of decimal digits, and
/// "Message".
class KELO_EXPORT KeloErrorParser : public rest::NetReplyErrorParser
{
private:
    /// The code; 1000 when there is none to be read.
    int parseErrorCode(std::shared_ptr<rest::NetworkReply<QJsonDocument>> const& reply) const override;
    /// The message; empty when there is none.
    QString parseErrorMessage(std::shared_ptr<rest::NetworkReply<QJsonDocument>> const& reply) const override;
    /// Always empty: the service sends no such status.
    QString parseServerResponseStatus(std::shared_ptr<rest::NetworkReply<QJsonDocument>> const& reply) const override;
};
