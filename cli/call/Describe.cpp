#include "cli/Commands.h"

#include <QJsonDocument>

#include "cli/call/OpenApi.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"

namespace cli
{

Action describe(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const document = openApi();
        context.output().show(document, QString::fromUtf8(QJsonDocument(document).toJson()));
    };
}

} // namespace cli
