#pragma once

#include <optional>

namespace simulator
{

/// Shuts down this process's loopback TCP connections that were accepted on the local port; with a remote port, that
/// one only. The owner of a connection then sees its end; the descriptor itself stays open and stays the owner's.
void shutdownConnections(int localPort, std::optional<int> remotePort = {});

} // namespace simulator
