#pragma once

#include <utility>
#include <vector>

#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>

/// One item of a case-designer order.
class KELO_EXPORT IPSOrderItemInfo
{
public:
    IPSOrderItemInfo() = default;

    IPSOrderItemInfo(QString const& articleNumber, QString const& manufacturerReference, int quantity)
        : articleNumber_(articleNumber), manufacturerReference_(manufacturerReference), quantity_(quantity)
    {
    }

    QString const& getArticleNumber() const { return articleNumber_; }

    void setArticleNumber(QString const& articleNumber) { articleNumber_ = articleNumber; }

    QString const& getManufacturerReference() const { return manufacturerReference_; }

    void setManufacturerReference(QString const& manufacturerReference)
    {
        manufacturerReference_ = manufacturerReference;
    }

    int getQuantity() const { return quantity_; }

    void setQuantity(int quantity) { quantity_ = quantity; }

    friend bool operator==(IPSOrderItemInfo const&, IPSOrderItemInfo const&) = default;

private:
    QString articleNumber_;
    QString manufacturerReference_;
    int quantity_ = 0;
};

/// A case-designer order. Body of POST Orders/ipscasedesigner.
class KELO_EXPORT CreateIPSOrderInfo
{
public:
    CreateIPSOrderInfo() = default;

    CreateIPSOrderInfo(
        QString const& installationReference, QVersionNumber creationFrontendVersion, QVersionNumber frontendVersion,
        QString const& patientId, std::vector<IPSOrderItemInfo> const& orderItemInfos)
        : installationReference_(installationReference),
          creationFrontendVersion_(std::move(creationFrontendVersion)),
          frontendVersion_(std::move(frontendVersion)),
          patientId_(patientId),
          orderItemInfos_(orderItemInfos)
    {
    }

    /// The account's installation.
    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString const& installationReference)
    {
        installationReference_ = installationReference;
    }

    /// Version of the application that created the case.
    QVersionNumber const& getCreationFrontendVersion() const { return creationFrontendVersion_; }

    void setCreationFrontendVersion(QVersionNumber creationFrontendVersion)
    {
        creationFrontendVersion_ = std::move(creationFrontendVersion);
    }

    /// Version of the application that places the order.
    QVersionNumber const& getFrontendVersion() const { return frontendVersion_; }

    void setFrontendVersion(QVersionNumber frontendVersion) { frontendVersion_ = std::move(frontendVersion); }

    QString const& getPatientId() const { return patientId_; }

    void setPatientId(QString const& patientId) { patientId_ = patientId; }

    std::vector<IPSOrderItemInfo> const& getOrderItemInfos() const { return orderItemInfos_; }

    void setOrderItemInfos(std::vector<IPSOrderItemInfo> const& orderItemInfos) { orderItemInfos_ = orderItemInfos; }

    friend bool operator==(CreateIPSOrderInfo const&, CreateIPSOrderInfo const&) = default;

private:
    QString installationReference_;
    QVersionNumber creationFrontendVersion_;
    QVersionNumber frontendVersion_;
    QString patientId_;
    std::vector<IPSOrderItemInfo> orderItemInfos_;
};
