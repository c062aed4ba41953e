#include "CliFixture.h"

#include <testkit/Waiting.h>

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

    /// Its name is one that a shell must be told with care.
    QString writeOrder(QByteArray const& text) const { return file("it's $HOME's order.json", text); }

    /// The command that a message ends with, as a shell runs it.
    ProgramRun commandIn(ProgramRun const& told) const
    {
        return run("sh", {"-c", QString::fromUtf8(told.errors.mid(told.errors.indexOf("kelo orders ")))});
    }

    /// Ends the program while it waits for the answer to its nth call.
    ProgramRun interrupted(int signal, int calls, QStringList const& arguments)
    {
        auto const before = journal().size();
        auto const process = started(KELO_PROGRAM, arguments);
        EXPECT_TRUE(process->waitForStarted());
        EXPECT_TRUE(testkit::comesTrue([&] { return journal().size() == before + calls; }));
        auto const second = kelo(create);
        EXPECT_EQ(second.exitCode, 2) << second;
        EXPECT_TRUE(second.errors.contains("Another kelo is at work")) << second;
        ::kill(static_cast<pid_t>(process->processId()), signal);
        return finished(*process);
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
    EXPECT_EQ(journalled("createOrder"), 0);
    auto const piped = R"(cat "$0" | kelo orders )";
    for (auto const& [rest, exitCode] :
         {std::pair{"price -", 0}, {"price /dev/stdin", 0}, {"price - <\"$0\"", 0}, {"create -", 2}})
    {
        EXPECT_EQ(run("sh", {"-c", QString(piped) + rest, create[2]}).exitCode, exitCode) << rest;
    }

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
    auto const dry = QString(R"(kelo orders create - --files "$1" --state "$1/state" <"$0")");
    EXPECT_EQ(run("sh", {"-c", dry, create[2], folder.path()}).exitCode, 0);
    EXPECT_EQ(run("sh", {"-c", dry, create[2], folder.path()}).exitCode, 2); // it would be a second one

    EXPECT_EQ(kelo({"shells", "download", reference, "--into", folder.path()}).exitCode, 1); // not ready
    fault({{"Operation", "getOrderStatus"}, {"Kind", "delay"}});                             // the first look succeeds
    fault({{"Operation", "getOrderStatus"}, {"Kind", "drop"}});
    auto const looks = journalled("getOrderStatus");
    auto const watching = started(KELO_PROGRAM, {"orders", "watch", reference, "--until", "2", "--interval", "1"});
    EXPECT_TRUE(testkit::comesTrue([&] { return journalled("getOrderStatus") >= looks + 2; }));
    post("/_control/partner-action", {{"Action", "advanceOrder"}, {"Reference", reference}});
    auto const watched = finished(*watching);
    EXPECT_EQ(watched.exitCode, 0) << watched;
    EXPECT_EQ(watched.errors.count('\n'), 1) << watched;
    EXPECT_TRUE(watched.errors.contains("Trying again") && !watched.errors.contains("may have processed")) << watched;
    auto const shells = keloJson({"shells", "list", reference});
    auto const downloaded = keloJson({"shells", "download", reference, "--into", folder.path()});
    ASSERT_EQ(downloaded.array().size(), 1);
    auto const shell = contentOf(downloaded[0]["File"].toString());
    EXPECT_EQ(shell.size(), shells[0]["FileSize"].toInt());
    auto const id = shells[0]["Id"].toString();
    EXPECT_TRUE(shell.startsWith(id.toLatin1()));
    file(shells[0]["Name"].toString(), "my own");
    EXPECT_EQ(kelo({"shells", "download", reference, "--into", folder.path()}).exitCode, 4);
    fault({{"Operation", "getTempShellFile"}, {"Kind", "gzipBomb"}, {"Mebibytes", 1}});
    EXPECT_EQ(kelo({"shells", "download", reference, "--into", folder.path(), "--overwrite"}).exitCode, 3);
    EXPECT_EQ(contentOf(downloaded[0]["File"].toString()), "my own");

    // Names that cannot be had, or that another one takes; one shell that cannot be asked for at all.
    QJsonArray odd;
    for (auto const& name : {QString("../x"), id + ".stl", QString(300, 'n'), QString("bad")})
    {
        odd.append(merged(shells[0].toObject(), {{"Name", name}, {"Id", name == "bad" ? "a/b" : id}}));
    }
    auto const into = folder.path() + "/odd";
    QDir().mkdir(into);
    fault({{"Operation", "getTempShellCalculationData"}, {"Kind", "status"}, {"Status", 200}, {"Body", odd}});
    auto const partly = kelo({"shells", "download", reference, "--into", into, "--json"});
    EXPECT_EQ(partly.exitCode, 3) << partly;
    EXPECT_TRUE(partly.errors.contains("1 of 4 shells")) << partly;
    EXPECT_EQ(partly.json().array().size(), 3);
    auto names = QDir(into).entryList(QDir::Files);
    names.sort();
    EXPECT_EQ(names, QStringList({id + ".stl", "shell-2.stl", "shell-3.stl"}));

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
    EXPECT_EQ(broken.errors.count('\n'), 1);

    for (auto const& arguments : {create, create + QStringList{"--again"}})
    {
        auto const again = kelo(arguments);
        EXPECT_EQ(again.exitCode, 2) << again;
        EXPECT_TRUE(again.errors.contains("is not finished. To go on with it: kelo")) << again;
    }
    EXPECT_EQ(kelo(create + QStringList{"--resume", "ORD-000001"}).exitCode, 2);

    // What was announced is what is sent, or nothing.
    auto const uploads = journalled("uploadOrderFile");
    auto const content = contentOf(folder.filePath("margin.stl"));
    file("margin.stl", QByteArray(content).replace("solid", "SOLID"));
    auto const changed = commandIn(broken);
    EXPECT_EQ(changed.exitCode, 2) << changed;
    EXPECT_TRUE(changed.errors.contains("margin.stl\" has changed")) << changed;
    EXPECT_EQ(journalled("uploadOrderFile"), uploads);

    file("margin.stl", content);
    fault({{"Operation", "postFinishCadOrder"}, {"Kind", "status"}, {"Status", 503}});
    EXPECT_EQ(commandIn(broken).exitCode, 1);
    fault({{"Operation", "postFinishCadOrder"}, {"Kind", "delay"}, {"Milliseconds", 2000}});
    auto const resumed = commandIn(interrupted(SIGINT, 1, create + QStringList{"--resume", reference}));
    EXPECT_EQ(resumed.exitCode, 0) << resumed;
    EXPECT_EQ(journalled("uploadOrderFile"), uploads + 3);
    EXPECT_EQ(journalled("createOrder"), 1);
    auto const placed = placedOrders();
    ASSERT_EQ(placed.size(), 1);
    EXPECT_EQ(placed[0]["TimesCreated"], 1);
    EXPECT_EQ(placed[0]["State"], 1);
}

TEST_F(OrdersCli, NoOrderIsPlacedTwice)
{
    auto const exists = QByteArray(" exists, but the answer does not tell where");
    auto const mayExist = QByteArray(" may exist. It is not sent a second time");
    auto const finishedAlready = QByteArray("is placed and finished. To order again");
    constexpr rlim_t stateBeforeAnswer = 700;
    struct Row
    {
        QString fault;
        int signal;
        int exitCode;
        QByteArray told;
        QByteArray toldAgain;
        int orders = 1;
        rlim_t mostBytes = RLIM_INFINITY;
    };
    std::vector<Row> const rows = {
        {"truncatedBody", 0, 3, mayExist, mayExist},
        {"cutChunk", 0, 3, mayExist, mayExist},
        {"emptyBody", 0, 3, mayExist, mayExist},
        {"wrongType", 0, 3, mayExist, mayExist},
        {"missingMember", 0, 3, mayExist, mayExist},
        {"missingMember:Files", 0, 3, exists, exists},
        {"drop", 0, 3, mayExist, mayExist, 0},
        {"delay", SIGINT, 130, mayExist, mayExist},
        {"delay", SIGTERM, 143, mayExist, mayExist},
        {"delay", SIGKILL, 137, "", mayExist},
        {"", 0, 4, "To go on with it: kelo orders upload 'UPLOAD-", mayExist, 1, stateBeforeAnswer},
        {"", 0, 0, "", finishedAlready}};
    ProgramRun again;
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.fault.toStdString() + ' ' + std::to_string(row.exitCode));
        writeOrder(order);
        QFile::remove(create[2] + ".kelo-order");
        auto const before = placedOrders().size();
        if (!row.fault.isEmpty())
        {
            auto const isLate = row.signal != 0;
            auto const member = row.fault.section(':', 1);
            QJsonObject rule{{"Operation", "createOrder"}, {"Kind", row.fault.section(':', 0, 0)}};
            rule = isLate ? merged(rule, {{"Milliseconds", 2000}}) : rule;
            fault(member.isEmpty() ? rule : merged(rule, {{"Member", member}}));
        }
        auto const first = row.signal == 0 ? finished(*started(KELO_PROGRAM, create, row.mostBytes))
                                           : interrupted(row.signal, 3, create);
        EXPECT_EQ(first.exitCode, row.exitCode) << first;
        EXPECT_TRUE(first.errors.contains(row.told)) << first;
        EXPECT_TRUE(testkit::comesTrue([&] { return placedOrders().size() == before + row.orders; }));
        if (row.mostBytes != RLIM_INFINITY)
        {
            EXPECT_EQ(commandIn(first).exitCode, 0);
            EXPECT_EQ(placedOrders().last()["State"], 1);
        }
        again = kelo(create);
        EXPECT_EQ(again.exitCode, 2) << again;
        EXPECT_TRUE(again.errors.contains(row.toldAgain)) << again;
        writeOrder(QByteArray(order).replace("\"Quantity\": 2", "\"Quantity\": 3"));
        auto const changed = kelo(create);
        EXPECT_EQ(changed.exitCode, 2) << changed;
        EXPECT_TRUE(changed.errors.contains("tells of another order") && changed.errors.contains(row.toldAgain))
            << changed;
        EXPECT_EQ(placedOrders().size(), before + row.orders);
    }
    auto const before = placedOrders().size();
    auto const onPurpose = commandIn(again);
    EXPECT_EQ(onPurpose.exitCode, 0) << onPurpose;
    EXPECT_EQ(placedOrders().size(), before + 1);

    // An order that was refused does not stand in the way; one on which a server has failed does.
    QFile::remove(create[2] + ".kelo-order");
    for (auto const& [status, told] :
         {std::pair{400, QByteArray("Nothing was ordered.")}, {503, "Nothing was ordered."}, {504, mayExist}})
    {
        fault({{"Operation", "createOrder"}, {"Kind", "status"}, {"Status", status}});
        auto const refused = kelo(create);
        EXPECT_EQ(refused.exitCode, 1) << refused;
        EXPECT_TRUE(refused.errors.contains(told)) << refused;
    }
    EXPECT_EQ(kelo(create).exitCode, 2);
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
    EXPECT_TRUE(onTerminal.output.contains("[############] 0/1 files, 45 bytes of 45")) << onTerminal;
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
