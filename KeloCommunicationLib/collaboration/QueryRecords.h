#pragma once

#include <utility>
#include <vector>

#include <QList>
#include <QString>
#include <QVersionNumber>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/collaboration/RequestTypes.h>

/// Which requests to tell the details of. A type that is not set is left out.
class KELO_EXPORT GetRequestDetailsInfo
{
public:
    GetRequestDetailsInfo() = default;

    GetRequestDetailsInfo(
        bool onlyActiveRequests, QVersionNumber versionNumber, QList<QString> requestIds,
        collaboration::RequestType type)
        : onlyActiveRequests_(onlyActiveRequests),
          versionNumber_(std::move(versionNumber)),
          requestIds_(std::move(requestIds)),
          type_(type)
    {
    }

    bool getOnlyActiveRequests() const { return onlyActiveRequests_; }

    void setOnlyActiveRequests(bool onlyActiveRequests) { onlyActiveRequests_ = onlyActiveRequests; }

    QVersionNumber const& getVersionNumber() const { return versionNumber_; }

    void setVersionNumber(QVersionNumber versionNumber) { versionNumber_ = std::move(versionNumber); }

    QList<QString> const& getRequestIds() const { return requestIds_; }

    void setRequestIds(QList<QString> requestIds) { requestIds_ = std::move(requestIds); }

    collaboration::RequestType getType() const { return type_; }

    void setType(collaboration::RequestType type) { type_ = type; }

private:
    bool onlyActiveRequests_ = false;
    QVersionNumber versionNumber_;
    QList<QString> requestIds_;
    collaboration::RequestType type_ = collaboration::RequestType::Unset;
};

/// Which requests to list: those of the selected types.
class KELO_EXPORT GetRequestsInfo
{
public:
    bool getOnlyActiveRequests() const { return onlyActiveRequests_; }

    void setOnlyActiveRequests(bool onlyActiveRequests) { onlyActiveRequests_ = onlyActiveRequests; }

    QVersionNumber const& getVersionNumber() const { return versionNumber_; }

    void setVersionNumber(QVersionNumber versionNumber) { versionNumber_ = std::move(versionNumber); }

    std::vector<collaboration::RequestType> const& getSelectedTypes() const { return selectedTypes_; }

    void setSelectedTypes(std::vector<collaboration::RequestType> selectedTypes)
    {
        selectedTypes_ = std::move(selectedTypes);
    }

private:
    bool onlyActiveRequests_ = true;
    QVersionNumber versionNumber_;
    std::vector<collaboration::RequestType> selectedTypes_;
};

/// Which restoration requests to tell the details of. The installation reference fills the path only.
class KELO_EXPORT RequestRestorationDetailsInfo
{
public:
    QString const& getInstallationReference() const { return installationReference_; }

    void setInstallationReference(QString installationReference)
    {
        installationReference_ = std::move(installationReference);
    }

    bool getOnlyActiveRequests() const { return onlyActiveRequests_; }

    void setOnlyActiveRequests(bool onlyActiveRequests) { onlyActiveRequests_ = onlyActiveRequests; }

    QList<QString> const& getRequestIds() const { return requestIds_; }

    void setRequestIds(QList<QString> requestIds) { requestIds_ = std::move(requestIds); }

private:
    QString installationReference_;
    bool onlyActiveRequests_ = false;
    QList<QString> requestIds_;
};
