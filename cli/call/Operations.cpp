#include "cli/call/Operations.h"

#include <algorithm>

#include <KeloCommunicationLib/account/AccountOperations.h>
#include <KeloCommunicationLib/orders/OrderOperations.h>
#include <KeloCommunicationLib/partners/PartnerOperations.h>

#include "cli/call/OperationCall.h"
#include "cli/prompt/Suggestion.h"

namespace cli
{

namespace
{

using I = TessalyConnectionInterface;

// clang-format off
constexpr Row rows[] = {
    row<operations::getUsersForLicense, &I::getUsersForLicense>({"INSTALLATION"}),
    row<operations::getStudiesForLicense, &I::getStudiesForLicense>({"INSTALLATION"}),
    row<operations::getSettingsLicenseInfo, &I::getSettingsLicenseInfo>({"INSTALLATION"}),
    row<operations::getAccountLicenseInfo, &I::getAccountLicenseInfo>({"INSTALLATION"}),
    row<operations::getAboutFileReference, &I::getAboutFileReference>({"INSTALLATION"}),
    row<operations::getIfuFileReference, &I::getIfuFileReference>({"INSTALLATION"}),
    row<operations::getUITranslationFileReference, &I::getUITranslationFileReference>({"INSTALLATION"}),
    row<operations::getAboutFileInfo, &I::getAboutFileInfo>({"INSTALLATION"}),
    row<operations::getIfuFileInfo, &I::getIfuFileInfo>({"INSTALLATION"}),
    row<operations::getUITranslationFileInfo, &I::getUITranslationFileInfo>({"INSTALLATION"}),
    row<operations::getHelpFileInfo, &I::getHelpFileInfo>({"INSTALLATION", "LANGUAGE_CODE"}),
    row<operations::getHelpFilesInfo, &I::getHelpFilesInfo>({"INSTALLATION"}),
    row<operations::getSoftwareUpdateInfo, &I::getSoftwareUpdateInfo>({"INSTALLATION"}),
    row<operations::getCatalogUpdateInfo, &I::getCatalogUpdateInfo>({"INSTALLATION", "VERSION"}),
    row<operations::getCatalogUpdateState, &I::getCatalogUpdateState>({"INSTALLATION", "VERSION"}),
    row<operations::getAvailableArticles, &I::getAvailableArticles>({"INSTALLATION"}),
    row<operations::createIPSOrder, &I::createIPSOrder>({"INFO"}),
    row<operations::getTempShellFile, &I::getTempShellFile>({"FILE_ID"}),
    row<operations::getMiraShareCases, &I::getMiraShareCases>({"PATIENT_ID", "INSTALLATION"}),
    row<operations::getPartners, &I::getPartners>({"INSTALLATION", "WITH_LOGOS"}),
    row<operations::getPartnerLogo, &I::getPartnerLogo>({"INSTALLATION", "PARTNER_ID"}),
    row<operations::getPartnerAccounts, &I::getPartnerAccounts>({"INSTALLATION"}),
    row<operations::testAccountConnection, &I::testAccountConnection>({"INSTALLATION", "PARTNER_CONNECTION_ID"}),
    row<operations::getPartnerCases, &I::getPartnerCases>({"INSTALLATION", "PATIENT_ID"}),
    row<operations::updatePartnerCasesStatus, &I::updatePartnerCasesStatus>({"INSTALLATION", "CASES"}),
    row<operations::getShippingAddresses, &I::getShippingAddresses>({"INSTALLATION"}),
    row<operations::createOrder, &I::createOrder>({"ORDER"}),
    row<operations::createServiceOrder, &I::createServiceOrder>({"ORDER"}),
    row<operations::uploadOrderFile, &I::uploadOrderFile>({"FILE_REFERENCE", "CONTENT"}),
    row<operations::getPriceInfo, &I::getPriceInfo>({"REQUEST"}),
    row<operations::getOrderStatus, &I::getOrderStatus>({"REQUEST"}),
    row<operations::getTempShellCalculationData, &I::getTempShellCalculationData>({"ORDER_REFERENCE"}),
    row<operations::putFinishCadOrder, &I::putFinishCadOrder>({"ORDER_REFERENCE"}),
    row<operations::postFinishCadOrder, &I::postFinishCadOrder>({"ORDER_REFERENCE"}),
    row<operations::getThirdPartyAuthenticationKeys, &I::getThirdPartyAuthenticationKeys>({"INSTALLATION"}),
    row<operations::createCaseRequest, &I::createCaseRequest>({"REQUEST"}),
    row<operations::sharePartnerCaseRequest, &I::sharePartnerCaseRequest>({"REQUEST"}),
    row<operations::addNewDataRequest, &I::addNewDataRequest>({"REQUEST"}),
    row<operations::getSoftwarePageUrl, &I::getSoftwarePageUrl>({}),
};
// clang-format on

void add(std::vector<Operation>& all, std::span<Row const> rowsOfFamily)
{
    for (Row const& row : rowsOfFamily)
    {
        Operation& operation = all.emplace_back();
        operation.schema = row.schema();
        operation.pathMember = QString::fromLatin1(row.pathMember);
        operation.isSecret = row.isSecret;
        operation.run = row.run;
        for (std::size_t index = 0; index < row.names.size() && row.names[index] != nullptr; ++index)
        {
            operation.arguments.push_back({QString::fromLatin1(row.names[index]), row.kinds[index]});
        }
    }
}

} // namespace

std::vector<Operation> const& allOperations()
{
    static std::vector<Operation> const all = []
    {
        std::vector<Operation> made;
        add(made, rows);
        add(made, collaborationRows);
        return made;
    }();
    return all;
}

QStringList operationNames()
{
    QStringList names;
    for (Operation const& operation : allOperations())
    {
        names << operation.name();
    }
    return names;
}

Operation const& operationNamed(QString const& name)
{
    auto const& all = allOperations();
    auto const found =
        std::find_if(all.begin(), all.end(), [&name](Operation const& operation) { return operation.name() == name; });
    if (found == all.end())
    {
        QString const suggestion = didYouMean(name, operationNames());
        throw badInput(
            QStringLiteral("Unknown operation \"%1\"%2")
                .arg(name, suggestion.isEmpty() ? QStringLiteral("; kelo call --list shows all.") : suggestion));
    }
    return *found;
}

} // namespace cli
