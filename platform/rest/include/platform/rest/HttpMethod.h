#pragma once

namespace rest
{

/// The HTTP methods that a request can have.
enum class HttpMethod : int
{
    Get = 0,
    Put = 1,
    Post = 2
};

} // namespace rest
