#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action requestsSeen(Arguments& arguments)
{
    auto const id = arguments.requiredText("FILE", "The file's id");
    return [=](Context const& context)
    {
        collaboration::MarkAsSeenInfo const info{context.installation()};
        context.valueOf(context.connection().markCollaborationFileAsSeen(identifier("file id", *id), info));
        context.output().showDone(
            QJsonObject{{u"FileId"_s, *id}, {u"IsMarkedAsSeen"_s, true}}, u"Marked the file %1 as seen.\n"_s.arg(*id));
    };
}

} // namespace cli
