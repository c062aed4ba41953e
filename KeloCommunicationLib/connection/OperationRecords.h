#pragma once

#include <vector>

#include <QString>

#include <KeloCommunicationLib/partners/MiraShareRecords.h>

/// Bodies and replies that hosts never see: the operations make them, or take them apart.
namespace operations
{

/// A body that says nothing.
struct EmptyBody
{
};

/// The body of the operations on a request's file lock.
struct InstallationBody
{
    QString installationReference;
};

/// The reply with a patient's cases on the portal.
struct PortalCases
{
    std::vector<mirashare::MiraShareItemData> cases;
};

/// The reply with the keys for outside parties.
struct AuthenticationKeys
{
    std::vector<QString> keys;
};

/// The reply with the address of the software page.
struct SoftwarePage
{
    QString softwarePageUrl;
};

} // namespace operations
