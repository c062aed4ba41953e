#pragma once

#include <utility>

#include <QList>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>

/// A file that an ordered item announces for upload.
class KELO_EXPORT OrderFileInfo
{
public:
    /// File name.
    QString const& getName() const { return name_; }

    void setName(QString const& name) { name_ = name; }

    /// Bytes of the whole file.
    int getSize() const { return size_; }

    void setSize(int size) { size_ = size; }

    /// Bytes of one piece of the upload.
    int getChunckSize() const { return chunckSize_; }

    void setChunckSize(int chunckSize) { chunckSize_ = chunckSize; }

    /// Check sum of the whole file.
    QString const& getCheckSum() const { return checkSum_; }

    void setCheckSum(QString const& checkSum) { checkSum_ = checkSum; }

    /// Which local file this entry stands for. The application's own; never sent.
    QString const& getFrontendIdentifier() const { return frontendIdentifier_; }

    void setFrontendIdentifier(QString const& frontendIdentifier) { frontendIdentifier_ = frontendIdentifier; }

private:
    QString name_;
    int size_ = 0;
    int chunckSize_ = 0;
    QString checkSum_;
    QString frontendIdentifier_;
};

/// One item of a production order.
class KELO_EXPORT OrderItemInfo
{
public:
    /// State of the item's design. The numbering is the service's own; any integer is valid.
    enum class CadStatus : int
    {
    };

    /// The ordered article.
    QString const& getArticleNumber() const { return articleNumber_; }

    void setArticleNumber(QString const& articleNumber) { articleNumber_ = articleNumber; }

    int getQuantity() const { return quantity_; }

    void setQuantity(int quantity) { quantity_ = quantity; }

    /// First tooth of the item, in FDI two-digit notation: quadrant, then position, as in 36.
    int getToothNumberStart() const { return toothNumberStart_; }

    void setToothNumberStart(int toothNumberStart) { toothNumberStart_ = toothNumberStart; }

    /// Last tooth of the item, in the same notation.
    int getToothNumberEnd() const { return toothNumberEnd_; }

    void setToothNumberEnd(int toothNumberEnd) { toothNumberEnd_ = toothNumberEnd; }

    /// Why an earlier item is made again; empty when it is not.
    QString const& getRemakeCode() const { return remakeCode_; }

    void setRemakeCode(QString const& remakeCode) { remakeCode_ = remakeCode; }

    /// The voucher to redeem; empty for none.
    QString const& getVoucherCode() const { return voucherCode_; }

    void setVoucherCode(QString const& voucherCode) { voucherCode_ = voucherCode; }

    CadStatus getCadStatus() const { return cadStatus_; }

    void setCadStatus(CadStatus cadStatus) { cadStatus_ = cadStatus; }

    /// The files that will be uploaded for the item.
    QList<OrderFileInfo> const& getFiles() const { return files_; }

    void setFiles(QList<OrderFileInfo> const& files) { files_ = files; }

private:
    QString articleNumber_;
    int quantity_ = 0;
    int toothNumberStart_ = 0;
    int toothNumberEnd_ = 0;
    QString remakeCode_;
    QString voucherCode_;
    CadStatus cadStatus_{};
    QList<OrderFileInfo> files_;
};

/// A production order. Body of POST Orders; every member is sent, empty ones too.
class KELO_EXPORT OrderRequest
{
public:
    /// The account's installation.
    QString getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString const& installationReference)
    {
        installationReference_ = installationReference;
    }

    /// Version of the application that created the case.
    QVersionNumber const& getCreationFrontendVersion() const { return creationFrontendVersion_; }

    void setCreationFrontendVersion(QVersionNumber const& creationFrontendVersion)
    {
        creationFrontendVersion_ = creationFrontendVersion;
    }

    /// Version of the application that places the order.
    QVersionNumber const& getFrontendVersion() const { return frontendVersion_; }

    void setFrontendVersion(QVersionNumber const& frontendVersion) { frontendVersion_ = frontendVersion; }

    /// Where to ship to: `OrderShippingAddress::identifier`.
    QString getAddressIdentifier() const { return addressIdentifier_; }

    void setAddressIdentifier(QString const& addressIdentifier) { addressIdentifier_ = addressIdentifier; }

    QString getProductionNote() const { return productionNote_; }

    void setProductionNote(QString const& productionNote) { productionNote_ = productionNote; }

    QString getOriginalOrderNumber() const { return originalOrderNumber_; }

    void setOriginalOrderNumber(QString const& originalOrderNumber) { originalOrderNumber_ = originalOrderNumber; }

    QString getInvoiceReference() const { return invoiceReference_; }

    void setInvoiceReference(QString const& invoiceReference) { invoiceReference_ = invoiceReference; }

    QString getStudyId() const { return studyId_; }

    void setStudyId(QString const& studyId) { studyId_ = studyId; }

    QString getStudyParticipantId() const { return studyParticipantId_; }

    void setStudyParticipantId(QString const& studyParticipantId) { studyParticipantId_ = studyParticipantId; }

    QString getClinicianZipCode() const { return clinicianZipCode_; }

    void setClinicianZipCode(QString const& clinicianZipCode) { clinicianZipCode_ = clinicianZipCode; }

    QString getClinicianName() const { return clinicianName_; }

    void setClinicianName(QString const& clinicianName) { clinicianName_ = clinicianName; }

    QList<OrderItemInfo> getOrderItems() const { return orderItems_; }

    void setOrderItems(QList<OrderItemInfo> orderItems) { orderItems_ = std::move(orderItems); }

private:
    QString installationReference_;
    QVersionNumber creationFrontendVersion_;
    QVersionNumber frontendVersion_;
    QString addressIdentifier_;
    QString productionNote_;
    QString originalOrderNumber_;
    QString invoiceReference_;
    QString studyId_;
    QString studyParticipantId_;
    QString clinicianZipCode_;
    QString clinicianName_;
    QList<OrderItemInfo> orderItems_;
};

/// An upload slot that the service opened for a file.
class KELO_EXPORT OrderFile
{
public:
    /// Name under which the file was announced.
    QString const& getName() const { return name_; }

    void setName(QString const& name) { name_ = name; }

    /// Where the file's bytes go: the argument of `uploadOrderFile`.
    QString const& getReference() const { return reference_; }

    void setReference(QString const& reference) { reference_ = reference; }

private:
    QString name_;
    QString reference_;
};

/// An ordered article and its upload slots.
class KELO_EXPORT CadItemInfo
{
public:
    QString const& getArticleNumber() const { return articleNumber_; }

    void setArticleNumber(QString const& articleNumber) { articleNumber_ = articleNumber; }

    QList<OrderFile> const& getFiles() const { return files_; }

    void setFiles(QList<OrderFile> const& files) { files_ = files; }

private:
    QString articleNumber_;
    QList<OrderFile> files_;
};

/// Reply of POST Orders.
class KELO_EXPORT OrderRequestResponse
{
public:
    /// Names the order in later calls.
    QString getOrderReference() const { return orderReference_; }

    void setOrderReference(QString const& orderReference) { orderReference_ = orderReference; }

    QString getProductionIdentifier() const { return productionIdentifier_; }

    void setProductionIdentifier(QString const& productionIdentifier) { productionIdentifier_ = productionIdentifier; }

    /// The order's items with their upload slots.
    QList<CadItemInfo> getFiles() const { return files_; }

    void setFiles(QList<CadItemInfo> const& files) { files_ = files; }

private:
    QString orderReference_;
    QString productionIdentifier_;
    QList<CadItemInfo> files_;
};
