#pragma once

#include "cli/doctor/Examination.h"

namespace cli
{

/// One check. It may use what those found that it needs, none of which has failed.
using MakeCheck = Finding(Examination& examination);

MakeCheck checkAddress, checkSettings, checkProxy, checkName, checkConnection, checkTls;
MakeCheck checkHttp, checkCredentials, checkInstallation, checkClock, checkRoundTrips, checkVersions;

} // namespace cli
