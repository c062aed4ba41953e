// The credentials go to the service, and nowhere else: not into a log, a trace, a message, or to another server.
#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

#include <gmock/gmock.h>

#include <KeloCommunicationLib/account/AccountSettingsRetriever.h>
#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>

#include "tests/support/SecretForms.h"
#include <testkit/RawServer.h>
#include <tests/support/LogCapture.h>

namespace test
{

using namespace testkit;

namespace
{

using namespace std::chrono_literals;

QString const user = u"Zo\u00eb@dental/1"_qs;
QString const secret = u"p%\u00f6 \"\u2602:/Kx7Qq9ZtWv?&=+"_qs;
QByteArray const distinctive = "Kx7Qq9ZtWv";

QByteArray basic()
{
    return (user + u':' + secret).toUtf8().toBase64();
}

TEST(SecretForms, areAllFound)
{
    QByteArray const plain = secret.toUtf8();
    for (QByteArray const& form :
         {plain, plain.toPercentEncoding(), plain.toHex(), plain.toHex().toUpper(), basic(), plain.toBase64(),
          ("x" + plain).toBase64(), ("xx" + plain).toBase64(), plain.toBase64(QByteArray::Base64UrlEncoding),
          QUrl::toPercentEncoding(QString::fromLatin1(basic()))})
    {
        EXPECT_TRUE(tells(form, distinctive)) << form.toStdString();
    }
    EXPECT_FALSE(tells(user.toUtf8(), distinctive));
}

/// Everything that a host, its users and other servers get to see.
class Exposure
{
public:
    void add(QByteArray const& text)
    {
        std::lock_guard const lock(mutex_);
        texts_.append(text + '\n');
    }

    void add(QString const& text) { add(text.toUtf8()); }

    void add(rest::RestReplyStatus const& status)
    {
        add(status.message);
        add(status.serverResponseStatus);
        add(kelo::errorMessage(status));
    }

    void add(rest::TraceData const& trace)
    {
        ++traces_;
        add(trace.method + trace.url.toEncoded() + trace.requestBody + trace.responseBody + trace.error.toUtf8());
        add(trace.url.toString());
        for (auto const& headers : {trace.requestHeaders, trace.responseHeaders})
        {
            for (auto const& [name, value] : headers)
            {
                add(name + ": " + value);
            }
        }
    }

    int traces() const { return traces_; }

    QByteArray texts() const
    {
        std::lock_guard const lock(mutex_);
        return texts_;
    }

private:
    mutable std::mutex mutex_;
    QByteArray texts_;
    std::atomic<int> traces_ = 0;
};

template <class T>
void addReply(Exposure& exposure, threading::Future<rest::RestReply<T>> const& future)
{
    exposure.add(future.get().status);
}

/// One call of each kind, and one of what logs its failures.
void callAll(TessalyConnection& connection, Exposure& exposure)
{
    LogCapture const log;
    connection.setTraceCallback([&exposure](rest::TraceData const& trace) { exposure.add(trace); });
    addReply(exposure, connection.getShippingAddresses(u"I"_qs));
    addReply(exposure, connection.createCollaborationSession(u"I"_qs));
    addReply(exposure, connection.uploadOrderFile(u"F"_qs, "content"));
    addReply(exposure, connection.getPartners(u"I"_qs, true));
    connection.getTempShellFile(u"F"_qs).wait();
    auto const reply = connection.httpConnection().send(
        rest::RequestDataCreator::makeRequest(rest::HttpMethod::Get, QUrl(u"Settings"_qs)));
    exposure.add(reply->errorText());
    AccountSettingsRetriever().retrieveAccountSettings(connection);
    exposure.add(QByteArray::fromStdString(log.everything()));
}

QUrl withUserInfo(QUrl url)
{
    url.setUserName(user);
    url.setPassword(secret);
    return url;
}

struct Row
{
    char const* what;
    QUrl url;
    bool isTraced = true;
};

class Secrets : public testing::Test
{
protected:
    static Action echo(RawRequest const& request)
    {
        QByteArray const credentials = request.header("Authorization");
        QByteArray escaped = credentials;
        escaped.replace('/', "\\/");
        QByteArray const body =
            R"([{"Code":"17","Message":")" + credentials + R"("},{"Code":"18","Message":")" + escaped + R"("}])";
        return reply(
            request.target.startsWith("/echoed") ? 200 : 500, body,
            {{"Location", "/" + credentials.mid(6)}, {"X-Echo", credentials}, {"Server", credentials}});
    }

    Action answer(RawRequest const& request) const
    {
        QByteArray const& target = request.target;
        return target.startsWith("/refused") ? reply(401, R"([{"Code":"401","Message":"No"}])")
               : target.startsWith("/echo")  ? echo(request)
               : target.startsWith("/html")  ? reply(502, "<html>", {{"Content-Type", "text/html"}})
               : target.startsWith("/away")  ? reply(302, "{}", {{"Location", other_.url(u"/x"_qs).toEncoded()}})
               : target.startsWith("/on/")   ? reply(302, "{}", {{"Location", "/fine"}})
               : target.startsWith("/lost")  ? closeNow()
               : target.startsWith("/stall") ? stall()
                                             : reply(200);
    }

    RawServer other_;
    RawServer proxy_{[](RawRequest const&) { return reply(403); }};
    RawServer untrusted_{{}, {true}};
    RawServer server_{[this](RawRequest const& request) { return answer(request); }};
};

TEST_F(Secrets, goToTheServiceOnly)
{
    QUrl foreign = withUserInfo(QUrl(u"ftp://127.0.0.1/"_qs));
    Row const rows[] = {
        {"success", server_.url(u"/fine"_qs)},
        {"refused", server_.url(u"/refused"_qs)},
        {"error with the credentials in it", server_.url(u"/echo"_qs)},
        {"success with the credentials in it", server_.url(u"/echoed"_qs)},
        {"HTML", server_.url(u"/html"_qs)},
        {"redirected to another origin", server_.url(u"/away"_qs)},
        {"redirected", server_.url(u"/on"_qs)},
        {"connection lost, user-info in the URL", withUserInfo(server_.url(u"/lost"_qs))},
        {"time-out", server_.url(u"/stall"_qs)},
        {"untrusted certificate", withUserInfo(untrusted_.url())},
        {"proxy refuses", withUserInfo(QUrl(u"https://kelo.invalid/"_qs))},
        {"bad URL", foreign, false},
    };
    QByteArray const proxy = withUserInfo(proxy_.url()).toEncoded();
    qputenv("https_proxy", proxy);
    for (auto const& row : rows)
    {
        SCOPED_TRACE(row.what);
        int const before = server_.requestCount();
        Exposure exposure;
        auto const connection = TessalyConnection::makeConnection(row.url, user, secret);
        connection->setUseProxyAutoDiscovery(true);
        connection->setDefaultTimeout(row.url.path() == u"/stall" ? 50ms : 20s);
        callAll(*connection, exposure);
        EXPECT_FALSE(tells(exposure.texts(), distinctive)) << exposure.texts().toStdString();
        EXPECT_EQ(exposure.traces() > 0, row.isTraced);
        auto const requests = server_.requests();
        for (auto index = static_cast<std::size_t>(before); index < requests.size(); ++index)
        {
            EXPECT_EQ(requests[index].header("Authorization"), "Basic " + basic());
        }
    }
    qunsetenv("https_proxy");
    EXPECT_EQ(other_.connectionCount(), 0);
    EXPECT_GT(proxy_.requestCount(), 0);
    for (RawRequest const& request : proxy_.requests())
    {
        EXPECT_EQ(request.header("Authorization"), "");
    }
}

} // namespace

} // namespace test
