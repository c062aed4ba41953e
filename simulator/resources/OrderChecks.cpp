#include "simulator/resources/OrderChecks.h"

#include "simulator/State.h"

#include <QRegularExpression>
#include <QVersionNumber>

#include <algorithm>
#include <limits>

namespace simulator
{

namespace orders
{

namespace
{

constexpr Member fileMembers[] = {
    {"Name", Kind::Text},
    {"Size", Kind::DecimalText},
    {"ChunkSize", Kind::DecimalText},
    {"CheckSum", Kind::Text},
};
constexpr Member productionItemMembers[] = {
    {"ArticleNumber", Kind::Text},       {"Quantity", Kind::Integer},
    {"ToothNumberStart", Kind::Integer}, {"ToothNumberEnd", Kind::Integer},
    {"RemakeCode", Kind::Text},          {"VoucherCode", Kind::Text},
    {"CadStatus", Kind::Text},           {"Files", Kind::Objects, true, fileMembers},
};
constexpr Member productionRow[] = {
    {"InstallationReference", Kind::Text}, {"CreationFrontendVersion", Kind::Text},
    {"FrontendVersion", Kind::Text},       {"AddressIdentifier", Kind::Text},
    {"ProductionNote", Kind::Text},        {"OriginalOrderNumber", Kind::Text},
    {"InvoiceReference", Kind::Text},      {"StudyId", Kind::Text},
    {"StudyParticipantId", Kind::Text},    {"ClinicianZipCode", Kind::Text},
    {"ClinicianName", Kind::Text},         {"OrderItems", Kind::Objects, true, productionItemMembers},
};
constexpr Member labItemMembers[] = {
    {"ArticleNumber", Kind::Text},     {"ManufacturerReference", Kind::Text},
    {"Quantity", Kind::Integer},       {"ToothNumberStart", Kind::Integer},
    {"ToothNumberEnd", Kind::Integer}, {"Files", Kind::Objects, true, fileMembers},
};
constexpr Member labRow[] = {
    {"InstallationReference", Kind::Text},
    {"CreationFrontendVersion", Kind::Text},
    {"FrontendVersion", Kind::Text},
    {"ProductionNote", Kind::Text},
    {"OrderItems", Kind::Objects, true, labItemMembers},
};
constexpr Member caseDesignerItemMembers[] = {
    {"ArticleNumber", Kind::Text},
    {"ManufacturerReference", Kind::Text},
    {"Quantity", Kind::Integer},
};
constexpr Member caseDesignerRow[] = {
    {"InstallationReference", Kind::Text},
    {"CreationFrontendVersion", Kind::Text},
    {"FrontendVersion", Kind::Text},
    {"PatientId", Kind::Text},
    {"OrderItems", Kind::Objects, true, caseDesignerItemMembers},
};
constexpr Member detailsRow[] = {{"References", Kind::Texts}};

/// The teeth of the four quadrants are numbered 11 to 18, 21 to 28, 31 to 38 and 41 to 48.
bool isTooth(int number)
{
    auto const quadrant = number / 10;
    auto const position = number % 10;
    return quadrant >= 1 && quadrant <= 4 && position >= 1 && position <= 8;
}

bool isUpperJaw(int tooth)
{
    return tooth < 30;
}

void checkTeeth(Article const& article, QJsonObject const& item)
{
    auto const first = item["ToothNumberStart"].toInt();
    auto const last = item["ToothNumberEnd"].toInt();
    if (!article.isForTeeth)
    {
        require(first == 0 && last == 0, Reason::BadValue, article.id + " is not for teeth");
        return;
    }
    require(isTooth(first), Reason::BadValue, "ToothNumberStart");
    require(isTooth(last) && isUpperJaw(first) == isUpperJaw(last), Reason::BadValue, "ToothNumberEnd");
}

UploadSlot checkedFile(QJsonObject const& file)
{
    static QRegularExpression const md5("^[0-9a-fA-F]{32}$");
    auto const size = file["Size"].toString().toLongLong();
    auto const chunkSize = file["ChunkSize"].toString().toLongLong();
    constexpr auto largest = std::numeric_limits<qint32>::max();
    require(!file["Name"].toString().isEmpty(), Reason::BadValue, "Name");
    require(size <= largest, Reason::BadValue, "Size");
    require(chunkSize > 0 && chunkSize <= largest, Reason::BadValue, "ChunkSize");
    require(md5.match(file["CheckSum"].toString()).hasMatch(), Reason::BadValue, "CheckSum");
    return {.name = file["Name"].toString(), .size = size, .md5 = file["CheckSum"].toString().toLatin1().toLower()};
}

} // namespace

Schema const productionMembers = productionRow;
Schema const labMembers = labRow;
Schema const caseDesignerMembers = caseDesignerRow;
Schema const detailsMembers = detailsRow;

void require(bool isRight, Reason reason, QString const& detail)
{
    if (!isRight)
    {
        throw Refusal(reason, detail);
    }
}

void checkVersion(QJsonObject const& body, char const* key)
{
    auto const text = body[QLatin1String(key)].toString();
    require(text.isEmpty() || !QVersionNumber::fromString(text).isNull(), Reason::BadValue, key);
}

void checkAddress(State const& state, QString const& installation, QString const& address)
{
    auto const& addresses = state.orders.addresses;
    auto const isKnown = std::any_of(
        addresses.begin(), addresses.end(),
        [&](ShippingAddress const& known) { return known.id == address && known.installation == installation; });
    require(isKnown, Reason::UnknownReference, "AddressIdentifier " + address);
}

OrderItem checkedItem(State const& state, QString const& installation, QJsonObject const& item)
{
    bool isNumber = true;
    if (auto const cadStatus = item["CadStatus"]; cadStatus.isString())
    {
        cadStatus.toString().toInt(&isNumber);
    }
    require(isNumber, Reason::BadValue, "CadStatus");
    OrderItem checked = {
        .articleNumber = checkedArticle(state, installation, item).id,
        .quantity = item["Quantity"].toInt(),
        .firstTooth = item["ToothNumberStart"].toInt(),
        .lastTooth = item["ToothNumberEnd"].toInt()};
    for (QJsonValue const file : item["Files"].toArray())
    {
        checked.files.push_back(checkedFile(file.toObject()));
    }
    return checked;
}

} // namespace orders

Article const& checkedArticle(State const& state, QString const& installation, QJsonObject const& item)
{
    using orders::require;
    auto const number = item["ArticleNumber"].toString();
    auto const& articles = state.orders.articles;
    auto const article = std::find_if(
        articles.begin(), articles.end(),
        [&](Article const& known) { return known.id == number && known.installation == installation; });
    require(article != articles.end(), Reason::UnknownReference, "ArticleNumber " + number);
    auto const quantity = item["Quantity"].toInt();
    require(quantity >= 1 && quantity <= 999, Reason::BadValue, "Quantity");
    if (item.contains("ToothNumberStart"))
    {
        orders::checkTeeth(*article, item);
    }
    return *article;
}

} // namespace simulator
