#include <KeloCommunicationLib/connection/KeloErrors.h>

namespace kelo
{

KeloErrorCode errorCode(rest::RestReplyStatus const& status)
{
    switch (status.kind)
    {
    case 0:
        return KeloErrorCode::Success;
    case 1:
        return KeloErrorCode::NoConnection;
    default:
        return static_cast<KeloErrorCode>(status.code);
    }
}

QString errorMessage(rest::RestReplyStatus const& status)
{
    return QStringLiteral("(%1) %2").arg(QString::number(status.code, 10), status.message);
}

} // namespace kelo
