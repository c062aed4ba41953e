#include <platform/rest/NetReplyErrorParser.h>

namespace rest
{

NetReplyErrorParser::~NetReplyErrorParser() = default;

NetReplyError NetReplyErrorParser::parse(JsonReply const& reply) const
{
    NetReplyError status;
    status.httpStatus = reply ? reply->httpStatusCode() : 0;
    if (isNetworkError(reply))
    {
        status.kind = 1;
        status.message = reply ? reply->errorText() : QString();
    }
    else if (reply->classification() != 0)
    {
        status.kind = 2;
        status.code = parseErrorCode(reply);
        status.message = parseErrorMessage(reply);
        status.serverResponseStatus = parseServerResponseStatus(reply);
    }
    return status;
}

} // namespace rest
