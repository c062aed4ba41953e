#pragma once

#include <chrono>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <platform/rest/Connection.h>
#include <platform/rest/MappedFile.h>
#include <platform/rest/Progress.h>

#include <testkit/RawServer.h>

namespace test
{

using namespace testkit;

using namespace std::chrono_literals;
using rest::HttpMethod;
using rest::RequestDataCreator;

class PlainParser final : public rest::NetReplyErrorParser
{
    int parseErrorCode(rest::JsonReply const&) const override { return 7; }

    QString parseErrorMessage(rest::JsonReply const&) const override { return QStringLiteral("message"); }

    QString parseServerResponseStatus(rest::JsonReply const&) const override { return {}; }
};

/// A connection to `baseUrl` with user "user", password "secret".
inline std::unique_ptr<rest::Connection> connectTo(QUrl const& baseUrl, std::chrono::milliseconds timeout = 20s)
{
    auto connection = std::make_unique<rest::Connection>(std::make_unique<PlainParser>(), timeout);
    connection->initialize(baseUrl, QStringLiteral("user"), QStringLiteral("secret"), {});
    return connection;
}

inline QUrl path(char const* text)
{
    return QUrl(QString::fromLatin1(text));
}

inline rest::HttpRequestData get(char const* target = "/x", std::chrono::milliseconds timeout = 0ms)
{
    rest::HttpRequestData data = RequestDataCreator::makeRequest(HttpMethod::Get, path(target));
    data.timeout = timeout;
    return data;
}

inline rest::HttpRequestData upload(QByteArray const& body, std::chrono::milliseconds timeout = 0ms)
{
    return RequestDataCreator::makeRequest(HttpMethod::Put, path("/x"), body, timeout);
}

inline rest::JsonReply send(rest::Connection const& connection, rest::HttpRequestData const& data = get())
{
    return connection.httpConnection().send(data);
}

/// A folder with files in it, gone with this object.
class Folder
{
public:
    QString path(char const* name) const { return folder_.filePath(QLatin1String(name)); }

    QString write(char const* name, QByteArray const& content) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }

    QByteArray read(char const* name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    int count() const { return static_cast<int>(QDir(folder_.path()).count()) - 2; }

    bool isEmpty() const { return count() == 0; }

private:
    QTemporaryDir folder_;
};

MATCHER(IsNetworkError, "is a network error")
{
    *result_listener << "status " << arg->httpStatusCode() << ", " << arg->errorText().toStdString();
    return arg->classification() == 2 && arg->httpStatusCode() == 0 && arg->errorCode() != 0
           && !arg->errorText().isEmpty();
}

inline bool saysMaybeProcessed(rest::JsonReply const& reply)
{
    return reply->errorText().contains(QLatin1String("may have processed"));
}

} // namespace test
