#pragma once

/// Everything that a host application uses.

#include <KeloCommunicationLib/account/AccountOperations.h>
#include <KeloCommunicationLib/account/AccountRecords.h>
#include <KeloCommunicationLib/account/AccountSettingsRetriever.h>
#include <KeloCommunicationLib/account/DocumentRecords.h>
#include <KeloCommunicationLib/account/UserRecords.h>
#include <KeloCommunicationLib/account/VantorStats.h>
#include <KeloCommunicationLib/account/VantorStatsConnection.h>
#include <KeloCommunicationLib/collaboration/CollaborationOperations.h>
#include <KeloCommunicationLib/collaboration/CollaborationRecords.h>
#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/QueryRecords.h>
#include <KeloCommunicationLib/collaboration/RequestDetailsRetriever.h>
#include <KeloCommunicationLib/collaboration/RequestPoller.h>
#include <KeloCommunicationLib/connection/KeloErrorCode.h>
#include <KeloCommunicationLib/connection/KeloErrorParser.h>
#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <KeloCommunicationLib/connection/TessalyConnectionBase.h>
#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>
#include <KeloCommunicationLib/connection/TessalyConnectionProxy.h>
#include <KeloCommunicationLib/json/JsonSerializer.h>
#include <KeloCommunicationLib/json/RecordSchema.h>
#include <KeloCommunicationLib/orders/CatalogRecords.h>
#include <KeloCommunicationLib/orders/OrderOperations.h>
#include <KeloCommunicationLib/orders/OrderRecords.h>
#include <KeloCommunicationLib/orders/PriceRecords.h>
#include <KeloCommunicationLib/orders/TempShellRecords.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>
#include <KeloCommunicationLib/partners/PartnerOperations.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>
#include <platform/core/HostInfo.h>
#include <platform/data/PatientGender.h>
#include <platform/rest/Connection.h>
#include <platform/threading/Future.h>
#include <platform/utility/Optional.h>

// What a host's own platform need not have.
#if __has_include(<platform/core/HostEnvironment.h>)
#include <platform/core/HostEnvironment.h>
#endif
#if __has_include(<platform/rest/MappedFile.h>)
#include <platform/rest/MappedFile.h>
#endif
#if __has_include(<platform/rest/Progress.h>)
#include <platform/rest/Progress.h>
#endif
#if __has_include(<platform/utility/Result.h>)
#include <platform/utility/Result.h>
#endif
