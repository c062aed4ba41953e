#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLatin1String>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>

TessalyConnectionInterface::Reply<std::vector<TessalyUser>> TessalyConnection::getUsersForLicense(
    QString const& installationId)
{
    return get<std::vector<TessalyUser>>(pipeline::path("/Installations/%1/users", installationId));
}

TessalyConnectionInterface::Reply<StudyInfoList> TessalyConnection::getStudiesForLicense(QString const& installationId)
{
    return get<StudyInfoList>(pipeline::path("/Installations/%1/Studies", installationId));
}

TessalyConnectionInterface::Reply<SettingsLicenseInfo> TessalyConnection::getSettingsLicenseInfo(
    QString const& installationId)
{
    return get<SettingsLicenseInfo>(pipeline::path("/Installations/%1/settings?api-version=1.0", installationId));
}

TessalyConnectionInterface::Reply<AccountLicenseInfo> TessalyConnection::getAccountLicenseInfo(
    QString const& installationId)
{
    return get<AccountLicenseInfo>(pipeline::path("/Installations/%1/accountInfo?api-version=1.0", installationId));
}

TessalyConnectionInterface::Reply<FileIdReference> TessalyConnection::getAboutFileReference(
    QString const& installationId)
{
    return get<FileIdReference>(pipeline::path("/Installations/%1/about/status", installationId));
}

TessalyConnectionInterface::Reply<FileIdReference> TessalyConnection::getIfuFileReference(QString const& installationId)
{
    return get<FileIdReference>(pipeline::path("/Installations/%1/ifu/status", installationId));
}

TessalyConnectionInterface::Reply<FileIdReference> TessalyConnection::getUITranslationFileReference(
    QString const& installationId)
{
    return get<FileIdReference>(pipeline::path("/Installations/%1/uitranslation/status", installationId));
}

TessalyConnectionInterface::Reply<FileLicenseInfo> TessalyConnection::getAboutFileInfo(QString const& installationId)
{
    return get<FileLicenseInfo>(pipeline::path("/Installations/%1/about", installationId));
}

TessalyConnectionInterface::Reply<FileLicenseInfo> TessalyConnection::getIfuFileInfo(QString const& installationId)
{
    return get<FileLicenseInfo>(pipeline::path("/Installations/%1/ifu", installationId));
}

TessalyConnectionInterface::Reply<FileLicenseInfo> TessalyConnection::getUITranslationFileInfo(
    QString const& installationId)
{
    return get<FileLicenseInfo>(pipeline::path("/Installations/%1/uitranslation", installationId));
}

TessalyConnectionInterface::Reply<FileLicenseInfo> TessalyConnection::getHelpFileInfo(
    QString const& installationId, QString const& languageCode)
{
    // The language is part of the template before the installation is filled in.
    QString const pathTemplate = QStringLiteral("/Installations/%1/help/") + languageCode;
    return get<FileLicenseInfo>(pathTemplate.arg(installationId));
}

TessalyConnectionInterface::Reply<std::vector<HelpFileInfo>> TessalyConnection::getHelpFilesInfo(
    QString const& installationId)
{
    return get<std::vector<HelpFileInfo>>(pipeline::path("/Installations/%1/help/status", installationId));
}

TessalyConnectionInterface::Reply<SoftwareUpdateInfo> TessalyConnection::getSoftwareUpdateInfo(
    QString const& installationId)
{
    return get<SoftwareUpdateInfo>(pipeline::path("/Installations/%1/softwareupdate?api-version=1.0", installationId));
}

QString TessalyConnection::getSoftwarePageUrl() const
{
    auto const reply = getBlocking(QStringLiteral("Settings"));
    bool const answered = reply->classification() == 0;
    return answered ? reply->body().object().value(QLatin1String("SoftwarePageUrl")).toString() : QString();
}

std::pair<KeloErrorCode, std::vector<QString>> TessalyConnection::getThirdPartyAuthenticationKeys(
    QString const& installationId)
{
    auto const reply = getBlocking(pipeline::path("Installations/%1/3rdpartyauthenticationkeys", installationId));
    if (rest::isNetworkError(reply))
    {
        return {KeloErrorCode::NoConnection, {}};
    }
    // Any answer counts as a success; one without keys, an error included, as an empty list.
    std::vector<QString> keys;
    QJsonArray const array = reply->body().object().value(QLatin1String("Keys")).toArray();
    keys.reserve(static_cast<std::size_t>(array.size()));
    for (QJsonValue const key : array)
    {
        keys.push_back(key.toString());
    }
    return {KeloErrorCode::Success, std::move(keys)};
}
