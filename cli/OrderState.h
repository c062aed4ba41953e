#pragma once

#include <memory>
#include <vector>

#include <QJsonObject>
#include <QSaveFile>
#include <QString>

#include <KeloCommunicationLib/orders/ProductionOrderRecords.h>

namespace cli
{

/// How far an order has come whose files are being sent. It is kept in a file beside the order file, because the
/// service names the upload slots only once: without them a broken upload could only be repaired by a second order.
struct OrderState
{
    struct Slot
    {
        QString reference;
        OrderFileInfo file = {}; ///< as announced
        bool isUploaded = false;
    };

    QString installation;
    QString reference;
    QString productionIdentifier;
    std::vector<Slot> uploadSlots = {};
    bool isFinished = false;
};

/// The state of the order just created: every announced file with the slot of the same article and name. Throws a
/// Failure that names the order when the service has opened other slots than those.
OrderState stateOfCreated(OrderRequest const& request, OrderRequestResponse const& created);

/// The names of the files that are up (or are not), as one text.
QString fileNames(OrderState const& state, bool isUploaded);

/// The file that keeps the state.
class OrderStateFile
{
public:
    explicit OrderStateFile(QString const& path) : path_(path) {}

    QString const& path() const { return path_; }

    bool exists() const;
    /// Throws a Failure for a file that holds no state.
    OrderState load() const;
    /// Throws a Failure when the file could not be written later on: found out before there is an order.
    void prepare();
    void save(OrderState const& state);

private:
    QString path_;
    std::unique_ptr<QSaveFile> prepared_;
};

} // namespace cli
