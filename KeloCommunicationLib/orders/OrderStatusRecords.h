#pragma once

#include <QList>
#include <QString>

#include <KeloCommunicationLib/Export.h>

/// The orders whose states are asked for. Body of POST Orders/details.
class KELO_EXPORT OrderDetailsRequest
{
public:
    QList<QString> getOrderReferences() const { return orderReferences_; }

    void setOrderReferences(QList<QString> const& orderReferences) { orderReferences_ = orderReferences; }

private:
    QList<QString> orderReferences_;
};

/// State of one item of an order.
class KELO_EXPORT OrderItemDetails
{
public:
    /// The numbering is the service's own; any integer is valid.
    enum class OrderItemState : int
    {
    };

    QString getArticleNumber() const { return articleNumber_; }

    void setArticleNumber(QString const& articleNumber) { articleNumber_ = articleNumber; }

    OrderItemState getState() const { return state_; }

    void setState(int const& state) { state_ = static_cast<OrderItemState>(state); }

    /// First tooth of the item, in FDI two-digit notation: quadrant, then position, as in 36.
    int getToothNumberStart() const { return toothNumberStart_; }

    void setToothNumberStart(int toothNumberStart) { toothNumberStart_ = toothNumberStart; }

    /// Last tooth of the item, in the same notation.
    int getToothNumberEnd() const { return toothNumberEnd_; }

    void setToothNumberEnd(int toothNumberEnd) { toothNumberEnd_ = toothNumberEnd; }

private:
    QString articleNumber_;
    OrderItemState state_{};
    int toothNumberStart_ = 0;
    int toothNumberEnd_ = 0;
};

/// State of one order. Element of the reply of POST Orders/details.
class KELO_EXPORT OrderDetails
{
public:
    /// The numbering is the service's own; any integer is valid.
    enum class OrderState : int
    {
    };

    OrderState getState() const { return state_; }

    void setState(int const& state) { state_ = static_cast<OrderState>(state); }

    /// The order: `OrderRequestResponse::getOrderReference`.
    QString getReference() const { return reference_; }

    void setReference(QString const& reference) { reference_ = reference; }

    QList<OrderItemDetails> getOrderItems() const { return orderItems_; }

    void setOrderItems(QList<OrderItemDetails> const& orderItems) { orderItems_ = orderItems; }

private:
    OrderState state_{};
    QString reference_;
    QList<OrderItemDetails> orderItems_;
};
