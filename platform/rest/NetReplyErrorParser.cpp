#include <platform/rest/NetReplyErrorParser.h>

namespace rest
{

NetReplyErrorParser::~NetReplyErrorParser() = default;

NetReplyError NetReplyErrorParser::parse(JsonReply const& reply) const
{
    if (isNetworkError(reply))
    {
        return {1, 0, reply ? reply->httpStatusCode() : 0, reply ? reply->errorText() : QString(), QString()};
    }
    if (reply->classification() == 0)
    {
        return {0, 0, reply->httpStatusCode(), QString(), QString()};
    }
    return {
        2,
        parseErrorCode(reply),
        reply->httpStatusCode(),
        parseErrorMessage(reply),
        parseServerResponseStatus(reply),
        reply->retryAfter()};
}

} // namespace rest
