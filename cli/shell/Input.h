#pragma once

#include <utility>
#include <vector>

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>
#include <QVersionNumber>

#include <KeloCommunicationLib/collaboration/ConnectionRecords.h>
#include <KeloCommunicationLib/collaboration/RequestTypes.h>
#include <KeloCommunicationLib/collaboration/RestorationRecords.h>
#include <KeloCommunicationLib/orders/CatalogRecords.h>
#include <platform/rest/MappedFile.h>

/// Texts of the command line to values. Every function throws a Failure that names a text it cannot take.
namespace cli
{

/// An id that fills a place in a path: not empty, and without the characters that would make it another path.
QString identifier(char const* what, QString const& text);

/// The names of an enumeration's values.
QStringList requestTypeNames();
QStringList connectionStatusNames();
QStringList genderNames();

/// A kind of request by its name, in any case, or its number.
collaboration::RequestType requestType(QString const& text);
std::vector<collaboration::RequestType> requestTypes(QStringList const& texts);
QString nameOf(collaboration::RequestType type);

/// A state of a partner connection by its name, in any case, or its number.
ConnectionStatus connectionStatus(QString const& text);
QString nameOf(ConnectionStatus status);

QString nameOf(KeloCommunicationLib::CatalogUpdateState state);

/// A status or state for which the service has numbers, and no words.
int serviceNumber(char const* what, QString const& text);

/// A gender by its name, in any case; none for an empty text.
PatientGender::Gender gender(QString const& text);

/// A version in the form 1.2.3; `what` names it in the Failure.
QVersionNumber versionOf(char const* what, QString const& text);

/// A day in the form 2026-12-31; an invalid date for an empty text.
QDate day(char const* what, QString const& text);

/// The bytes of a file; `what` names its role in the Failure for one that cannot be read.
QByteArray contentOf(char const* what, QString const& path);

/// Whether standard input is meant: "-" or its device.
bool isStandardInput(QString const& path);

/// What people give in a file: in a regular one, in a pipe or device, or on standard input ("-").
struct Given
{
    QString source; ///< as messages name it
    QByteArray content;
};

/// As `contentOf`, of whatever can be read. Standard input can be had once.
Given given(char const* what, QString const& path);

/// A file to be sent, which is not read into memory. Throws a Failure for one that cannot be read.
rest::MappedFile fileToSend(QString const& path);

/// What the service wants to know of a file that will be uploaded.
using FileDescription = CreateRestorationRequestInfo::NewFileInfo;
std::vector<FileDescription> describeFiles(QStringList const& paths, int chunkSize);

/// Implant connections in the form ID:TOOTH.
std::vector<CreateRestorationRequestInfo::ImplantConnection> implants(QStringList const& texts);

} // namespace cli
