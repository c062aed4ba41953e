#pragma once

#include "simulator/Simulator.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <gtest/gtest.h>
#include <httplib.h>

inline QJsonDocument parsed(std::string const& text)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(text));
}

/// The first object with the members of the second put in, in the place of those it has by the same names.
inline QJsonObject merged(QJsonObject object, QJsonObject const& more)
{
    for (auto const& key : more.keys())
    {
        object[key] = more[key];
    }
    return object;
}

/// The JSON with the value at the path, whose numbers count in lists.
inline QJsonValue changed(QJsonValue const& json, QStringList const& path, QJsonValue const& value)
{
    if (path.isEmpty())
    {
        return value;
    }
    auto const part = changed(json.isArray() ? json[path[0].toInt()] : json[path[0]], path.mid(1), value);
    auto array = json.toArray();
    if (json.isArray())
    {
        array[path[0].toInt()] = part;
        return array;
    }
    return merged(json.toObject(), {{path[0], part}});
}

/// A simulator of its own for every test, and a client that knows its credentials.
class SimulatorFixture : public ::testing::Test
{
protected:
    SimulatorFixture() : port(QUrl(service.start()).port()), client("127.0.0.1", port)
    {
        client.set_basic_auth("kelo", "kelo");
    }

    /// Sends the body, expects the status and gives the body of the answer.
    std::string exchange(char const* method, QString const& path, std::string body, int status)
    {
        httplib::Request request;
        request.method = method;
        request.path = path.toStdString();
        request.body = std::move(body);
        auto const result = client.send(request);
        EXPECT_TRUE(result) << method << ' ' << request.path << ": " << to_string(result.error());
        EXPECT_EQ(result ? result->status : 0, status)
            << method << ' ' << request.path << ' ' << request.body.substr(0, 2000);
        return result ? result->body : std::string();
    }
    QJsonDocument send(char const* method, QString const& path, QByteArray const& body, int status)
    {
        return parsed(exchange(method, path, body.toStdString(), status));
    }
    QJsonDocument post(QString const& path, QJsonObject const& body, int status = 200)
    {
        return send("POST", path, QJsonDocument(body).toJson(), status);
    }
    QJsonDocument get(QString const& path, int status = 200) { return send("GET", path, {}, status); }
    void fault(QJsonObject const& rule) { post("/_control/fault", rule); }

    simulator::Simulator service;
    int port;
    httplib::Client client;
};
