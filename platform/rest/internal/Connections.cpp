#include <platform/rest/internal/Connections.h>

#include <algorithm>

#include <openssl/ssl.h>

#include <platform/rest/internal/System.h>

namespace rest
{

namespace
{

// Below what servers and the routers between usually keep.
constexpr std::chrono::seconds longestIdleTime{60};

// The two clocks are not read at the same instant.
constexpr std::chrono::milliseconds shortestSleep{500};

/// Whether TLS has decrypted something that libcurl did not ask for yet.
bool holdsDecryptedBytes(CURL* handle)
{
    curl_tlssessioninfo* tls = nullptr;
    curl_easy_getinfo(handle, CURLINFO_TLS_SSL_PTR, &tls);
    return tls != nullptr && tls->backend == CURLSSLBACKEND_OPENSSL && tls->internals != nullptr
           && SSL_has_pending(static_cast<SSL const*>(tls->internals)) == 1;
}

} // namespace

Moment Moment::now()
{
    return {Clock::now(), system::sinceBoot()};
}

bool isRecent(Moment const& last, Moment const& now)
{
    auto const awake = now.awake - last.awake;
    return awake <= longestIdleTime && now.sinceBoot - last.sinceBoot - awake < shortestSleep;
}

curl_socket_t Connections::open(curl_sockaddr const& address)
{
    curl_socket_t const socket = system::openSocket(address);
    if (socket != CURL_SOCKET_BAD)
    {
        open_.push_back({socket, 0, Moment::now(), std::chrono::milliseconds(0)});
    }
    return socket;
}

int Connections::close(curl_socket_t socket)
{
    std::erase_if(open_, [socket](Open const& candidate) { return candidate.socket == socket; });
    return system::closeSocket(socket);
}

Connections::Open* Connections::find(long localPort)
{
    for (Open& candidate : open_)
    {
        if (candidate.localPort == 0)
        {
            candidate.localPort = system::localPortOf(candidate.socket);
        }
        if (candidate.localPort == localPort)
        {
            return &candidate;
        }
    }
    return nullptr;
}

bool Connections::isFit(long localPort, CURL* handle)
{
    Open const* const connection = find(localPort);
    return connection != nullptr && connection->lastHeard.awake >= deadBefore_
           && isRecent(connection->lastHeard, Moment::now()) && system::isSilent(connection->socket)
           && !holdsDecryptedBytes(handle);
}

void Connections::begin(long localPort, std::chrono::milliseconds patience)
{
    Open* const connection = find(localPort);
    if (connection != nullptr && connection->patience != patience)
    {
        connection->patience = patience;
        system::limitUnacknowledged(connection->socket, patience);
    }
}

void Connections::answered(long localPort)
{
    if (Open* const connection = find(localPort))
    {
        connection->lastHeard = Moment::now();
    }
}

void Connections::foundDead(Clock::time_point moment)
{
    deadBefore_ = std::max(deadBefore_, moment);
}

} // namespace rest
