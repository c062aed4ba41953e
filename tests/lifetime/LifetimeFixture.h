#pragma once

#include <chrono>

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/threading/Future.h>

#include <testkit/RawServer.h>
#include <testkit/Waiting.h>
#include <tests/support/OpenSockets.h>

namespace test
{

using namespace testkit;

using namespace std::chrono_literals;

constexpr auto patience = 20s;

/// How often each case is gone through: KELO_REPETITIONS, or a few times.
inline int repetitions()
{
    int const wanted = qEnvironmentVariableIntValue("KELO_REPETITIONS");
    return wanted > 0 ? wanted : 5;
}

/// Waits until no more than `count` sockets are open in this process; false when it takes too long.
inline bool waitForSockets(int count)
{
    return comesTrue([count] { return openSockets() <= count; });
}

/// Waits for the future while the events of the calling thread run; false when it takes too long.
template <class T>
bool await(threading::Future<T> const& future)
{
    QEventLoop loop;
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    future.then(&loop, [&loop](threading::Future<T> const&) { loop.quit(); });
    if (!future.isFinished())
    {
        loop.exec();
    }
    return future.isFinished();
}

/// A host's main thread, in a process whose transport runs already: it keeps a few sockets for itself.
class LifetimeFixture : public testing::Test
{
protected:
    LifetimeFixture()
    {
        RawServer const server([](RawRequest const&) { return closeNow(); });
        TessalyConnection::makeConnection(server.url(), {}, {})->getThirdPartyAuthenticationKeys(u"I"_qs);
    }

private:
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = {name_, nullptr};
    QCoreApplication application_{argc_, argv_};
};

} // namespace test
