#include <cstdio>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

int main()
{
    auto const connection = TessalyConnection::makeConnection(
        QUrl(QStringLiteral("http://127.0.0.1:1")), QStringLiteral("user"), QStringLiteral("password"));
    rest::RestReplyStatus const status = connection->getUsersForLicense(QStringLiteral("installation")).get().status;
    std::printf("status kind %u (%s)\n", status.kind, qPrintable(status.message));
    return status.kind == 1 ? 0 : 1;
}
