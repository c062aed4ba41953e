#include "cli/orders/OrderFile.h"

#include <limits>
#include <optional>
#include <utility>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QSet>

#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/StrictReader.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// The service's own order body but for the installation and the files, of which only the names are given. An item
/// may hold what its price depends on.
Form formOfOrder()
{
    Form order = formOf(jsonSerializer::schemaOf<OrderRequest>());
    order.remove(u"InstallationReference");
    Form& item = order[u"OrderItems"].parts.front();
    item[u"Files"].parts = {Form{}};
    item[u"IsLocalProductionArticle"] =
        formOf(jsonSerializer::schemaOf<PriceInfoRequest>())[u"IsLocalProductionArticle"];
    item[u"ArticleNumber"].isRequired = true;
    item[u"Quantity"].isRequired = true;
    order[u"AddressIdentifier"].isRequired = true;
    order[u"OrderItems"].isRequired = true;
    return order;
}

/// A file is announced under its name alone; one with a path could also lead out of the folder.
void checkFiles(Place const& place, QJsonArray const& names)
{
    QSet<QString> seen;
    for (qsizetype index = 0; index < names.size(); ++index)
    {
        QString const name = names[index].toString();
        if (name.isEmpty() || name.contains(u'/') || name.contains(u'\\') || name == "."_L1 || name == ".."_L1)
        {
            throw place.element(index).mistake(u"this must be the name of a file, without its folder"_s);
        }
        if (seen.contains(name))
        {
            throw place.element(index).mistake(u"the file \"%1\" is given twice"_s.arg(name));
        }
        seen.insert(name);
    }
}

/// In the two-digit notation of FDI: quadrant and position.
bool isTooth(int number)
{
    int const position = number % 10;
    return number >= 11 && number <= 48 && position >= 1 && position <= 8;
}

void checkItem(Place const& place, OrderItemInfo const& item)
{
    if (item.getArticleNumber().isEmpty())
    {
        throw place.member(u"ArticleNumber"_s).mistake(u"this is empty"_s);
    }
    if (item.getQuantity() <= 0)
    {
        throw place.member(u"Quantity"_s).mistake(u"%1 is not a number of pieces"_s.arg(item.getQuantity()));
    }
    if (item.getToothNumberStart() == 0 && item.getToothNumberEnd() == 0)
    {
        return; // not for teeth
    }
    std::pair<QString, int> const teeth[] = {
        {u"ToothNumberStart"_s, item.getToothNumberStart()}, {u"ToothNumberEnd"_s, item.getToothNumberEnd()}};
    for (auto const& [key, tooth] : teeth)
    {
        if (!isTooth(tooth))
        {
            throw place.member(key).mistake(u"%1 is not a tooth number (11 to 48, FDI)"_s.arg(tooth));
        }
    }
}

/// The item as the service wants it.
QJsonObject readItem(Place const& place, QJsonObject item)
{
    auto const names = item[u"Files"].toArray();
    checkFiles(place.member(u"Files"_s), names);
    QJsonArray files;
    for (auto const& name : names)
    {
        files.append(QJsonObject{{u"Name"_s, name}});
    }
    item.insert(u"Files"_s, files);
    checkItem(place, jsonSerializer::fromDescription<OrderItemInfo>(item));
    return item;
}

// ---- the files to send ---------------------------------------------------------------------------------------------

/// Read piece by piece; nothing if the file cannot be read.
std::optional<QString> checkSum(QFile& file)
{
    QCryptographicHash sum(QCryptographicHash::Md5);
    if (!file.open(QIODevice::ReadOnly) || !sum.addData(&file))
    {
        return std::nullopt;
    }
    return QString::fromLatin1(sum.result().toHex());
}

void describe(OrderFileInfo& file, Place const& place, QString const& folder, int chunkSize)
{
    QFile content(QDir(folder).filePath(file.getName()));
    if (!QFileInfo(content).isFile())
    {
        throw place.mistake(u"there is no file \"%1\""_s.arg(content.fileName()));
    }
    if (content.size() > std::numeric_limits<int>::max())
    {
        throw place.mistake(u"\"%1\" is larger than 2 GiB"_s.arg(content.fileName()));
    }
    auto const sum = checkSum(content);
    if (!sum)
    {
        throw place.mistake(u"cannot read \"%1\": %2"_s.arg(content.fileName(), content.errorString()));
    }
    file.setSize(static_cast<int>(content.size()));
    file.setChunckSize(chunkSize);
    file.setCheckSum(*sum);
}

} // namespace

OrderDraft readOrder(QString const& fileName, Context const& context)
{
    auto const [source, content] = given("order file", fileName);
    Place const items = Place(source).member(u"OrderItems"_s);
    auto order = readStrictly(source, content, formOfOrder());
    auto orderItems = order[u"OrderItems"].toArray();
    if (orderItems.isEmpty())
    {
        throw items.mistake(u"this is empty"_s);
    }
    OrderDraft draft{.fileName = source};
    draft.prices.installationReference = context.installation();
    for (qsizetype index = 0; index < orderItems.size(); ++index)
    {
        auto const item = readItem(items.element(index), orderItems[index].toObject());
        orderItems[index] = item;
        draft.prices.orderItems.push_back(jsonSerializer::fromDescription<PriceInfoRequest>(item));
    }
    order.insert(u"OrderItems"_s, orderItems);
    draft.request = jsonSerializer::fromDescription<OrderRequest>(order);
    draft.request.setInstallationReference(context.installation());
    return draft;
}

void checkArticles(OrderDraft const& draft, Context const& context)
{
    auto const available = context.valueOf(context.connection().getAvailableArticles(context.installation()));
    auto const items = draft.request.getOrderItems();
    for (qsizetype index = 0; index < items.size(); ++index)
    {
        QString const& article = items[index].getArticleNumber();
        if (!available.articleNumbers.contains(article))
        {
            throw Place(draft.fileName)
                .member(u"OrderItems"_s)
                .element(index)
                .member(u"ArticleNumber"_s)
                .mistake(
                    u"%1 is no article that %2 may order (see kelo articles)"_s.arg(article, context.installation()));
        }
    }
}

void describeOrderFiles(OrderDraft& draft, QString const& folder, int chunkSize)
{
    if (chunkSize <= 0)
    {
        throw badInput(u"The chunk size %1 is not positive."_s.arg(chunkSize));
    }
    auto items = draft.request.getOrderItems();
    for (qsizetype index = 0; index < items.size(); ++index)
    {
        auto const place = Place(draft.fileName).member(u"OrderItems"_s).element(index).member(u"Files"_s);
        auto files = items[index].getFiles();
        for (qsizetype number = 0; number < files.size(); ++number)
        {
            describe(files[number], place.element(number), folder, chunkSize);
        }
        items[index].setFiles(files);
    }
    draft.request.setOrderItems(items);
}

rest::MappedFile announcedFile(OrderFileInfo const& file, QString const& folder)
{
    QString const path = QDir(folder).filePath(file.getName());
    auto const mapped = fileToSend(path);
    QFile content(path);
    if (mapped.size() != file.getSize() || checkSum(content) != file.getCheckSum())
    {
        throw badInput(u"\"%1\" has changed since it was announced to the service, and was not sent"_s.arg(path));
    }
    return mapped;
}

} // namespace cli
