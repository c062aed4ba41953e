#include "cli/OrderFile.h"

#include <cmath>
#include <limits>
#include <span>
#include <utility>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QSet>

#include "cli/Context.h"
#include "cli/StrictJson.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// A place in the order file, for messages.
class Place
{
public:
    explicit Place(QString const& fileName) : fileName_(fileName) {}

    Place member(QString const& key) const { return {fileName_, path_.isEmpty() ? key : path_ + u'.' + key}; }

    Place element(qsizetype index) const { return {fileName_, u"%1[%2]"_s.arg(path_).arg(index)}; }

    Failure mistake(QString const& text) const
    {
        return badInput(
            path_.isEmpty() ? u"%1: %2"_s.arg(fileName_, text) : u"%1: %2: %3"_s.arg(fileName_, path_, text));
    }

private:
    Place(QString fileName, QString path) : fileName_(std::move(fileName)), path_(std::move(path)) {}

    QString fileName_;
    QString path_;
};

// ---- what an order file may hold -----------------------------------------------------------------------------------

struct DraftItem
{
    OrderItemInfo order;
    bool isLocalProduction = false;
};

enum class Kind : int
{
    Text,
    Integer,
    Flag,
    Version, // a text
    List
};

template <class Record>
struct Member
{
    char const* key = nullptr;
    Kind kind{};
    bool isRequired = false;
    void (*store)(Record& record, QJsonValue const& value) = nullptr; ///< none: it is read elsewhere
};

template <auto setter>
void storeText(OrderRequest& order, QJsonValue const& value)
{
    (order.*setter)(value.toString());
}

template <auto setter>
void storeVersion(OrderRequest& order, QJsonValue const& value)
{
    (order.*setter)(QVersionNumber::fromString(value.toString()));
}

template <auto setter>
void storeText(DraftItem& item, QJsonValue const& value)
{
    (item.order.*setter)(value.toString());
}

template <auto setter>
void storeNumber(DraftItem& item, QJsonValue const& value)
{
    (item.order.*setter)(value.toInt());
}

void storeCadStatus(DraftItem& item, QJsonValue const& value)
{
    item.order.setCadStatus(static_cast<OrderItemInfo::CadStatus>(value.toInt()));
}

void storeLocalProduction(DraftItem& item, QJsonValue const& value)
{
    item.isLocalProduction = value.toBool();
}

constexpr Member<OrderRequest> orderMembers[] = {
    {"AddressIdentifier", Kind::Text, true, storeText<&OrderRequest::setAddressIdentifier>},
    {"CreationFrontendVersion", Kind::Version, false, storeVersion<&OrderRequest::setCreationFrontendVersion>},
    {"FrontendVersion", Kind::Version, false, storeVersion<&OrderRequest::setFrontendVersion>},
    {"ProductionNote", Kind::Text, false, storeText<&OrderRequest::setProductionNote>},
    {"OriginalOrderNumber", Kind::Text, false, storeText<&OrderRequest::setOriginalOrderNumber>},
    {"InvoiceReference", Kind::Text, false, storeText<&OrderRequest::setInvoiceReference>},
    {"StudyId", Kind::Text, false, storeText<&OrderRequest::setStudyId>},
    {"StudyParticipantId", Kind::Text, false, storeText<&OrderRequest::setStudyParticipantId>},
    {"ClinicianZipCode", Kind::Text, false, storeText<&OrderRequest::setClinicianZipCode>},
    {"ClinicianName", Kind::Text, false, storeText<&OrderRequest::setClinicianName>},
    {"OrderItems", Kind::List, true},
};

constexpr Member<DraftItem> itemMembers[] = {
    {"ArticleNumber", Kind::Text, true, storeText<&OrderItemInfo::setArticleNumber>},
    {"Quantity", Kind::Integer, true, storeNumber<&OrderItemInfo::setQuantity>},
    {"ToothNumberStart", Kind::Integer, false, storeNumber<&OrderItemInfo::setToothNumberStart>},
    {"ToothNumberEnd", Kind::Integer, false, storeNumber<&OrderItemInfo::setToothNumberEnd>},
    {"RemakeCode", Kind::Text, false, storeText<&OrderItemInfo::setRemakeCode>},
    {"VoucherCode", Kind::Text, false, storeText<&OrderItemInfo::setVoucherCode>},
    {"CadStatus", Kind::Integer, false, storeCadStatus},
    {"IsLocalProductionArticle", Kind::Flag, false, storeLocalProduction},
    {"Files", Kind::List},
};

// ---- reading it ----------------------------------------------------------------------------------------------------

bool isInteger(QJsonValue const& value)
{
    double const number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
    return std::trunc(number) == number && number >= std::numeric_limits<int>::min()
           && number <= std::numeric_limits<int>::max();
}

bool isVersion(QJsonValue const& value)
{
    qsizetype end = 0;
    auto const text = value.toString();
    return value.isString()
           && (text.isEmpty() || (!QVersionNumber::fromString(text, &end).isNull() && end == text.size()));
}

void checkKind(Place const& place, Kind kind, QJsonValue const& value)
{
    auto const require = [&place](bool isRight, char const* wanted)
    {
        if (!isRight)
        {
            throw place.mistake(u"this must be %1"_s.arg(QLatin1String(wanted)));
        }
    };
    switch (kind)
    {
    case Kind::Text:
        return require(value.isString(), "a text");
    case Kind::Integer:
        return require(isInteger(value), "a whole number");
    case Kind::Flag:
        return require(value.isBool(), "true or false");
    case Kind::Version:
        return require(isVersion(value), "a text with a version such as 3.1.0");
    case Kind::List:
        return require(value.isArray(), "a list");
    }
}

template <class Record>
Record readMembers(Place const& place, QJsonObject const& json, std::span<Member<Record> const> members)
{
    Record record;
    auto unknown = json;
    for (auto const& member : members)
    {
        unknown.remove(QLatin1String(member.key));
    }
    if (!unknown.isEmpty())
    {
        throw place.member(unknown.begin().key()).mistake(u"there is no such member"_s);
    }
    for (auto const& member : members)
    {
        QString const key = QString::fromLatin1(member.key);
        auto const value = json[key];
        if (value.isUndefined() && !member.isRequired)
        {
            continue;
        }
        if (value.isUndefined())
        {
            throw place.member(key).mistake(u"this is missing"_s);
        }
        checkKind(place.member(key), member.kind, value);
        if (member.store != nullptr)
        {
            member.store(record, value);
        }
    }
    return record;
}

/// A file is announced under its name alone; one with a path could also lead out of the folder.
QList<OrderFileInfo> readFiles(Place const& place, QJsonArray const& names)
{
    QList<OrderFileInfo> files;
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
        files.emplaceBack().setName(name);
    }
    return files;
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

DraftItem readItem(Place const& place, QJsonValue const& json)
{
    if (!json.isObject())
    {
        throw place.mistake(u"this must be an object"_s);
    }
    auto item = readMembers<DraftItem>(place, json.toObject(), itemMembers);
    item.order.setFiles(readFiles(place.member(u"Files"_s), json[u"Files"].toArray()));
    checkItem(place, item.order);
    return item;
}

PriceInfoRequest priceRequest(DraftItem const& item)
{
    return {
        .articleNumber = item.order.getArticleNumber(),
        .quantity = item.order.getQuantity(),
        .toothNumberStart = item.order.getToothNumberStart(),
        .toothNumberEnd = item.order.getToothNumberEnd(),
        .voucherCode = item.order.getVoucherCode(),
        .isLocalProductionArticle = item.isLocalProduction};
}

QByteArray contentOfOrderFile(QString const& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
    {
        throw badInput(u"Cannot read the order file \"%1\": %2."_s.arg(fileName, file.errorString()));
    }
    return file.readAll();
}

// ---- the files to send ---------------------------------------------------------------------------------------------

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
    QCryptographicHash sum(QCryptographicHash::Md5);
    if (!content.open(QIODevice::ReadOnly) || !sum.addData(&content))
    {
        throw place.mistake(u"cannot read \"%1\": %2"_s.arg(content.fileName(), content.errorString()));
    }
    file.setSize(static_cast<int>(content.size()));
    file.setChunckSize(chunkSize);
    file.setCheckSum(QString::fromLatin1(sum.result().toHex()));
}

} // namespace

OrderDraft readOrder(QString const& fileName, Context const& context)
{
    Place const order(fileName);
    auto const json = strictObject(fileName, contentOfOrderFile(fileName));
    OrderDraft draft{.fileName = fileName, .request = readMembers<OrderRequest>(order, json, orderMembers)};
    draft.request.setInstallationReference(context.installation());
    draft.prices.installationReference = context.installation();
    auto const items = json[u"OrderItems"].toArray();
    if (items.isEmpty())
    {
        throw order.member(u"OrderItems"_s).mistake(u"this is empty"_s);
    }
    QList<OrderItemInfo> orderItems;
    for (qsizetype index = 0; index < items.size(); ++index)
    {
        auto const item = readItem(order.member(u"OrderItems"_s).element(index), items[index]);
        orderItems << item.order;
        draft.prices.orderItems.push_back(priceRequest(item));
    }
    draft.request.setOrderItems(orderItems);
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

QByteArray announcedContent(OrderFileInfo const& file, QString const& folder)
{
    QFile source(QDir(folder).filePath(file.getName()));
    if (!source.open(QIODevice::ReadOnly))
    {
        throw badInput(u"Cannot read \"%1\": %2"_s.arg(source.fileName(), source.errorString()));
    }
    QByteArray content = source.readAll();
    auto const sum = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    if (content.size() != file.getSize() || QString::fromLatin1(sum) != file.getCheckSum())
    {
        throw badInput(
            u"\"%1\" has changed since it was announced to the service, and was not sent"_s.arg(source.fileName()));
    }
    return content;
}

} // namespace cli
