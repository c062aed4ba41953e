#pragma once

/// The records of the namespace `collaboration`: plain structures with public fields.

#include <KeloCommunicationLib/collaboration/RequestEditRecords.h>
#include <KeloCommunicationLib/collaboration/RequestRecords.h>
#include <KeloCommunicationLib/collaboration/RequestTypes.h>
