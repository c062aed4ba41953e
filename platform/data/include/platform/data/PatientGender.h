#pragma once

#include <QString>

#include <platform/data/Export.h>

namespace PatientGender
{

/// The gender of a patient; `NotSet` means that none is known.
enum Gender : int
{
    NotSet = 0,
    Male,
    Female,
    Other
};

} // namespace PatientGender

namespace conversions
{

/// The gender as a word; empty for `NotSet` and for numbers that name no gender.
PLATFORM_DATA_EXPORT QString toString(PatientGender::Gender gender);

} // namespace conversions
