// Calls that the host gives up.
#include <atomic>
#include <vector>

#include "testkit/platform/Exchanges.h"
#include "testkit/platform/Rows.h"

namespace platformcheck
{

namespace
{

void cancelReachesTheWire()
{
    RawServer const server(
        [](RawRequest const& request)
        { return request.target == "/half" ? reply(200, QByteArray(1000, 'x')).holdingBack(500) : stall(); });
    auto const connection = connectTo(server.url());
    std::pair<char const*, rest::HttpRequestData> const calls[] = {
        {"a GET", get()}, {"a POST", writeJson()}, {"a GET in the middle of its answer", get("/half")}};
    int count = 0;
    for (auto const& [what, data] : calls)
    {
        doing(text("cancelling ", what));
        auto const call = connection->request(data);
        require(server.waitForHeld(++count), "the server does not get it");
        call.cancel();
        requireCanceled(call);
        require(server.waitForClosedByClient(count), "its connection is not ended");
    }
}

void canceledDownloadIsSilent()
{
    RawServer server([](RawRequest const&) { return reply(200).afterRelease(); });
    auto const connection = connectTo(server.url());
    std::atomic<bool> isCalled = false;
    doing("cancelling a download");
    auto const call = connection->downloadBinary(
        relative("/x"), [&isCalled](BinaryReply const&) { isCalled = true; }, 0ms);
    require(server.waitForHeld(1), "the server does not get the request");
    call.cancel();
    requireCanceled(call);
    require(server.waitForClosedByClient(1), "its connection is not ended");
    server.release();
    requireStatus(send(*connection), 200);
    require(!isCalled, "the callback of a cancelled download is called");
}

void canceledUploadStops()
{
    RawServer const server({}, {false, [](RawRequest const& request) {
                                    return request.method == "PUT" ? std::optional(stall()) : std::nullopt;
                                }});
    auto const connection = connectTo(server.url());
    doing("cancelling an upload of 20 MB");
    // More than sockets hold, so that it is still being sent.
    auto const call = connection->request(write(HttpMethod::Put, QByteArray(20'000'000, 'x')));
    require(server.waitForHeld(1), "the server does not get the request");
    call.cancel();
    requireCanceled(call);
    requireStatus(send(*connection), 200);
}

void cancelFreesThePlace()
{
    RawServer const server([](RawRequest const& request) { return request.target == "/stall" ? stall() : reply(200); });
    auto const connection = connectTo(server.url());
    std::vector<rest::FutureJsonReply> stalled;
    for (int i = 0; i < 40; ++i)
    {
        stalled.push_back(connection->request(get("/stall")));
    }
    auto const waiting = connection->request(get());
    require(server.waitForRequests(1), "the server gets no request");
    for (rest::FutureJsonReply const& call : stalled)
    {
        call.cancel();
        requireCanceled(call);
    }
    doing("a call behind 40 that are cancelled");
    requireStatus(replyOf(waiting), 200);
}

void busyOriginHoldsUpNoOther()
{
    RawServer const busy([](RawRequest const&) { return stall(); });
    RawServer const other;
    auto const connection = connectTo(busy.url());
    std::vector<rest::FutureJsonReply> stalled;
    for (int i = 0; i < 40; ++i)
    {
        stalled.push_back(connection->request(get()));
    }
    doing("a call to another origin beside 40 that are not answered");
    requireStatus(send(*connectTo(other.url())), 200);
}

constexpr Row cancellingRows[] = {
    {"cancelReachesTheWire", "Future::cancel() ends the transfer: the server sees its connection go.",
     cancelReachesTheWire},
    {"canceledDownloadIsSilent", "The callback of a cancelled download is not called.", canceledDownloadIsSilent},
    {"canceledUploadStops", "An upload can be cancelled while it is sent.", canceledUploadStops},
    {"cancelFreesThePlace", "A call behind others that are cancelled gets its turn.", cancelFreesThePlace},
    {"busyOriginHoldsUpNoOther", "Calls that wait for one origin hold up none to another.", busyOriginHoldsUpNoOther},
};

} // namespace

constinit Group const cancelling = {"cancelling", cancellingRows};

} // namespace platformcheck
