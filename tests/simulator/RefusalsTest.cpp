#include "tests/simulator/SimulatorFixture.h"

#include <QFile>

namespace
{

using RefusalsTest = SimulatorFixture;

/// The body with other values at some places, which are named by keys and, in lists, numbers; a key behind "-" goes.
QJsonObject withChanges(QJsonObject body, QJsonObject const& changes)
{
    for (auto const& place : changes.keys())
    {
        if (place.startsWith('-'))
        {
            body.remove(place.mid(1));
        }
        else
        {
            body = changed(body, place.split('.'), changes[place]).toObject();
        }
    }
    return body;
}

// A row of refusals.json: the request, its body by name or as text, changes to it, the status, and what is told.
TEST_F(RefusalsTest, tellWhyAndLeaveNothingBehind)
{
    QFile file(KELO_REFUSALS);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    auto const document = parsed(file.readAll().toStdString());
    auto const session = post("/Installations/INST-1001/sessions", {})["SessionId"].toString();
    auto const state = get("/_control/state").object();
    auto const bodies = merged(document["Bodies"].toObject(), {{"state", state}});
    ASSERT_GT(document["Rows"].toArray().size(), 70);
    for (QJsonValue const row : document["Rows"].toArray())
    {
        SCOPED_TRACE(QJsonDocument(row.toArray()).toJson().toStdString());
        auto const request = row[0].toString().replace("{session}", "/Sessions/" + session).split(' ');
        auto const text = row[1].toString();
        auto const changes = row[2].toObject();
        bool const isRaw = changes.isEmpty() && !bodies.contains(text);
        auto const body = withChanges(bodies[text].toObject(), changes);
        auto const answer = send(
            request[0].toLatin1().constData(), request[1], isRaw ? text.toUtf8() : QJsonDocument(body).toJson(),
            row[3].toInt());
        auto const told = answer[0]["Code"].toString() + ": " + answer[0]["Message"].toString();
        EXPECT_TRUE(told.contains(row[4].toString())) << told.toStdString();
        EXPECT_FALSE(answer[0]["Message"].toString().isEmpty());
    }
    EXPECT_EQ(get("/_control/state").object(), state);
    EXPECT_TRUE(get("/_control/faults").array().isEmpty());
    client.set_basic_auth("kelo", "wrong");
    EXPECT_EQ(get("/Installations/INST-1001/connections", 401)[0]["Code"], "4010");
}

} // namespace
