#pragma once

#include <utility>
#include <vector>

#include <QString>

#include <KeloCommunicationLib/Export.h>

/// A user account of an installation. Element of the reply of GET Installations/{id}/users.
class KELO_EXPORT TessalyUser
{
public:
    TessalyUser() = default;
    TessalyUser(TessalyUser const&) = default;
    TessalyUser(TessalyUser&&) noexcept = default;
    TessalyUser& operator=(TessalyUser const&) = default;
    TessalyUser& operator=(TessalyUser&&) noexcept = default;
    virtual ~TessalyUser() = default;

    /// The service's id of the user.
    QString const& getReference() const { return reference_; }

    void setReference(QString const& reference) { reference_ = reference; }

    QString const& getFirstName() const { return firstName_; }

    void setFirstName(QString const& firstName) { firstName_ = firstName; }

    QString const& getLastName() const { return lastName_; }

    void setLastName(QString const& lastName) { lastName_ = lastName; }

    QString const& getUserName() const { return userName_; }

    void setUserName(QString const& userName) { userName_ = userName; }

    /// As the service sends it; the host compares.
    QString const& getPasswordHash() const { return passwordHash_; }

    void setPasswordHash(QString const& passwordHash) { passwordHash_ = passwordHash; }

    QString const& getEmail() const { return email_; }

    void setEmail(QString const& email) { email_ = email; }

    /// As the service sends it; the host deciphers.
    QString const& getEncryptedTwoFactorKey() const { return encryptedTwoFactorKey_; }

    void setEncryptedTwoFactorKey(QString const& key) { encryptedTwoFactorKey_ = key; }

private:
    QString reference_;
    QString firstName_;
    QString lastName_;
    QString userName_;
    QString passwordHash_;
    QString email_;
    QString encryptedTwoFactorKey_;
};

/// Orders users by user name: case-sensitive, by UTF-16 code units, so that Bob comes before alice.
class KELO_EXPORT UserNameComparator
{
public:
    bool operator()(TessalyUser const& a, TessalyUser const& b) const { return a.getUserName() < b.getUserName(); }
};

/// A clinician who takes part in a study.
class KELO_EXPORT ClinicalPartner
{
public:
    /// The clinician's id as a participant of the study.
    QString const& getId() const { return id_; }

    void setId(QString const& id) { id_ = id; }

    /// The name for users.
    QString const& getName() const { return name_; }

    void setName(QString const& name) { name_ = name; }

private:
    QString id_;
    QString name_;
};

/// A clinical study that an installation takes part in.
class KELO_EXPORT StudyInfo
{
public:
    QString const& getId() const { return id_; }

    void setId(QString const& id) { id_ = id; }

    QString const& getName() const { return name_; }

    void setName(QString const& name) { name_ = name; }

    std::vector<ClinicalPartner> getClinicalPartners() const { return clinicalPartners_; }

    void setClinicalPartners(std::vector<ClinicalPartner> clinicalPartners)
    {
        clinicalPartners_ = std::move(clinicalPartners);
    }

    /// The name of the first partner with that id, compared case-sensitively; empty if there is none.
    QString getClinicalNameForClinicianID(QString const& clinicianId) const
    {
        for (ClinicalPartner const& partner : clinicalPartners_)
        {
            if (partner.getId() == clinicianId)
            {
                return partner.getName();
            }
        }
        return QString();
    }

private:
    QString id_;
    QString name_;
    std::vector<ClinicalPartner> clinicalPartners_;
};

/// The clinical studies of an installation. Reply of GET Installations/{id}/Studies.
class KELO_EXPORT StudyInfoList
{
public:
    /// In the service's order.
    std::vector<StudyInfo> const& getStudyInfos() const { return studyInfos_; }

    void setStudyInfos(std::vector<StudyInfo> studyInfos) { studyInfos_ = std::move(studyInfos); }

private:
    std::vector<StudyInfo> studyInfos_;
};
