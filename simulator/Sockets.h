#pragma once

#include <optional>

#include <QByteArray>

namespace simulator
{

/// Shuts down this process's loopback TCP connections that were accepted on the local port; with a remote port, that
/// one only. The owner of a connection then sees its end; the descriptor itself stays open and stays the owner's.
void shutdownConnections(int localPort, std::optional<int> remotePort = {});

/// Sends bytes on this process's connection from the remote to the local port, past whoever owns it; false when the
/// receiver is gone.
bool sendOnConnection(int localPort, int remotePort, QByteArray const& bytes);

/// A socket connected to 127.0.0.1; -1 if nobody listens there.
int connectToLoopback(int port);

} // namespace simulator
