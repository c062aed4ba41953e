#include <KeloCommunicationLib/account/AccountOperations.h>

#include <QJsonObject>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>

using KeloCommunicationLib::internal::call;
using KeloCommunicationLib::internal::requestTo;

namespace
{

template <class T>
using Reply = TessalyConnectionInterface::Reply<T>;

} // namespace

Reply<std::vector<TessalyUser>> TessalyConnection::getUsersForLicense(QString const& installationId)
{
    return call(*this, operations::getUsersForLicense, {installationId});
}

Reply<StudyInfoList> TessalyConnection::getStudiesForLicense(QString const& installationId)
{
    return call(*this, operations::getStudiesForLicense, {installationId});
}

Reply<SettingsLicenseInfo> TessalyConnection::getSettingsLicenseInfo(QString const& installationId)
{
    return call(*this, operations::getSettingsLicenseInfo, {installationId});
}

Reply<AccountLicenseInfo> TessalyConnection::getAccountLicenseInfo(QString const& installationId)
{
    return call(*this, operations::getAccountLicenseInfo, {installationId});
}

Reply<FileIdReference> TessalyConnection::getAboutFileReference(QString const& installationId)
{
    return call(*this, operations::getAboutFileReference, {installationId});
}

Reply<FileIdReference> TessalyConnection::getIfuFileReference(QString const& installationId)
{
    return call(*this, operations::getIfuFileReference, {installationId});
}

Reply<FileIdReference> TessalyConnection::getUITranslationFileReference(QString const& installationId)
{
    return call(*this, operations::getUITranslationFileReference, {installationId});
}

Reply<FileLicenseInfo> TessalyConnection::getAboutFileInfo(QString const& installationId)
{
    return call(*this, operations::getAboutFileInfo, {installationId});
}

Reply<FileLicenseInfo> TessalyConnection::getIfuFileInfo(QString const& installationId)
{
    return call(*this, operations::getIfuFileInfo, {installationId});
}

Reply<FileLicenseInfo> TessalyConnection::getUITranslationFileInfo(QString const& installationId)
{
    return call(*this, operations::getUITranslationFileInfo, {installationId});
}

Reply<FileLicenseInfo> TessalyConnection::getHelpFileInfo(QString const& installationId, QString const& languageCode)
{
    return call(*this, operations::getHelpFileInfo, {installationId, languageCode});
}

Reply<std::vector<HelpFileInfo>> TessalyConnection::getHelpFilesInfo(QString const& installationId)
{
    return call(*this, operations::getHelpFilesInfo, {installationId});
}

Reply<SoftwareUpdateInfo> TessalyConnection::getSoftwareUpdateInfo(QString const& installationId)
{
    return call(*this, operations::getSoftwareUpdateInfo, {installationId});
}

QString TessalyConnection::getSoftwarePageUrl() const
{
    rest::JsonReply const reply = postRequest(requestTo(operations::getSoftwarePageUrl, {}));
    bool const answered = reply->classification() == 0;
    return answered ? jsonSerializer::fromJson<operations::SoftwarePage>(reply->body().object()).softwarePageUrl
                    : QString();
}

std::pair<KeloErrorCode, std::vector<QString>> TessalyConnection::getThirdPartyAuthenticationKeys(
    QString const& installationId)
{
    rest::JsonReply const reply = postRequest(requestTo(operations::getThirdPartyAuthenticationKeys, {installationId}));
    if (rest::isNetworkError(reply))
    {
        return {KeloErrorCode::NoConnection, {}};
    }
    // Any answer counts as a success; one without keys, an error included, as an empty list.
    return {
        KeloErrorCode::Success, jsonSerializer::fromJson<operations::AuthenticationKeys>(reply->body().object()).keys};
}
