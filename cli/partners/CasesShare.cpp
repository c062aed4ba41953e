#include "cli/Commands.h"

#include <QJsonObject>

#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action casesShare(Arguments& arguments)
{
    auto const id = arguments.requiredText("CASE", "The portal case's id");
    auto const connection = arguments.requiredText("--connection", "The id of the partner connection to share it over");
    return [=](Context const& context)
    {
        mirashare::SharePartnerCaseRequest const request{
            .userReference = context.user(),
            .caseId = identifier("case id", *id),
            .partnerConnectionId = identifier("partner connection id", *connection)};
        context.valueOf(context.connection().sharePartnerCaseRequest(request));
        context.output().showDone(
            QJsonObject{{u"CaseId"_s, *id}, {u"PartnerConnectionId"_s, *connection}},
            u"Shared the case %1 over %2.\n"_s.arg(*id, *connection));
    };
}

} // namespace cli
