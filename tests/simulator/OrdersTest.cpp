#include "tests/simulator/SimulatorFixture.h"

#include <QCryptographicHash>

#include <utility>

namespace
{

QByteArray md5Of(QByteArray const& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

QJsonObject fileOf(QByteArray const& content, QString const& name = "scan.stl")
{
    return {
        {"Name", name},
        {"Size", QString::number(content.size())},
        {"ChunkSize", "65536"},
        {"CheckSum", QString::fromLatin1(md5Of(content))}};
}

QJsonObject const crown = {
    {"ArticleNumber", "ART-10010"}, {"Quantity", 1}, {"ToothNumberStart", 21}, {"ToothNumberEnd", 22}};

class OrdersTest : public SimulatorFixture
{
protected:
    static QJsonObject production(QJsonArray const& files)
    {
        auto const item =
            merged(crown, {{"RemakeCode", ""}, {"VoucherCode", ""}, {"CadStatus", "2"}, {"Files", files}});
        return {
            {"InstallationReference", "INST-1001"},
            {"CreationFrontendVersion", "3.1.0"},
            {"FrontendVersion", ""},
            {"AddressIdentifier", "ADR-502"},
            {"ProductionNote", "n"},
            {"OriginalOrderNumber", ""},
            {"InvoiceReference", ""},
            {"StudyId", ""},
            {"StudyParticipantId", ""},
            {"ClinicianZipCode", ""},
            {"ClinicianName", ""},
            {"OrderItems", QJsonArray{item}}};
    }
    /// The body with one member of its only item replaced.
    static QJsonObject withItem(QJsonObject body, QJsonObject const& change)
    {
        body["OrderItems"] = QJsonArray{merged(body["OrderItems"][0].toObject(), change)};
        return body;
    }
    QJsonValue upload(QJsonValue const& reference, QByteArray const& content, int status = 204)
    {
        return send("PUT", "/Orders/files/" + reference.toString(), content, status)[0];
    }
    QJsonValue details(QJsonValue const& reference)
    {
        return post("/Orders/details", {{"References", QJsonArray{"ORD-none", reference}}})[0];
    }
    QJsonValue advance(QJsonValue const& reference, int status = 200)
    {
        return post("/_control/partner-action", {{"Action", "advanceOrder"}, {"Reference", reference}}, status)
            .object()["State"];
    }
    /// The order that was stored last.
    QJsonObject newest() { return get("/_control/orders").array().last().toObject(); }
};

TEST_F(OrdersTest, aProductionOrderLivesFromCreationToCompletion)
{
    auto const body = production({fileOf("upper"), fileOf("", "empty.stl")});
    auto const order = post("/Orders", body)["Order"];
    auto const reference = order["Reference"];
    auto const files = order["OrderItems"][0]["Files"];
    auto const finish = "/Orders/" + reference.toString() + "/FinishUpload";
    EXPECT_EQ(order["OrderItems"][0]["ArticleNumber"], "ART-10010");
    EXPECT_EQ(files[1]["Name"], "empty.stl");
    EXPECT_EQ(newest()["ProductionIdentifier"], order["ProductionIdentifier"]);
    EXPECT_EQ(details(reference)["State"], 0);

    EXPECT_EQ(send("POST", finish, {}, 409)[0]["Message"], "It is not the time for this: files missing: 2");
    EXPECT_EQ(upload(files[0]["Reference"], "uppe", 400)["Code"], "4007");
    EXPECT_EQ(upload(files[0]["Reference"], "lower", 400)["Code"], "4007");
    upload("UPLOAD-none", "upper", 404);
    upload(files[0]["Reference"], "upper");
    upload(files[0]["Reference"], "upper");
    send("PUT", finish, {}, 409);
    upload(files[1]["Reference"], "");
    EXPECT_EQ(newest()["Files"][0]["Uploads"], 2);
    EXPECT_EQ(newest()["Files"][0]["ReceivedBytes"], 5);
    advance(reference, 409);

    send("POST", finish, {}, 204);
    send("PUT", finish, {}, 204);
    upload(files[0]["Reference"], "upper", 409);
    EXPECT_EQ(details(reference)["State"], 1);
    for (int state : {2, 3, 4, 5, 5})
    {
        EXPECT_EQ(advance(reference), state);
    }
    send("PUT", finish, {}, 204);
    EXPECT_EQ(details(reference)["OrderItems"][0]["State"], 5);
    EXPECT_EQ(details(reference)["OrderItems"][0]["ToothNumberEnd"], 22);
    send("POST", "/Orders/ORD-none/FinishUpload", {}, 404);
}

TEST_F(OrdersTest, anUploadOf256MebibytesIsCheckedAsItArrives)
{
    QByteArray const block(1 << 20, 'v');
    constexpr std::size_t size = 256 << 20;
    QCryptographicHash md5(QCryptographicHash::Md5);
    for (std::size_t at = 0; at < size; at += std::size_t(block.size()))
    {
        md5.addData(block);
    }
    auto const file =
        merged(fileOf(""), {{"Size", QString::number(size)}, {"CheckSum", QString::fromLatin1(md5.result().toHex())}});
    auto const order = post("/Orders", production({file}))["Order"];
    auto const path = "/Orders/files/" + order["OrderItems"][0]["Files"][0]["Reference"].toString();
    client.set_write_timeout(60);
    auto const result = client.Put(
        path.toStdString(), size,
        [&](std::size_t at, std::size_t length, httplib::DataSink& sink)
        {
            auto const within = at % std::size_t(block.size());
            return sink.write(block.data() + within, std::min(length, std::size_t(block.size()) - within));
        },
        "application/octet-stream");
    ASSERT_TRUE(result) << to_string(result.error());
    EXPECT_EQ(result->status, 204) << result->body;
    EXPECT_EQ(newest()["Files"][0]["ReceivedBytes"].toInteger(), qint64(size));
    EXPECT_EQ(get("/_control/journal")["Requests"][1]["Size"].toInteger(), qint64(size));
}

TEST_F(OrdersTest, labAndCaseDesignerOrdersNeedNoFinish)
{
    auto const item = merged(crown, {{"ManufacturerReference", "M"}, {"Files", QJsonArray{fileOf("a"), fileOf("b")}}});
    QJsonObject const lab = {
        {"InstallationReference", "INST-1001"},
        {"CreationFrontendVersion", "3.1.0"},
        {"FrontendVersion", "3.1.0"},
        {"ProductionNote", ""},
        {"OrderItems", QJsonArray{item}}};
    post("/Orders/lab/INST-2002", lab, 400);
    post("/Orders/lab/INST-none", lab, 404);
    auto const files = post("/Orders/lab/INST-1001", lab)["OrderItems"][0]["Files"];
    upload(files[1]["Reference"], "b");
    EXPECT_EQ(newest()["State"], 0);
    upload(files[0]["Reference"], "a");
    EXPECT_EQ(newest()["State"], 1);
    EXPECT_EQ(newest()["TimesCreated"], 1);
    post("/Orders/lab/INST-1001", lab);
    EXPECT_EQ(newest()["TimesCreated"], 2);

    QJsonObject caseDesigner = {
        {"InstallationReference", "INST-1001"},
        {"CreationFrontendVersion", "3.1.0"},
        {"FrontendVersion", "3.1.0"},
        {"PatientId", "P-1"},
        {"OrderItems",
         QJsonArray{QJsonObject{{"ArticleNumber", "ART-40010"}, {"ManufacturerReference", "M"}, {"Quantity", 3}}}}};
    EXPECT_TRUE(post("/Orders/ipscasedesigner", caseDesigner, 204).isNull());
    EXPECT_EQ(newest()["Kind"], "CaseDesigner");
    EXPECT_EQ(newest()["State"], 1);
    EXPECT_EQ(newest()["TimesCreated"], 1);
    post("/Orders/ipscasedesigner", withItem(caseDesigner, {{"Quantity", "3"}}), 400);
}

TEST_F(OrdersTest, pricesFollowTheArticleAndTheVoucher)
{
    std::pair<char const*, char const*> const messages[] = {
        {"SMILE50", "MSG_VOUCHER_100"}, {"UNKNOWN", "MSG_VOUCHER_101"}, {"any other", "MSG_VOUCHER_101"},
        {"EXPIRED", "MSG_VOUCHER_102"}, {"NOTYET", "MSG_VOUCHER_103"},  {"REDEEMED", "MSG_VOUCHER_104"},
        {"ARTICLE", "MSG_VOUCHER_105"}, {"ACCOUNT", "MSG_VOUCHER_106"}, {"QUANTITY", "MSG_VOUCHER_107"},
        {"BROKEN", "MSG_VOUCHER_M999"}};
    auto const priceOf = [&](char const* voucher, bool isLocal)
    {
        auto const item = merged(crown, {{"VoucherCode", voucher}, {"IsLocalProductionArticle", isLocal}});
        return post(
            "/Orders/simulation", {{"InstallationReference", "INST-1001"}, {"OrderItems", QJsonArray{item}}})[0];
    };
    for (auto const& [voucher, message] : messages)
    {
        EXPECT_EQ(priceOf(voucher, false)["VoucherMessage"], message) << voucher;
    }
    auto const full = priceOf("", false);
    EXPECT_TRUE(full["VoucherMessage"].isUndefined());
    EXPECT_EQ(full["ArticlePrice"], 189);
    EXPECT_EQ(full["VoucherDiscountPrice"], 0);
    EXPECT_EQ(full["PriceType"], 1);
    EXPECT_EQ(full["ToothNumberEnd"], 22);
    auto const reduced = priceOf("SMILE10", true);
    EXPECT_EQ(reduced["ArticlePrice"], 113.4);
    EXPECT_EQ(reduced["VoucherDiscountPrice"], 11.34);
    EXPECT_EQ(reduced["OriginalVoucherCode"], "SMILE10");
    EXPECT_EQ(reduced["PriceType"], 2);
    post("/Orders/simulation", {{"InstallationReference", "INST-1001"}, {"OrderItems", QJsonArray{crown}}}, 400);

    EXPECT_EQ(get("/Installations/INST-2002/articles")["ArticleNumbers"], QJsonArray({"ART-10010", "ART-30010"}));
    EXPECT_EQ(get("/Installations/INST-1001/addresses/shipto")["Addresses"][1]["Identifier"], "ADR-502");
    get("/Installations/INST-none/articles", 404);
}

TEST_F(OrdersTest, temporaryShellsAppearOnceTheOrderIsChecked)
{
    auto const shells = get("/Orders/ORD-000001/files/tempshell").array();
    ASSERT_EQ(shells.size(), 2);
    EXPECT_EQ(QJsonValue(shells[1])["ToothNumberEnd"], 26);
    for (QJsonValue const shell : shells)
    {
        auto const bytes = exchange("GET", "/Orders/file/tempshell/" + shell["Id"].toString(), {}, 200);
        EXPECT_EQ(qint64(bytes.size()), shell["FileSize"].toInteger());
        EXPECT_EQ(bytes.rfind(shell["Id"].toString().toStdString(), 0), 0U);
    }
    get("/Orders/file/tempshell/SHELL-none", 404);
    get("/Orders/ORD-none/files/tempshell", 404);
    EXPECT_TRUE(get("/Orders/ORD-000002/files/tempshell").array().isEmpty());
    get("/Orders/file/tempshell/SHELL-ORD-000002-1", 404);
}

TEST_F(OrdersTest, theCatalogueIsComparedWithTheClientsVersion)
{
    std::pair<char const*, char const*> const states[] = {
        {"4.2", "None"},     {"4.2.0", "None"},      {"10.0", "None"},  {"4.1.9", "Optional"},
        {"3.5", "Optional"}, {"3.4.9", "Mandatory"}, {"1", "Mandatory"}};
    for (auto const& [version, status] : states)
    {
        auto const path = QStringLiteral("/Installations/INST-1001/catalog/") + version;
        EXPECT_EQ(get(path + "/status")["Status"], status) << version;
        EXPECT_EQ(get(path)["Status"], status) << version;
        EXPECT_EQ(get(path)["Version"], "4.2");
    }
    EXPECT_EQ(get("/Installations/INST-2002/catalog/3.9/status")["Status"], "Mandatory");
    get("/Installations/INST-1001/catalog/4.x/status", 400);
    get("/Installations/INST-none/catalog/4.2", 404);
}

} // namespace
