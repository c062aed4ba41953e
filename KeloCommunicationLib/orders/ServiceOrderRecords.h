#pragma once

#include <vector>

#include <QList>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/orders/ProductionOrderRecords.h>

/// One item of a laboratory order.
struct KELO_EXPORT ServiceOrderItemInfo
{
    QString articleNumber;
    QString manufacturerReference;
    int quantity = 0;
    int toothNumberStart = 0; ///< first tooth of the item, in FDI two-digit notation: quadrant, then position, as in 36
    int toothNumberEnd = 0;   ///< last tooth of the item, in the same notation
    QList<OrderFileInfo> files; ///< the files that will be uploaded for the item
};

/// A laboratory order. Body of POST Orders/lab/{id}; every member is sent, empty ones too.
struct KELO_EXPORT ServiceOrderRequest
{
    QString installationReference;          ///< the account's installation; also fills the path
    QVersionNumber creationFrontendVersion; ///< version of the application that created the case
    QVersionNumber frontendVersion;         ///< version of the application that places the order
    QString productionNote;
    std::vector<ServiceOrderItemInfo> orderItems;
};

/// Reply of POST Orders/lab/{id}.
struct KELO_EXPORT ServiceOrderRequestResponse
{
    QList<CadItemInfo> orderItems; ///< the order's items with their upload slots
};
