#include "cli/Commands.h"

#include "cli/partners/CaseFiles.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Input.h"
#include "cli/shell/Listing.h"

namespace cli
{

using namespace Qt::Literals::StringLiterals;

Action casesCreate(Arguments& arguments)
{
    auto const patient = arguments.requiredText("--patient", "The patient's id");
    auto const firstName = arguments.text("--first-name", "The patient's first name");
    auto const lastName = arguments.text("--last-name", "The patient's last name");
    auto const birthday = arguments.text("--birthday", "The patient's day of birth, as 1980-12-31");
    auto const genderName = arguments.text("--gender", "The patient's gender", genderNames);
    auto const reference = arguments.text("--patient-reference", "What the partner calls the patient");
    auto const note = arguments.text("--note", "A note on the case");
    auto const prescriptions = arguments.paths("--prescription", "A prescription file that will be uploaded");
    CaseFileArguments const files(arguments);
    return [=](Context const& context)
    {
        mirashare::CreateCaseRequest request{
            .installationReference = context.installation(),
            .userReference = context.user(),
            .patientFirstName = *firstName,
            .patientLastName = *lastName,
            .patientId = identifier("patient id", *patient),
            .patientReference = *reference,
            .patientDateOfBirth = day("day of birth", *birthday).toString(Qt::ISODate),
            .patientGender = gender(*genderName),
            .locatorInfoNote = *note,
            .caseFiles = files.read(),
            .prescriptionTemplates = {}};
        for (QString const& path : *prescriptions)
        {
            request.prescriptionTemplates.emplace_back(readableFile("prescription", path), QDateTime());
        }
        auto const created = context.valueOf(context.connection().createCaseRequest(request));
        context.output().showDone(
            described(created),
            u"Created the case %1: %2\n"_s.arg(printable(created.caseId), printable(created.caseUrl))
                + filesText(created.caseFiles));
    };
}

} // namespace cli
