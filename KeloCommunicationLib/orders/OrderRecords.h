#pragma once

#include <QList>
#include <QString>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/orders/IpsOrderRecords.h>
#include <KeloCommunicationLib/orders/OrderStatusRecords.h>
#include <KeloCommunicationLib/orders/ProductionOrderRecords.h>
#include <KeloCommunicationLib/orders/ServiceOrderRecords.h>

/// One ship-to address of the account.
struct KELO_EXPORT OrderShippingAddress
{
    QString identifier; ///< what an order names the address by: `OrderRequest::setAddressIdentifier`
    QString name;
    QString street;
    QString postalCode;
    QString city;
    QString region;
    QString country;
};

/// Reply of GET Installations/{id}/addresses/shipto.
struct KELO_EXPORT OrderShippingAddressList
{
    QList<OrderShippingAddress> addresses;
};

/// The articles that the account may order. Reply of GET Installations/{id}/articles.
struct KELO_EXPORT AvailableArticlesList
{
    QList<QString> articleNumbers;
};
