#pragma once

#include <optional>
#include <vector>

#include <QDateTime>
#include <QString>

#include <KeloCommunicationLib/orders/ProductionOrderRecords.h>

#include "cli/shell/OutputFile.h"

namespace cli
{

/// What is known of an order that was sent. It is kept in a file beside the order file: from before the order is sent,
/// so that a lost answer leads to no second order, and with the upload slots, which the service names only once.
struct OrderState
{
    struct Slot
    {
        QString reference;
        OrderFileInfo file = {}; ///< as announced
        bool isUploaded = false;
    };

    QString installation = {};
    QString reference = {}; ///< empty while no answer has told it
    QString productionIdentifier = {};
    QString fingerprint = {}; ///< of the order as it was sent
    QDateTime sentAt = {};    ///< UTC
    std::vector<Slot> uploadSlots = {};
    bool isAnswered = false; ///< the service has named all that it takes to go on
    bool isFinished = false;
};

/// The state of an order that is about to be sent.
OrderState stateBeforeSending(OrderRequest const& request);

/// The same for the same order with the same files, and for no other.
QString fingerprintOf(OrderRequest const& request);

/// Adds what the service says of the order just created: every announced file gets the slot of the same article and
/// name. Throws a Failure when its answer is not enough to go on; what it does tell of the order is in the state then.
void takeAnswer(OrderState& state, OrderRequest const& request, OrderRequestResponse const& created);

/// The names of the files that are up (or are not), as one text.
QString fileNames(OrderState const& state, bool isUploaded);

/// The file that keeps the state.
class OrderStateFile
{
public:
    explicit OrderStateFile(QString const& path) : path_(path) {}

    QString const& path() const { return path_; }

    /// Nothing if there is no such file. Throws a Failure for a file that holds no state.
    std::optional<OrderState> load() const;
    /// Throws a Failure when the file could not be written later on: found out before there is an order.
    void prepare();
    void save(OrderState const& state);
    /// There was no such order; the file is as it was before.
    void takeBack(std::optional<OrderState> const& former);

private:
    QString path_;
    std::optional<OutputFile> file_;
};

} // namespace cli
