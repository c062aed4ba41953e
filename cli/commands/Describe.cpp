#include "cli/commands/Commands.h"

#include <QJsonDocument>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/OpenApi.h"

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
