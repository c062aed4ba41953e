#include "cli/Commands.h"

#include "cli/partners/CaseFiles.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action casesAdd(Arguments& arguments)
{
    auto const id = arguments.requiredText("CASE", "The portal case's id");
    CaseFileArguments const files(arguments);
    return [=](Context const& context)
    {
        mirashare::AddDataRequest const request{
            .caseId = identifier("case id", *id),
            .installationReference = context.installation(),
            .userReference = context.user(),
            .caseFiles = files.read()};
        if (request.caseFiles.empty())
        {
            throw badInput(u"Nothing to add: give --file."_s);
        }
        auto const added = context.valueOf(context.connection().addNewDataRequest(request));
        context.output().showDone(described(added), filesText(added));
    };
}

} // namespace cli
