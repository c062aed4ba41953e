#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action ordersFinish(Arguments& arguments)
{
    auto const order = arguments.requiredText("ORDER", "The reference of an order whose files are all up");
    return [=](Context const& context)
    {
        QString const reference = identifier("order reference", *order);
        context.valueOf(context.connection().postFinishCadOrder(reference));
        context.output().showDone(
            QJsonObject{{u"OrderReference"_s, reference}}, u"Finished the order %1\n"_s.arg(printable(reference)));
    };
}

} // namespace cli
