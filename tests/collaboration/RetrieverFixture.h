#pragma once

#include <vector>

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>
#include <platform/core/HostEnvironment.h>
#include <testkit/MockConnection.h>
#include <testkit/Replies.h>

namespace test
{

/// A retriever over a double, on a thread whose events the test runs.
class RetrieverFixture : public testing::Test
{
protected:
    RetrieverFixture()
    {
        core::HostEnvironment environment;
        environment.collaborationRequestVersion = QVersionNumber(3, 1);
        environment.installationReference = [](QString const& key)
        { return key.isEmpty() ? QStringLiteral("I") : QStringLiteral("wrong key"); };
        core::setHostEnvironment(environment);
    }

    static testkit::FailedReply serviceError() { return testkit::refused(17, QStringLiteral("Refused"), 500); }

    /// A list's handler starts the calls whose replies take a second turn.
    static void runEvents()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents();
    }

    /// A group that holds one request.
    template <class Group>
    static std::vector<Group> groupOf(QString const& requestId)
    {
        Group group;
        group.partner = {QStringLiteral("PS"), QStringLiteral("P"), QStringLiteral("N")};
        auto& entry = group.collaborationRequestDetailInfos.emplace_back();
        if constexpr (requires { entry.requestDetails; })
        {
            entry.requestDetails.id = requestId;
        }
        else
        {
            entry.id = requestId;
        }
        return {group};
    }

private:
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = {name_, nullptr};
    QCoreApplication application_{argc_, argv_};

protected:
    testing::StrictMock<testkit::MockConnection> connection_;
};

} // namespace test
