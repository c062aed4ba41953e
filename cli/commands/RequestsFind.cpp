#include "cli/commands/Commands.h"

#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action requestsFind(Arguments& arguments)
{
    auto const key = arguments.text("--key", "The request's key");
    auto const order = arguments.text("--order", "The number of the sales order that belongs to the request");
    return [=](Context const& context)
    {
        if (key->isNull() == order->isNull())
        {
            throw badInput(u"Give either --key or --order."_s);
        }
        auto const& connection = context.connection();
        auto const found =
            order->isNull()
                ? connection.getRequestId(
                    context.installation(), collaboration::RequestKeyRequest{identifier("key", *key)})
                : connection.getRequestId(
                    context.installation(), collaboration::SalesOrderNumberRequest{identifier("order number", *order)});
        QString const id = context.valueOf(found).requestId;
        context.output().show(QJsonObject{{u"RequestId"_s, id}}, printable(id) + u'\n');
    };
}

} // namespace cli
