#include <cstdio>

#include <QCoreApplication>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

static_assert(
    core::isHostsOwn && threading::isHostsOwn && rest::isHostsOwn, "a bundled header has come before the host's own");

namespace
{

using collaboration::RequestType;

int fail(QString const& what)
{
    std::fprintf(stderr, "own-platform: %s\n", qPrintable(what));
    return 1;
}

void showUsers(rest::RestReply<std::vector<TessalyUser>> const& reply)
{
    std::printf("%zu users\n", reply.value.size());
    bool const isSuccess = reply.status.kind == 0 && !reply.value.empty();
    QCoreApplication::exit(isSuccess ? 0 : fail(kelo::errorMessage(reply.status)));
}

} // namespace

/// Shows a host's requests and users: own-platform [ADDRESS], or the address in KELO_API_URL.
int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    application.setOrganizationName(QStringLiteral("own-platform"));
    if (argc > 1)
    {
        qputenv("KELO_API_URL", argv[1]);
    }

    auto const connection = TessalyConnection::makeDefaultConnection();
    RequestDetailsRetriever retriever(*connection);
    QObject::connect(
        &retriever, &RequestDetailsRetriever::failed, &application,
        [](QString const& message) { QCoreApplication::exit(fail(message)); });
    QObject::connect(
        &retriever, &RequestDetailsRetriever::finished, &application,
        [&]
        {
            auto const requests = retriever.getAllRequestDetails();
            std::printf("%zu requests\n", requests.size());
            for (auto const& request : requests)
            {
                std::printf("  %s from %s\n", qPrintable(request.requestDetails.id), qPrintable(request.partnerName));
            }
            if (requests.empty() || !retriever.isSuccess())
            {
                QCoreApplication::exit(fail(QStringLiteral("the refresh is not complete")));
                return;
            }
            connection->getUsersForLicense(settings::registry::getInstallationReference(QString()))
                .then(&application, &showUsers);
        });

    std::vector<collaboration::RequestInfo> known;
    retriever.getUpdates(
        {RequestType::DentalScan, RequestType::LabDesign, RequestType::TempShell, RequestType::Template,
         RequestType::Restoration, RequestType::SurgeryPlan, RequestType::CentralizedRestoration,
         RequestType::Referral},
        known);
    return application.exec();
}
