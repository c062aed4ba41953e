#pragma once

#include <chrono>
#include <vector>

#include <curl/curl.h>

#include <platform/rest/internal/Call.h>

namespace rest
{

/// A moment on two clocks: one that stands still while the machine sleeps, and one that goes on.
struct Moment
{
    Clock::time_point awake;
    std::chrono::nanoseconds sinceBoot;

    static Moment now();
};

/// Whether a connection that was last heard of at `last` may be taken at `now` for one that still stands: routers
/// forget connections that are silent for long, and servers go on without those who sleep.
bool isRecent(Moment const& last, Moment const& now);

/// The open TCP connections to one origin, and which of them a request may go out on. libcurl keeps connections for
/// later requests but tells neither that something unasked-for has come in on one nor that its peer is long gone.
class Connections
{
public:
    /// How long data that was sent may stay unacknowledged.
    static constexpr std::chrono::milliseconds acknowledgement{10000};

    /// In the place of libcurl's own ways to open and to close a socket.
    curl_socket_t open(curl_sockaddr const& address);
    int close(curl_socket_t socket);

    /// Whether a request may go out on the kept connection with that local port. If anything waits there to be read, be
    /// it the end of the connection, it would be taken for the answer.
    bool isFit(long localPort, CURL* handle);
    /// To be called before a request goes out on that connection: it ends when what is sent now is not acknowledged
    /// within `patience`.
    void begin(long localPort, std::chrono::milliseconds patience);
    /// The peer has answered on that connection just now.
    void answered(long localPort);
    /// A kept connection has turned out to be dead: those that were not heard of since `moment` are no better.
    void foundDead(Clock::time_point moment);

private:
    struct Open
    {
        curl_socket_t socket = CURL_SOCKET_BAD;
        long localPort = 0; ///< 0 while it is not connected
        Moment lastHeard;
        std::chrono::milliseconds patience{0};
    };

    Open* find(long localPort);

    std::vector<Open> open_;
    Clock::time_point deadBefore_ = Clock::time_point::min();
};

} // namespace rest
