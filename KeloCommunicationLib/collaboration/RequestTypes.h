#pragma once

namespace collaboration
{

/// The kinds of requests.
enum class RequestType : int
{
    Unset = -1,
    DentalScan,
    LabDesign,
    TempShell,
    Template,
    Restoration,
    SurgeryPlan,
    CentralizedRestoration,
    Referral
};

/// The state of a request, a number of the service that is kept as it is.
enum class RequestStatus : int
{
    Unset = -1
};

} // namespace collaboration
