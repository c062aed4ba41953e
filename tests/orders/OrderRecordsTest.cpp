#include <gtest/gtest.h>

#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <KeloCommunicationLib/orders/CatalogRecords.h>
#include <KeloCommunicationLib/orders/OrderRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>

namespace
{

template <class T>
T read(QByteArray const& json)
{
    return jsonSerializer::fromJson<T>(QJsonDocument::fromJson(json).object());
}

template <class T>
QByteArray written(T const& record)
{
    return QJsonDocument(jsonSerializer::toJson(record).toObject()).toJson(QJsonDocument::Compact);
}

OrderFileInfo scan()
{
    OrderFileInfo file;
    file.setName(QStringLiteral("scan.stl"));
    file.setSize(1048576);
    file.setChunckSize(65536);
    file.setFrontendIdentifier(QStringLiteral("never sent"));
    return file;
}

#define SCAN_TEXT R"({"CheckSum":"","ChunkSize":"65536","Name":"scan.stl","Size":"1048576"})"

TEST(OrderRecords, writeSizesAndCadStatusAsTextAndEmptyMembersToo)
{
    OrderItemInfo item;
    item.setQuantity(2);
    item.setToothNumberStart(11);
    item.setToothNumberEnd(13);
    item.setCadStatus(static_cast<OrderItemInfo::CadStatus>(3));
    item.setFiles({scan()});
    EXPECT_EQ(
        written(item), R"({"ArticleNumber":"","CadStatus":"3","Files":[)" SCAN_TEXT
                       R"(],"Quantity":2,"RemakeCode":"","ToothNumberEnd":13,"ToothNumberStart":11,"VoucherCode":""})");
    OrderRequest order;
    order.setFrontendVersion(QVersionNumber(3, 1, 0));
    EXPECT_EQ(
        written(order),
        R"({"AddressIdentifier":"","ClinicianName":"","ClinicianZipCode":"","CreationFrontendVersion":"",)"
        R"("FrontendVersion":"3.1.0","InstallationReference":"","InvoiceReference":"","OrderItems":[],)"
        R"("OriginalOrderNumber":"","ProductionNote":"","StudyId":"","StudyParticipantId":""})");
    EXPECT_EQ(
        written(ServiceOrderItemInfo{QString(), QStringLiteral("M1"), 1, 21, 22, {scan()}}),
        R"({"ArticleNumber":"","Files":[)" SCAN_TEXT
        R"(],"ManufacturerReference":"M1","Quantity":1,"ToothNumberEnd":22,"ToothNumberStart":21})");
    EXPECT_EQ(
        written(ExtendedPriceInfoRequest{QStringLiteral("I1"), {{QStringLiteral("A1"), 1, 2, 3, QString(), true}}}),
        R"({"InstallationReference":"I1","OrderItems":[{"ArticleNumber":"A1","IsLocalProductionArticle":true,)"
        R"("Quantity":1,"ToothNumberEnd":3,"ToothNumberStart":2,"VoucherCode":""}]})");
}

TEST(OrderRecords, readUploadSlotsWhereEachKindOfOrderHasThem)
{
    QByteArray const items = R"([{"ArticleNumber":"A1","Files":[{"Name":"scan.stl","Reference":"F1"}]},{"Files":{}}])";
    auto const reply = read<OrderRequestResponse>(R"({"Order":{"Reference":"O1","OrderItems":)" + items + "}}");
    EXPECT_EQ(reply.getOrderReference(), QStringLiteral("O1"));
    auto const serviceReply = read<ServiceOrderRequestResponse>(R"({"OrderItems":)" + items + "}");
    for (QList<CadItemInfo> const& uploads : {reply.getFiles(), serviceReply.orderItems})
    {
        ASSERT_EQ(uploads.size(), 2);
        EXPECT_EQ(uploads.at(0).getArticleNumber(), QStringLiteral("A1"));
        ASSERT_EQ(uploads.at(0).getFiles().size(), 1);
        EXPECT_EQ(uploads.at(0).getFiles().at(0).getReference(), QStringLiteral("F1"));
        EXPECT_TRUE(uploads.at(1).getFiles().isEmpty());
    }
    for (char const* misplaced : {R"({"Reference":"O1"})", R"({"Reference":"O1","Order":"O1"})"})
    {
        EXPECT_EQ(read<OrderRequestResponse>(misplaced).getOrderReference(), QString()) << misplaced;
    }
}

TEST(OrderRecords, caseDesignerOrderSurvivesTheRoundTrip)
{
    CreateIPSOrderInfo const order(
        QStringLiteral("I1"), QVersionNumber(1, 2), QVersionNumber(1, 3), QStringLiteral("P1"),
        {IPSOrderItemInfo(QStringLiteral("A1"), QStringLiteral("M1"), 4), IPSOrderItemInfo()});
    EXPECT_TRUE(read<CreateIPSOrderInfo>(written(order)) == order);
}

TEST(OrderRecords, statesKeepAnyNumber)
{
    auto const orders = jsonSerializer::implementation::FromJSON<std::vector<OrderDetails>, 1>::convert(
        QJsonDocument::fromJson(R"([{"State":-7,"OrderItems":[{"State":4711}]},{"State":"3"}])"));
    ASSERT_EQ(orders.size(), 2U);
    EXPECT_EQ(static_cast<int>(orders[0].getState()), -7);
    ASSERT_EQ(orders[0].getOrderItems().size(), 1);
    EXPECT_EQ(static_cast<int>(orders[0].getOrderItems().at(0).getState()), 4711);
    EXPECT_EQ(static_cast<int>(orders[1].getState()), 0);
}

TEST(PriceRecords, voucherTextsAreExactAndThePriceTypeStaysZero)
{
    std::pair<char const*, int> const cases[] = {
        {R"("MSG_VOUCHER_100")", 1},
        {R"("MSG_VOUCHER_103")", 4},
        {R"("MSG_VOUCHER_107")", 8},
        {R"("MSG_VOUCHER_M999")", 9},
        {R"("msg_voucher_107")", 0},
        {R"("MSG_VOUCHER_108")", 0},
        {R"("")", 0},
        {"null", 0},
        {"8", 0},
        {R"({"PriceType":2})", 0}};
    for (auto const& [value, expected] : cases)
    {
        QByteArray const json = QByteArray(R"({"PriceType":)") + value + R"(,"VoucherMessage":)" + value + '}';
        EXPECT_EQ(static_cast<int>(read<PriceInfoResponse>(json).voucherMessage), expected) << value;
        EXPECT_EQ(static_cast<int>(read<PriceInfoResponse>(json).priceType), 0) << value;
    }
    auto const price = read<PriceInfoResponse>(R"({"ArticlePrice":12.75,"VoucherDiscountPrice":"1.5"})");
    EXPECT_EQ(price.articlePrice, 12.75);
    EXPECT_EQ(price.voucherDiscountPrice, 0.0);
}

TEST(ListReplies, everyElementCountsAndWrongTypesReadAsEmpty)
{
    auto const list = read<OrderShippingAddressList>(R"({"Addresses":[{"Identifier":"S1","PostalCode":8048},"S2"]})");
    ASSERT_EQ(list.addresses.size(), 2);
    EXPECT_EQ(list.addresses[0].identifier, QStringLiteral("S1"));
    EXPECT_EQ(list.addresses[0].postalCode, QString());
    EXPECT_TRUE(read<OrderShippingAddressList>(R"({"Addresses":{"Identifier":"S1"}})").addresses.isEmpty());
    EXPECT_EQ(
        read<AvailableArticlesList>(R"({"ArticleNumbers":["A2",1,"A1"]})").articleNumbers,
        QStringList({QStringLiteral("A2"), QString(), QStringLiteral("A1")}));

    QJsonDocument const shells = QJsonDocument::fromJson(R"([{"Id":"T1","NumberOfChunks":3,"ChunkSize":9},null])");
    auto const files = jsonSerializer::fromJson<TempShellDataResponse>(shells.array()).getTempShellFile();
    ASSERT_EQ(files.size(), 2);
    EXPECT_EQ(files[0].getFileId(), QStringLiteral("T1"));
    EXPECT_EQ(files[0].getNumberOfChuncks(), 3);
    EXPECT_EQ(files[0].getChunkSize(), 9);
    EXPECT_EQ(files[1].getFileId(), QString());
}

TEST(CatalogUpdateInfo, statusIsDecidedByItsTextAtEveryCall)
{
    using KeloCommunicationLib::CatalogUpdateState;
    std::pair<char const*, CatalogUpdateState> const cases[] = {
        {R"({"Status":"Optional","Other":1})", CatalogUpdateState::Optional},
        {R"({"Status":"Mandatory"})", CatalogUpdateState::Mandatory},
        {R"({"Status":"mandatory"})", CatalogUpdateState::NoUpdate},
        {R"({"Status":2})", CatalogUpdateState::NoUpdate},
        {"{}", CatalogUpdateState::NoUpdate}};
    for (auto const& [json, expected] : cases)
    {
        EXPECT_EQ(read<CatalogUpdateInfo>(json).getUpdateStatus(), expected) << json;
    }
    auto info = read<CatalogUpdateInfo>(R"({"Version":"2.3 beta","Status":"Mandatory"})");
    EXPECT_EQ(info.getCatalogVersion(), QVersionNumber(2, 3));
    info.setUpdateStatusString(QStringLiteral("Later"));
    EXPECT_EQ(info.getUpdateStatus(), CatalogUpdateState::NoUpdate);
}

} // namespace
