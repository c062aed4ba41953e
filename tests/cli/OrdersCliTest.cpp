#include "CliFixture.h"

#include <QDir>

class OrdersCli : public CliFixture
{
protected:
    OrdersCli() : create{"orders", "create", writeOrder(order), "--files", folder.path()}
    {
        file("crown.stl", "solid crown\nendsolid crown\n");
        file("margin.stl", "solid margin\nendsolid margin\n");
        file("empty.stl", "");
    }

    QString writeOrder(QByteArray const& text) const { return file("order.json", text); }

    int calls(QString const& operation)
    {
        int count = 0;
        for (auto const& call : journal())
        {
            count += call[QLatin1String("Operation")] == operation ? 1 : 0;
        }
        return count;
    }

    /// The orders made by the shell tool, as the service stores them.
    QJsonArray placedOrders()
    {
        QJsonArray placed;
        for (auto const& stored : get("/_control/orders").array())
        {
            if (stored[QLatin1String("Request")][QLatin1String("ProductionNote")] == "Shade A2")
            {
                placed.append(stored);
            }
        }
        return placed;
    }

    QByteArray const item = R"({"ArticleNumber": "ART-10010", "Quantity": 1, "ToothNumberStart": 36,
        "ToothNumberEnd": 36, "VoucherCode": "SMILE50", "CadStatus": 3, "Files": ["crown.stl", "margin.stl"]})";
    QByteArray const order = R"({"AddressIdentifier": "ADR-501", "FrontendVersion": "3.1.0", "ProductionNote":
        "Shade A2", "OrderItems": [)"
                             + item + R"(, {"ArticleNumber": "ART-30010", "Quantity": 2,
        "IsLocalProductionArticle": true, "Files": ["empty.stl", "crown.stl"]}]})";
    QStringList create;
};

TEST_F(OrdersCli, PlacesAnOrderFromItsPricesToItsShells)
{
    EXPECT_EQ(keloJson({"addresses"})[0]["Identifier"], "ADR-501");
    EXPECT_TRUE(keloJson({"articles"}).array().contains("ART-30010"));
    auto const prices = keloJson({"orders", "price", create[2]});
    EXPECT_EQ(prices[0]["VoucherMessage"], "MSG_VOUCHER_100");
    EXPECT_EQ(prices[0]["VoucherDiscountPrice"], 94.5);
    EXPECT_EQ(prices[1]["ArticlePrice"], 44.67);
    EXPECT_EQ(calls("createOrder"), 0);

    auto const created = keloJson(create);
    auto const reference = created["OrderReference"].toString();
    EXPECT_EQ(created["Orders"][0]["State"], 1);
    EXPECT_EQ(created["Prices"], QJsonValue(prices.array()));
    auto const placed = placedOrders();
    ASSERT_EQ(placed.size(), 1);
    EXPECT_EQ(placed[0]["Reference"], reference);
    EXPECT_EQ(placed[0]["Files"].toArray().size(), 4);
    for (auto const& stored : placed[0]["Files"].toArray())
    {
        EXPECT_EQ(stored[QLatin1String("Uploads")], 1);
    }
    EXPECT_EQ(placed[0]["Request"]["OrderItems"][0]["CadStatus"], "3");
    EXPECT_EQ(kelo(create + QStringList{"--resume", reference}).exitCode, 2); // it is finished

    EXPECT_EQ(kelo({"shells", "download", reference, "--into", folder.path()}).exitCode, 1); // not ready
    post("/_control/partner-action", {{"Action", "advanceOrder"}, {"Reference", reference}});
    EXPECT_EQ(keloJson({"orders", "watch", reference, "--until", "2"})[0]["State"], 2);
    auto const shells = keloJson({"shells", "list", reference});
    auto const downloaded = keloJson({"shells", "download", reference, "--into", folder.path()});
    ASSERT_EQ(downloaded.array().size(), 1);
    auto const shell = contentOf(downloaded[0]["File"].toString());
    EXPECT_EQ(shell.size(), shells[0]["FileSize"].toInt());
    EXPECT_TRUE(shell.startsWith(shells[0]["Id"].toString().toLatin1()));

    EXPECT_EQ(keloJson({"catalog", "--version", "4.1"})["Update"], "Optional");
    EXPECT_EQ(keloJson({"catalog", "--version", "4.2"})["Update"], "NoUpdate");
    EXPECT_EQ(keloJson({"catalog"})["Version"], "4.2");
    EXPECT_EQ(kelo({"orders", "status", "ORD-000001", "ORD-404"}).exitCode, 1);
}

TEST_F(OrdersCli, ABrokenUploadGoesOnWithoutASecondOrder)
{
    fault({{"Operation", "uploadOrderFile"}, {"Kind", "delay"}}); // the first one gets through
    fault({{"Operation", "uploadOrderFile"}, {"Kind", "drop"}});
    auto const broken = kelo(create);
    EXPECT_EQ(broken.exitCode, 3) << broken;
    ASSERT_EQ(placedOrders().size(), 1);
    auto const reference = placedOrders().at(0)["Reference"].toString();
    EXPECT_TRUE(broken.errors.contains("up: crown.stl; that are not: margin.stl, empty.stl, crown.stl")) << broken;
    EXPECT_TRUE(broken.errors.contains(("--resume " + reference).toUtf8())) << broken;
    EXPECT_EQ(broken.errors.count('\n'), 1);

    auto const again = kelo(create);
    EXPECT_EQ(again.exitCode, 2) << again;
    EXPECT_TRUE(again.errors.contains(("--resume " + reference).toUtf8())) << again;
    EXPECT_EQ(kelo(create + QStringList{"--resume", "ORD-000001"}).exitCode, 2);

    // What was announced is what is sent, or nothing.
    auto const uploads = calls("uploadOrderFile");
    auto const content = contentOf(folder.filePath("margin.stl"));
    file("margin.stl", QByteArray(content).replace("solid", "SOLID"));
    auto const changed = kelo(create + QStringList{"--resume", reference});
    EXPECT_EQ(changed.exitCode, 2) << changed;
    EXPECT_TRUE(changed.errors.contains("margin.stl\" has changed")) << changed;
    EXPECT_EQ(calls("uploadOrderFile"), uploads);

    file("margin.stl", content);
    fault({{"Operation", "postFinishCadOrder"}, {"Kind", "status"}, {"Status", 503}});
    EXPECT_EQ(kelo(create + QStringList{"--resume", reference}).exitCode, 1);
    auto const resumed = kelo(create + QStringList{"--resume", reference});
    EXPECT_EQ(resumed.exitCode, 0) << resumed;
    EXPECT_EQ(calls("uploadOrderFile"), uploads + 3);
    EXPECT_EQ(calls("createOrder"), 1);
    auto const placed = placedOrders();
    ASSERT_EQ(placed.size(), 1);
    EXPECT_EQ(placed[0]["TimesCreated"], 1);
    EXPECT_EQ(placed[0]["State"], 1);
}

TEST_F(OrdersCli, AnOrderWhoseAnswerIsLostIsNotRepeated)
{
    for (auto const* kind : {"drop", "emptyBody", "wrongType"})
    {
        SCOPED_TRACE(kind);
        fault({{"Operation", "createOrder"}, {"Kind", kind}});
        auto const before = calls("createOrder");
        auto const run = kelo(create);
        EXPECT_EQ(run.exitCode, 3) << run;
        EXPECT_TRUE(run.errors.contains("The order may exist. It was not sent a second time")) << run;
        EXPECT_EQ(calls("createOrder"), before + 1);
        EXPECT_EQ(calls("uploadOrderFile"), 0);
    }
    fault({{"Operation", "createOrder"}, {"Kind", "status"}, {"Status", 500}});
    auto const refused = kelo(create);
    EXPECT_EQ(refused.exitCode, 1) << refused;
    EXPECT_FALSE(refused.errors.contains("may exist")) << refused;
}

TEST_F(OrdersCli, SendsAFileToASlotAndFinishes)
{
    auto const missing = file("tooth-36-2.stl", "solid tooth-36-2.stl\nendsolid tooth-36-2.stl\n");
    EXPECT_EQ(kelo({"orders", "finish", "ORD-000002"}).exitCode, 1);
    auto const trace = folder.filePath("trace.har");
    EXPECT_EQ(kelo({"orders", "upload", "UPLOAD-000004", missing, "--trace", trace}).exitCode, 0);
    auto const request = QJsonDocument::fromJson(contentOf(trace))["log"]["entries"][0]["request"];
    EXPECT_EQ(request["bodySize"], QFile(missing).size());
    EXPECT_FALSE(contentOf(trace).contains("endsolid"));
    auto const onTerminal =
        run("script", {"-qec", KELO_PROGRAM " orders upload UPLOAD-000004 " + missing, "/dev/null"});
    EXPECT_TRUE(onTerminal.output.contains("[########################] 0/1 files, 45 bytes of 45")) << onTerminal;
    EXPECT_EQ(kelo({"orders", "finish", "ORD-000002"}).exitCode, 0);
    EXPECT_EQ(keloJson({"orders", "status", "ORD-000002"})[0]["State"], 1);
    EXPECT_EQ(kelo({"orders", "upload", "UPLOAD-000004", folder.path()}).exitCode, 2);
}

TEST_F(OrdersCli, AMistakeInAnOrderIsNamedAndNothingIsOrdered)
{
    struct Row
    {
        char const* part; // of the order
        char const* instead;
        char const* named;
    };
    constexpr Row rows[] = {
        {"ART-30010", "ART-99", "OrderItems[1].ArticleNumber: ART-99"},
        {"\"ART-30010\"", "\"\"", "OrderItems[1].ArticleNumber"},
        {"\"margin.stl\"", "\"none.stl\"", "OrderItems[0].Files[1]"},
        {"\"margin.stl\"", "\"../order.json\"", "OrderItems[0].Files[1]"},
        {"\"margin.stl\"", "\"crown.stl\"", "OrderItems[0].Files[1]"},
        {"\"margin.stl\"", "7", "OrderItems[0].Files[1]"},
        {"\"Quantity\": 2", "\"Quantity\": 0", "OrderItems[1].Quantity: 0"},
        {"\"Quantity\": 2,", "", "OrderItems[1].Quantity"},
        {"{\"Addr", "\xEF\xBB\xBF\xEF\xBB\xBF{\"StudyId\": \"\", \"StudyId\": \"\", \"Addr",
         "StudyId: this is given twice"},
        {"Start\": 36", "Start\": 9", "OrderItems[0].ToothNumberStart: 9 is not a tooth number (11 to 48, FDI)"},
        {"End\": 36", "End\": 39", "OrderItems[0].ToothNumberEnd: 39"},
        {"\"3.1.0\"", "\"new\"", "FrontendVersion"},
        {"\"AddressIdentifier\": \"ADR-501\",", "", "AddressIdentifier: this is missing"},
        {"true", "1", "OrderItems[1].IsLocalProductionArticle"},
        {"\"Shade A2\"", "\n\n  Shade", "line 4, column 3"},
        {"]}]}", "]}]} x", "not JSON"}};
    for (auto const& row : rows)
    {
        auto const mistaken = QByteArray(order).replace(row.part, row.instead);
        SCOPED_TRACE(mistaken.toStdString());
        ASSERT_NE(mistaken, order);
        writeOrder(mistaken);
        auto const run = kelo(create);
        EXPECT_EQ(run.exitCode, 2) << run;
        EXPECT_TRUE(run.errors.contains("order.json: ")) << run;
        EXPECT_TRUE(run.errors.contains(row.named)) << run;
        EXPECT_EQ(run.errors.count('\n'), 1) << run;
    }
    for (auto const* text : {"[]", "{}", "", "{\"OrderItems\": [], \"AddressIdentifier\": \"ADR-501\"}"})
    {
        writeOrder(text);
        EXPECT_EQ(kelo(create).exitCode, 2) << text;
    }
    writeOrder(order);
    EXPECT_EQ(kelo({"orders", "create", folder.filePath("none.json")}).exitCode, 2);
    EXPECT_EQ(kelo(create + QStringList{"--chunk-size", "0"}).exitCode, 2);
    EXPECT_EQ(kelo(create + QStringList{"--state", folder.filePath("no/state")}).exitCode, 2);
    EXPECT_EQ(kelo(create + QStringList{"--resume", "ORD-000002"}).exitCode, 2); // no state
    for (auto const& call : journal())
    {
        EXPECT_EQ(call[QLatin1String("Operation")], "getAvailableArticles");
    }
    EXPECT_EQ(QDir(folder.path()).entryList({"*.kelo-order*"}, QDir::Files | QDir::Hidden), QStringList());
}
