#include <platform/data/PatientGender.h>

QString conversions::toString(PatientGender::Gender gender)
{
    switch (gender)
    {
    case PatientGender::Male:
        return QStringLiteral("Male");
    case PatientGender::Female:
        return QStringLiteral("Female");
    case PatientGender::Other:
        return QStringLiteral("Other");
    case PatientGender::NotSet:
        break;
    }
    return QString();
}
