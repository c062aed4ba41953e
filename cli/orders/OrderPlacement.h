#pragma once

#include <optional>

#include <QString>

#include "cli/orders/OrderState.h"

/// Orders are placed once: an order costs money.
namespace cli
{

class Context;

/// Of the files that an order announces, unless told otherwise.
inline constexpr int usualChunkSize = 1 << 20;

/// What `orders create` was asked to do.
struct OrderWish
{
    QString orderFile;
    QString folder;    ///< of the order's files
    QString statePath; ///< as given; empty for the usual place
    int chunkSize = usualChunkSize;
    bool isAgain = false;

    QString stateFile() const { return statePath.isEmpty() ? orderFile + QStringLiteral(".kelo-order") : statePath; }

    /// What a shell is told to go on with an order, or to place it, with the options that this context was made with.
    QString resumeCommand(QString const& reference, Context const& context) const;
    QString againCommand(Context const& context) const;
};

/// As long as it lives no other process works with the same order file.
class OrderFileLock
{
public:
    /// Throws a Failure when another one does.
    explicit OrderFileLock(QString const& orderFile);
    OrderFileLock(OrderFileLock const&) = delete;
    OrderFileLock& operator=(OrderFileLock const&) = delete;
    ~OrderFileLock();

private:
    int descriptor_;
};

/// Throws a Failure with what is known of the former order, and what can be done, unless it is to be sent again. An
/// unfinished order's state is never given up: without it the order could not be finished.
void refuseRepetition(
    OrderState const& former, QString const& fingerprint, OrderWish const& wish, Context const& context);

/// How far the order has come and how it goes on.
QString howToGoOn(OrderState const& state, OrderWish const& wish, Context const& context);

/// Sends the order, which the state file says before, and gives its state; `former` is that of an earlier order. Throws
/// a Failure that tells whether there may be an order now.
OrderState placeOnce(
    OrderRequest const& request, std::optional<OrderState> const& former, OrderStateFile& stateFile,
    OrderWish const& wish, Context const& context);

} // namespace cli
