#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action requestsStatus(Arguments& arguments)
{
    auto const id = arguments.requiredText("REQUEST", "The request's id");
    auto const status =
        arguments.requiredText("STATUS", "The new status: a number, whose meaning is the service's own");
    return [=](Context const& context)
    {
        int const number = serviceNumber("status", *status);
        UpdateCollaborationRequestStatusInfo const info(
            context.installation(), identifier("request id", *id), static_cast<collaboration::RequestStatus>(number));
        context.valueOf(context.connection().updateCollaborationRequestStatus(info));
        context.output().showDone(
            QJsonObject{{u"RequestId"_s, *id}, {u"Status"_s, number}},
            u"The request %1 now has the status %2.\n"_s.arg(*id).arg(number));
    };
}

} // namespace cli
