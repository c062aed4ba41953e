#include "cli/commands/Commands.h"

#include "cli/Context.h"
#include "cli/Listing.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QJsonValue clinicians(StudyInfo const& study)
{
    QJsonArray list;
    for (auto const& partner : study.getClinicalPartners())
    {
        list.append(u"%1 (%2)"_s.arg(partner.getName(), partner.getId()));
    }
    return list;
}

} // namespace

Action studies(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        auto const list = context.valueOf(context.connection().getStudiesForLicense(context.installation()));
        showList<StudyInfo>(
            context.output(), list.getStudyInfos(),
            {{u"Id"_s, u"STUDY"_s, &StudyInfo::getId},
             {u"Name"_s, u"NAME"_s, &StudyInfo::getName},
             {u"ClinicalPartners"_s, u"CLINICIANS"_s, clinicians}});
    };
}

} // namespace cli
