#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action requestsLockState(Arguments& arguments)
{
    auto const id = arguments.requiredText("REQUEST", "The request's id");
    return [=](Context const& context)
    {
        auto const reply =
            context.connection().getUnlockedStateForRequest(context.installation(), identifier("request id", *id));
        bool const isUnlocked = context.valueOf(reply).isUnlocked();
        context.output().show(
            QJsonObject{{u"RequestId"_s, *id}, {u"Unlocked"_s, isUnlocked}},
            u"The file of the request %1 is %2.\n"_s.arg(*id, isUnlocked ? u"unlocked"_s : u"locked"_s));
    };
}

} // namespace cli
