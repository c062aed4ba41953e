#pragma once

#include "simulator/IdList.h"

#include <QDate>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace simulator
{

struct Answer;
struct Call;
struct Route;
struct State;

/// Their names stand in CollaborationPartner.cpp, as those of the states below.
enum class RequestKind : int
{
    DentalScan = 0,
    LabDesign,
    TempShell,
    Template,
    Restoration,
    SurgeryPlan,
    CentralizedRestoration,
    Referral
};

/// How far a request has come. Requests from Completed on are closed: they are no longer "active". Other numbers above
/// are kept as given.
enum class RequestStatus : int
{
    Created = 0,
    InProgress,
    Answered,
    Completed,
    Rejected
};

/// The texts of a connection's status, by its number.
constexpr std::array<char const*, 7> connectionStatusTexts = {"Created",  "InvitationSent",    "Accepted", "Connected",
                                                              "Rejected", "RejectionNotified", "Stopped"};

/// A partnership of an installation with a lab or a clinician.
struct PartnerConnection
{
    QString id = {};
    QString installation = {};
    QString partnerId = {};
    QString name = {};
    QString zipCode = {};
    bool isInitiator = false;
    int status = 0;
};

struct CollaborationFile
{
    QString id = {};
    QString name = {};
    QString fileType = {};
    qint64 size = 0;
    qint64 chunkSize = 0;
    QString createdBy = {};
    bool isOwn = false;      // made by the installation, not by its partner
    bool isUploaded = false; // a slot for an upload until then
    bool isSeen = false;
};

struct Note
{
    QString text = {};
    QDateTime createdAt = {};
    QString createdBy = {};
    bool isOwn = false;
};

struct Patient
{
    QString id = {};
    QString firstName = {};
    QString lastName = {};
    QDate dateOfBirth = {};
    QString gender = {};
};

struct ImplantConnection
{
    QString id = {};
    int tooth = 0;
    QString manufacturerId = {};
    QString category = {};
    QString size = {};
};

struct Restoration
{
    int firstTooth = 0;
    int lastTooth = 0;
    QString type = {};
    QString material = {};
    QString color = {};
    QString note = {};
    QString barType = {};
    bool useAuthenticProducts = false;
    std::vector<ImplantConnection> implants = {};
};

struct CollaborationRequest
{
    QString id = {};
    QString transactionId = {};
    QString key = {};
    QString installation = {};
    QString connectionId = {}; // empty: addressed to the central production
    RequestKind kind = RequestKind::DentalScan;
    int status = 0;
    QString version = {};
    QString metadata = {};
    QDate dueDate = {};
    QDateTime createdAt = {};
    QStringList fileIds = {};
    std::vector<Note> notes = {};
    QString internalCaseIdentifier = {};
    QString orderReference = {}; // what the search by sales order number looks for
    QString treatingClinician = {};
    QString requesterPatientReference = {};
    Patient patient = {};
    std::vector<Restoration> restorations = {};
    bool isFileLocked = false;

    bool isActive() const { return status < static_cast<int>(RequestStatus::Completed); }
};

struct Session
{
    QString id = {};
    QString installation = {};
    QString connectionId = {};
};

/// What the service knows of collaborations. Files stand apart: several requests may refer to one.
struct Collaboration
{
    IdList<PartnerConnection> connections = {};
    IdList<Session> sessions = {};
    IdList<CollaborationRequest> requests = {};
    IdList<CollaborationFile> files = {};
};

std::vector<Route> collaborationRoutes();
void seedCollaboration(State& state);

/// Plays the partner: does what the call's "Action" says (reply, status, note, addFile, withdraw, create). Throws a
/// Refusal.
Answer partnerAction(Call const& call);

/// Control: the requests as their partners see them, with what `partnerAction` can make of each.
Answer storedRequests(Call const& call);

/// Gives the request a new transaction id; every change to a request ends with it.
void touch(State& state, CollaborationRequest& request);

/// Adds a request, with its id, key, creation time and transaction id filled in.
CollaborationRequest& addRequest(State& state, CollaborationRequest request);
/// Adds a file to a request, with its id filled in, and returns the id.
QString addFile(State& state, CollaborationRequest& request, CollaborationFile file);

/// The look-ups below throw a Refusal for an unknown id.
CollaborationRequest& requestById(State& state, QString const& id);
PartnerConnection& connectionById(State& state, QString const& id);
/// The partner of a request or session; the central production when it names no connection.
PartnerConnection partnerOf(State const& state, QString const& connectionId);

/// The wire forms of collaboration records.
QJsonObject toJson(PartnerConnection const& connection);
QJsonObject toJson(CollaborationRequest const& request, IdList<CollaborationFile> const& files);
/// One group per partner, in the order in which the partners first appear.
QJsonArray groupedByPartner(State const& state, std::vector<CollaborationRequest const*> const& requests);

} // namespace simulator
