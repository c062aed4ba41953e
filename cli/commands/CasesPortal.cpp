#include "cli/commands/Commands.h"

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;
using PortalCase = mirashare::MiraShareItemData;

QString statusName(PortalCase const& one)
{
    constexpr char const* names[] = {"Created",  "Open",           "UnderReview", "InProgress",
                                     "Finished", "NeedsMoreInput", "Rejected",    "Closed"};
    return QString::fromLatin1(names[static_cast<std::size_t>(one.getStatus())]);
}

} // namespace

Action casesPortal(Arguments& arguments)
{
    auto const patient = arguments.requiredText("--patient", "The patient's id");
    return [=](Context const& context)
    {
        auto const future =
            context.connection().getMiraShareCases(identifier("patient id", *patient), context.installation());
        auto const cases = context.finished(future).get().value;
        context.checkNewExchanges(Shape::Object);
        showList<PortalCase>(
            context.output(), cases,
            {{u"Name"_s, u"CASE"_s, &PortalCase::getCaseName},
             {u"Status"_s, u"STATUS"_s, statusName},
             {u"CreatedBy"_s, u"CREATED BY"_s, &PortalCase::getCreatedBy},
             {u"IsCreator"_s, u"OURS"_s, &PortalCase::isCreatedByThisUser},
             {u"CreationTimestamp"_s, u"CREATED"_s,
              [](PortalCase const& one) { return one.getCreationDate().toString(Qt::ISODate); }},
             {u"SharedWithSites"_s, u"SHARED WITH"_s,
              [](PortalCase const& one) { return QJsonArray::fromStringList(one.getSharedWith()); }},
             {u"CaseUrl"_s, u"URL"_s, [](PortalCase const& one) { return one.getMiraLink().toString(); }}});
    };
}

} // namespace cli
