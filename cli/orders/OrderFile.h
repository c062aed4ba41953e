#pragma once

#include <QString>

#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/ProductionOrderRecords.h>
#include <platform/rest/MappedFile.h>

namespace cli
{

class Context;

/// A production order as a file of the user tells it: a JSON object with the members of the service's own order body.
/// Only "Files" holds just the files' names, and an item may say that it "IsLocalProductionArticle", which its price
/// depends on. The installation is the command's.
struct OrderDraft
{
    QString fileName; ///< of the order file, as messages name it
    OrderRequest request = {};
    ExtendedPriceInfoRequest prices = {};
};

/// Reads and checks the order file. Throws a Failure that names the file and the member for the first mistake.
OrderDraft readOrder(QString const& fileName, Context const& context);

/// Asks the service what may be ordered; throws a Failure for an article that may not.
void checkArticles(OrderDraft const& draft, Context const& context);

/// Looks for the order's files in the folder, and fills in their sizes and check sums (MD5). Throws a Failure for a
/// file that cannot be sent.
void describeOrderFiles(OrderDraft& draft, QString const& folder, int chunkSize);

/// A file that has been announced. Throws a Failure if its bytes are no longer those that were announced.
rest::MappedFile announcedFile(OrderFileInfo const& file, QString const& folder);

} // namespace cli
