#pragma once

#include <vector>

#include <QHash>
#include <QString>
#include <QVariant>

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/connection/TessalyConnectionInterface.h>
#include <platform/rest/RestReply.h>
#include <platform/threading/Future.h>
#include <platform/utility/Optional.h>

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

    /// Why the last retrieval failed; success (kind 0) when it did not. A cancelled call counts as one without an
    /// answer (kind 1).
    rest::RestReplyStatus lastStatus() const;

    /// Account, site, two-factor, address and help-file entries. Started afresh by every call that gets the account.
    QHash<QString, QVariant> getAccountSettings() const;
    /// The ids of the current documents. Never cleared.
    QHash<QString, QVariant> getUpdateReferences() const;

    /// Whether later calls leave the instructions for use alone.
    void skipIFUFileReference(bool skip);

private:
    struct FailureTexts;

    template <class T>
    utility::Optional<T> resultOf(threading::Future<rest::RestReply<T>> future, FailureTexts const& texts);
    bool retrieveDocuments(TessalyConnectionInterface& connection, QString const& reference);
    void insertAccount(AccountLicenseInfo const& account);
    void insertSettings(SettingsLicenseInfo const& settings);
    void insertHelpFiles(std::vector<HelpFileInfo> const& files);

    QHash<QString, QVariant> accountSettings_;
    QHash<QString, QVariant> updateReferences_;
    rest::RestReplyStatus lastStatus_;
    bool skipIfuFileReference_ = false;
};
