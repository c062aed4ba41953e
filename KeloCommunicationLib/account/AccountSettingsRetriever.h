#pragma once

#include <vector>

#include <QHash>
#include <QString>
#include <QVariant>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>

/// Gathers what the host needs to know about the signed-in account and its installation into maps with fixed keys.
/// One instance must not be used from two threads at once.
class KELO_EXPORT AccountSettingsRetriever
{
public:
    AccountSettingsRetriever();
    AccountSettingsRetriever(AccountSettingsRetriever const& other);
    AccountSettingsRetriever& operator=(AccountSettingsRetriever const& other);
    virtual ~AccountSettingsRetriever();

    /// Blocks for up to five requests, one after the other, while the calling thread goes on with its events. False as
    /// soon as one fails, which is logged; the maps are complete only after true. Uses the host's installation
    /// reference.
    bool retrieveAccountSettings(TessalyConnectionInterface& connection);

    /// Account, site, two-factor, address and help-file entries. Started afresh by every call that gets the account.
    QHash<QString, QVariant> getAccountSettings() const;
    /// The ids of the current documents. Never cleared.
    QHash<QString, QVariant> getUpdateReferences() const;

    /// Whether later calls leave the instructions for use alone.
    void skipIFUFileReference(bool skip);

private:
    bool retrieveDocuments(TessalyConnectionInterface& connection, QString const& reference);
    void insertAccount(AccountLicenseInfo const& account);
    void insertSettings(SettingsLicenseInfo const& settings);
    void insertHelpFiles(std::vector<HelpFileInfo> const& files);

    QHash<QString, QVariant> accountSettings_;
    QHash<QString, QVariant> updateReferences_;
    bool skipIfuFileReference_ = false;
};
