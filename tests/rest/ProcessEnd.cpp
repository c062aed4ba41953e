// Ends with calls pending, in the way that the second argument names. Status 0: every future was finished, and nothing
// hung or crashed.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#include "tests/rest/RestTestSupport.h"

namespace
{

std::unique_ptr<rest::Connection> connection;

/// Made before the transport's own statics, hence destroyed after them.
struct LastCheck
{
    std::vector<rest::FutureJsonReply> futures;
    bool sendsLate = false;

    ~LastCheck()
    {
        if (sendsLate)
        {
            futures.push_back(connection->request(test::get()));
        }
        for (rest::FutureJsonReply const& future : futures)
        {
            if (!future.isCanceled())
            {
                std::fputs("A future was left unfinished\n", stderr);
                ::_exit(1);
            }
        }
    }
} lastCheck;

} // namespace

int main(int, char** arguments)
{
    // Not a measure of time, but a guard against a hang.
    ::alarm(60);
    char const* const mode = arguments[2];
    connection = test::connectTo(QUrl(QString::fromLatin1(arguments[1])));
    if (test::send(*connection, test::get("/now"))->httpStatusCode() != 200)
    {
        return 2;
    }
    // One place to the origin is left for the request that is answered.
    for (int i = 0; i < 5; ++i)
    {
        lastCheck.futures.push_back(connection->request(test::get("/stall")));
    }
    lastCheck.sendsLate = std::strcmp(mode, "lateRequest") == 0;
    if (std::strcmp(mode, "exitOnIoThread") == 0)
    {
        connection->request(test::get("/now")).then([](rest::JsonReply const&) { std::exit(0); });
        ::pause();
    }
    if (std::strcmp(mode, "waitOnIoThread") == 0)
    {
        threading::Promise<void> entered;
        connection->request(test::get("/now"))
            .then(
                [&entered](rest::JsonReply const&)
                {
                    entered.setValue();
                    lastCheck.futures.front().wait();
                });
        entered.future().wait();
    }
    return 0;
}
