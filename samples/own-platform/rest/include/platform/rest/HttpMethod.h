#pragma once

namespace rest
{

enum class HttpMethod : int
{
    Get = 0,
    Put = 1,
    Post = 2
};

} // namespace rest
