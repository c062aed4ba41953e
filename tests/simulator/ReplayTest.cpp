#include "tests/simulator/SimulatorFixture.h"

#include <QElapsedTimer>

namespace
{

using simulator::Simulator;
using simulator::SimulatorOptions;

QString const recordedAt = "https://kelo.example/api/v1";

/// An entry as a browser writes it; `body`: nothing was sent if it is null.
QJsonObject entry(
    char const* method, QString const& path, QJsonValue const& body, int status, QJsonObject const& content,
    QJsonArray const& headers = {})
{
    auto const url = path.startsWith('/') ? recordedAt + path : path;
    QJsonObject request = {{"method", method}, {"url", url}};
    if (!body.isNull())
    {
        request["postData"] = QJsonObject{{"mimeType", "application/json"}, {"text", body}};
    }
    return {
        {"startedDateTime", "2026-03-04T05:06:07.089Z"},
        {"timings", QJsonObject{{"wait", 120}, {"receive", 30}, {"connect", -1}}},
        {"request", request},
        {"response", QJsonObject{{"status", status}, {"content", content}, {"headers", headers}}}};
}

QJsonObject text(QString const& body)
{
    return {{"mimeType", "application/json"}, {"text", body}};
}

QByteArray har(QJsonArray const& entries)
{
    return QJsonDocument(QJsonObject{{"log", QJsonObject{{"entries", entries}}}}).toJson();
}

QString const connections = "/Installations/INST-7/connections";
QString const status = "/Requests/R-1/status";

QByteArray supportCase()
{
    QJsonObject const binary = {{"mimeType", "model/stl"}, {"encoding", "base64"}, {"text", "AP+A"}};
    QJsonArray const moved = {
        QJsonObject{{"name", "Location"}, {"value", recordedAt + "/files/1"}},
        QJsonObject{{"name", "X-Secret"}, {"value", "[redacted]"}},
        QJsonObject{{"name", "Retry-After"}, {"value", "7"}},
        QJsonObject{{"name", "Content-Length"}, {"value", "999"}}};
    QJsonArray const relative = {QJsonObject{{"name", "location"}, {"value", "/api/v1/files/2"}}};
    auto cut = entry("GET", "/cut", {}, 200, text("[1,"));
    cut["response"] = [response = cut["response"].toObject()]() mutable
    {
        response["_error"] = "The connection was lost.";
        return response;
    }();
    return har({
        entry("GET", connections, {}, 503, text("busy"), moved),
        entry("GET", connections, {}, 200, text(R"(["https://kelo.example/api/v1/a", "https://kelo.example/b",
            "https:\/\/kelo.example\/api\/v1\/c", "https://kelo.example.org/api/v1"])")),
        entry("GET", "/files?a=1&b=%32", {}, 200, binary),
        entry("GET", "/elsewhere", {}, 302, text(""), relative),
        entry("POST", status, R"({"A": [1, {"B": "[redacted]"}], "C": "x"})", 200, text("redacted")),
        entry("POST", status, "no JSON", 200, text("bytes")),
        entry("PUT", "/lost", {}, 0, {}),
        entry("GET", "/into-a-file", {}, 200, {{"size", 3}, {"mimeType", "model/stl"}}),
        cut,
        entry("GET", "https://files.example/far", {}, 200, text("far")),
    });
}

class ReplayTest : public ::testing::Test
{
protected:
    void start(QString const& basePath = {}, bool keepsTimes = false)
    {
        SimulatorOptions options;
        options.recordings = {{"case.har", supportCase()}};
        options.basePath = basePath;
        options.recordedDelays = keepsTimes;
        service = std::make_unique<Simulator>(options);
        url = QUrl(service->start());
        client = std::make_unique<httplib::Client>("127.0.0.1", url.port());
    }

    httplib::Result send(char const* method, QString const& path, std::string body = {})
    {
        httplib::Request request;
        request.method = method;
        request.path = (path.startsWith("/far") ? path : url.path() + path).toStdString();
        request.body = std::move(body);
        return client->send(request);
    }

    std::unique_ptr<Simulator> service;
    QUrl url;
    std::unique_ptr<httplib::Client> client;
};

TEST_F(ReplayTest, whatWasRecordedIsAnsweredBelowAnyBase)
{
    for (auto const* base : {"", "/mapped"})
    {
        start(base);
        EXPECT_EQ(url.path(), *base == '\0' ? "/api/v1" : base);
        auto const here = url.toString().toStdString();
        auto const origin = here.substr(0, here.size() - url.path().toStdString().size());
        auto const busy = send("GET", connections);
        EXPECT_EQ(busy->status, 503);
        EXPECT_EQ(busy->get_header_value("Location"), here + "/files/1");
        EXPECT_EQ(busy->get_header_value("Retry-After"), "7");
        EXPECT_EQ(busy->get_header_value("Content-Type"), "application/json");
        EXPECT_FALSE(busy->has_header("X-Secret"));
        for (int count = 0; count < 2; ++count)
        {
            auto const list = parsed(send("GET", connections)->body); // the last answer stays
            EXPECT_EQ(list[0].toString().toStdString(), here + "/a");
            EXPECT_EQ(list[1].toString().toStdString(), origin + "/b");
            EXPECT_EQ(list[2].toString().toStdString(), here + "/c");
            EXPECT_EQ(list[3], "https://kelo.example.org/api/v1");
        }
        EXPECT_EQ(send("GET", "/elsewhere")->get_header_value("Location"), url.path().toStdString() + "/files/2");
        EXPECT_EQ(send("POST", status, R"({"C": "x", "A": [1, {"B": "y"}]})")->body, "redacted");
        EXPECT_EQ(send("POST", status, "no JSON")->body, "bytes");
        EXPECT_FALSE(send("PUT", "/lost"));
        EXPECT_FALSE(send("GET", "/cut"));
        EXPECT_EQ(send("GET", "/far")->body, "far");
        EXPECT_EQ(service->control("GET", "replay")["NeverAsked"][0]["Entry"], "entry 2");
        EXPECT_EQ(send("GET", "/files?b=2&a=%31")->body, std::string("\0\xff\x80", 3));
        EXPECT_EQ(send("GET", "/into-a-file")->body, std::string(3, '\0'));
        EXPECT_EQ(service->control("GET", "replay")["NeverAsked"], QJsonArray());
        service->reset();
        EXPECT_EQ(send("GET", connections)->status, 503) << "it begins anew";
    }
}

TEST_F(ReplayTest, whatIsNotInTheRecordingIsToldWithTheNearest)
{
    start();
    struct Row
    {
        char const* method;
        QString path;
        char const* body;
        char const* told;
    };
    Row const rows[] = {
        {"GET", "/files?a=1", "", "nearest is entry 2, GET /api/v1/files: query: b is missing"},
        {"GET", "/files?a=3&b=2", "", "query: a \"3\" instead of \"1\""},
        {"DELETE", connections, "", "nearest is entry 0, GET /api/v1/Installations/INST-7/connections: another method"},
        {"GET", "/Installations/INST-8/connections", "", "nearest is entry 0, GET /api/v1/Installations/INST-7/conn"},
        {"POST", status, R"({"A": [2, {"B": ""}], "C": "x"})",
         "entry 4, POST /api/v1/Requests/R-1/status: body: A[0] 2"},
        {"POST", status, R"({"A": [1, {"B": ""}], "C": "x", "D": 1})", "body: D was not there: 1"},
        {"POST", status, "no JSOn", "body: 7 bytes instead of "},
    };
    for (auto const& row : rows)
    {
        auto const answer = send(row.method, row.path, row.body);
        EXPECT_EQ(answer->status, 501);
        EXPECT_NE(
            answer->body.find(QJsonDocument(QJsonArray{row.told}).toJson(QJsonDocument::Compact).mid(2).chopped(2)),
            std::string::npos)
            << answer->body;
    }
    auto const replay = service->control("GET", "replay");
    EXPECT_EQ(replay["UnmatchedCount"], static_cast<int>(std::size(rows)));
    EXPECT_EQ(replay["Unmatched"][1]["Number"], 2);
    EXPECT_EQ(replay["Entries"], 10);
    EXPECT_EQ(service->control("GET", "")["Installations"][0]["Id"], "INST-7");
    for (auto const* resource : {"state", "orders", "cases", "stats"})
    {
        EXPECT_THROW(service->control("GET", resource), std::invalid_argument) << resource;
    }
    EXPECT_THROW(service->reset(3), std::invalid_argument);
    EXPECT_THROW(Simulator().control("GET", "replay"), std::invalid_argument);
}

TEST_F(ReplayTest, recordedTimesAreKeptOnlyIfToldSo)
{
    start({}, true);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(send("GET", "/elsewhere")->status, 302);
    EXPECT_GE(clock.elapsed(), 150);
}

TEST_F(ReplayTest, whatIsNoRecordingIsRefusedWithThePlace)
{
    auto good = entry("GET", connections, {}, 200, text("[]"));
    auto const with = [&good](char const* part, char const* key, QJsonValue const& value)
    {
        auto bad = good;
        auto object = bad[QLatin1String(part)].toObject();
        object[QLatin1String(key)] = value;
        bad[QLatin1String(part)] = object;
        return har({good, bad});
    };
    std::pair<QByteArray, char const*> const rows[] = {
        {"", "case.har: no JSON: line 1: "},
        {supportCase().chopped(20), "case.har: no JSON: line "},
        {"[]", "case.har: no HTTP archive: it has no log.entries"},
        {har({}), "case.har: no entries: nothing was recorded"},
        {har({entry("GET", "https://other.example/index.html", {}, 200, {})}),
         "case.har: of another service: no entry asks for an operation; entry 0 is GET "
         "https://other.example/index.html"},
        {har({1}), "case.har: entry 0.request is no object"},
        {with("request", "url", "ftp://x/y"), "case.har: entry 1.request.url is no address of HTTP"},
        {with("request", "method", 1), "case.har: entry 1.request.method is no text"},
        {with("response", "status", 99), "case.har: entry 1.response.status is neither 0 nor from 200 to 599"},
        {with("response", "content", QJsonObject{{"encoding", "base64"}, {"text", "?"}}),
         "case.har: entry 1.response.content.text is no base64"},
        {with("response", "content", QJsonObject{{"size", 1e12}}),
         "case.har: entry 1.response.content.size is too large"},
    };
    for (auto const& [text, told] : rows)
    {
        SimulatorOptions options;
        options.recordings = {{"case.har", text}};
        try
        {
            Simulator const simulator(options);
            ADD_FAILURE() << told;
        }
        catch (std::invalid_argument const& error)
        {
            EXPECT_TRUE(std::string(error.what()).starts_with(told)) << error.what();
        }
    }
}

} // namespace
