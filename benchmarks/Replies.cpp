#include "benchmarks/Replies.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace bench
{

QByteArray settingsReply()
{
    QByteArray text = "{";
    for (char const* const key :
         {"StatsUploadUrl", "ContactUrl", "HelpUrl", "IFUUrl", "ZelkoMiraUrl", "SharedCasesUrl", "SoftwarePageUrl",
          "ForgotPasswordPageUrl", "FindAccountPageUrl", "AdditionalResourcesUrl", "DownloadImplantFilesUrl",
          "TrainingVideosUrl", "SubscriptionsUrl", "RedirectToPartnerUrl"})
    {
        text += (text.size() == 1 ? "\"" : ",\"") + QByteArray(key) + R"(":"https://portal.kelo.example/en/pages/)"
                + key + "\"";
    }
    return text + "}";
}

QByteArray requestsReply(int count)
{
    QByteArray text = "[";
    for (int index = 0; index < count; ++index)
    {
        QByteArray const number = QByteArray::number(100000000 + index);
        text += QByteArray(index == 0 ? "" : ",") + R"({"RequestId":"REQ-)" + number + R"(-2b9f","TransactionId":"TX-)"
                + number + R"(-77","RequestType":)" + QByteArray::number(index % 8) + "}";
    }
    return text + "]";
}

QByteArray detailsReply(char const* record, int count)
{
    QFile file(QStringLiteral(KELO_SAMPLES));
    if (!file.open(QIODevice::ReadOnly))
    {
        qFatal("%s cannot be read", KELO_SAMPLES);
    }
    QJsonObject const group = QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String(record)).toObject();
    auto const entries = group.value(QStringLiteral("CollaborationRequestDetailInfos")).toArray().size();
    QJsonArray groups;
    for (qsizetype made = 0; made < count; made += entries)
    {
        groups.append(group);
    }
    // Referrals without a file of the partner would be left out.
    return QJsonDocument(groups).toJson(QJsonDocument::Compact).replace(R"("IsCreator":true)", R"("IsCreator":false)");
}

} // namespace bench
