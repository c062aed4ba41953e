#include "cli/shell/Input.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

#include <QFile>
#include <QFileInfo>

#include <KeloCommunicationLib/collaboration/RequestRecords.h>
#include <KeloCommunicationLib/json/RecordSchema.h>
#include <KeloCommunicationLib/partners/MiraShareRecords.h>

#include "cli/shell/Outcome.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

using Names = std::vector<jsonSerializer::NamedValue>;

/// The names that a member's values have.
template <class Record>
Names namesIn(QStringView key)
{
    for (auto const& member : jsonSerializer::schemaOf<Record>().members())
    {
        if (member.key() == key)
        {
            return member.kind() == jsonSerializer::ValueKind::List ? member.items().names() : member.names();
        }
    }
    return {};
}

Names typeNames()
{
    return namesIn<collaboration::RequestInfo>(u"RequestType");
}

Names statusNames()
{
    return namesIn<ConnectionInfo>(u"Status");
}

Names namesOfGenders()
{
    return namesIn<mirashare::CreateCaseRequest>(u"PatientGender");
}

QStringList textsOf(Names const& names)
{
    QStringList texts;
    for (auto const& named : names)
    {
        texts << named.name;
    }
    texts.removeAll(QString());
    return texts;
}

int numberOf(char const* what, Names const& names, QString const& text)
{
    bool isNumber = false;
    int const number = text.toInt(&isNumber);
    for (auto const& [name, value] : names)
    {
        if (text.compare(name, Qt::CaseInsensitive) == 0 || (isNumber && number == value))
        {
            return value;
        }
    }
    throw badInput(u"Unknown %1 \"%2\": it is one of %3, or its number."_s.arg(
        QLatin1String(what), text, textsOf(names).join(", "_L1)));
}

QString nameIn(Names const& names, int number)
{
    auto const found =
        std::find_if(names.begin(), names.end(), [number](auto const& named) { return named.value == number; });
    return found != names.end() ? found->name : QString::number(number);
}

FileDescription describeFile(QString const& path, int chunkSize)
{
    QFileInfo const file(path);
    if (!file.exists())
    {
        throw badInput(u"There is no file \"%1\"."_s.arg(path));
    }
    auto const description =
        file.isFile() ? FileDescription::create(file, static_cast<unsigned long long>(chunkSize)) : std::nullopt;
    if (!description)
    {
        throw badInput(u"Cannot open \"%1\": it must be a file that can be read and written."_s.arg(path));
    }
    return *description;
}

} // namespace

QStringList requestTypeNames()
{
    return textsOf(typeNames());
}

QStringList connectionStatusNames()
{
    return textsOf(statusNames());
}

QStringList genderNames()
{
    return textsOf(namesOfGenders());
}

QString identifier(char const* what, QString const& text)
{
    if (text.isEmpty())
    {
        throw badInput(u"The %1 is empty."_s.arg(QLatin1String(what)));
    }
    static QString const forbidden = u"/\\?#%&+"_s;
    bool const isBad = std::any_of(
        text.begin(), text.end(),
        [](QChar character) { return forbidden.contains(character) || character.isSpace() || !character.isPrint(); });
    if (isBad || text == "."_L1 || text == ".."_L1)
    {
        throw badInput(u"The %1 \"%2\" holds characters that no id has."_s.arg(QLatin1String(what), text));
    }
    return text;
}

collaboration::RequestType requestType(QString const& text)
{
    return static_cast<collaboration::RequestType>(numberOf("request type", typeNames(), text));
}

std::vector<collaboration::RequestType> requestTypes(QStringList const& texts)
{
    std::vector<collaboration::RequestType> types;
    std::transform(texts.begin(), texts.end(), std::back_inserter(types), requestType);
    return types;
}

QString nameOf(collaboration::RequestType type)
{
    return nameIn(typeNames(), static_cast<int>(type));
}

ConnectionStatus connectionStatus(QString const& text)
{
    return static_cast<ConnectionStatus>(numberOf("connection status", statusNames(), text));
}

QString nameOf(ConnectionStatus status)
{
    return status == ConnectionStatus::Unknown ? u"Unknown"_s : nameIn(statusNames(), static_cast<int>(status));
}

QString nameOf(KeloCommunicationLib::CatalogUpdateState state)
{
    using State = KeloCommunicationLib::CatalogUpdateState;
    return state == State::Optional ? u"Optional"_s : state == State::Mandatory ? u"Mandatory"_s : u"NoUpdate"_s;
}

int serviceNumber(char const* what, QString const& text)
{
    bool isNumber = false;
    int const number = text.toInt(&isNumber);
    if (!isNumber)
    {
        throw badInput(
            u"The %1 \"%2\" is no number: the service has no words for it."_s.arg(QLatin1String(what), text));
    }
    return number;
}

PatientGender::Gender gender(QString const& text)
{
    return static_cast<PatientGender::Gender>(numberOf("gender", namesOfGenders(), text));
}

QVersionNumber versionOf(char const* what, QString const& text)
{
    qsizetype end = 0;
    auto const version = QVersionNumber::fromString(text, &end);
    if (version.isNull() || end != text.size())
    {
        throw badInput(u"The %1 \"%2\" is no version such as 4.2."_s.arg(QLatin1String(what), text));
    }
    return version;
}

QDate day(char const* what, QString const& text)
{
    auto const date = QDate::fromString(text, u"yyyy-MM-dd"_s);
    if (!text.isEmpty() && !date.isValid())
    {
        throw badInput(u"The %1 \"%2\" is no date of the form 2026-12-31."_s.arg(QLatin1String(what), text));
    }
    return date;
}

QByteArray contentOf(char const* what, QString const& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
    {
        throw badInput(u"Cannot read the %1 \"%2\"."_s.arg(QLatin1String(what), path));
    }
    QByteArray const content = file.readAll();
    if (file.error() != QFileDevice::NoError)
    {
        throw badInput(u"Cannot read the %1 \"%2\": %3."_s.arg(QLatin1String(what), path, file.errorString()));
    }
    return content;
}

bool isStandardInput(QString const& path)
{
    return path == "-"_L1 || path == "/dev/stdin"_L1;
}

Given given(char const* what, QString const& path)
{
    bool const isInput = isStandardInput(path);
    QString const source = isInput ? u"standard input"_s : path;
    static bool wasInputTaken = false;
    if (isInput && std::exchange(wasInputTaken, true))
    {
        throw badInput(u"Standard input cannot be read a second time, as the %1."_s.arg(QLatin1String(what)));
    }
    QFile file(path);
    bool const isOpen = isInput ? file.open(STDIN_FILENO, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    constexpr qint64 longest = qint64(256) << 20;
    QByteArray content;
    while (isOpen && content.size() <= longest)
    {
        QByteArray const piece = file.read(1 << 16);
        if (piece.isEmpty())
        {
            break;
        }
        content += piece;
    }
    if (file.error() != QFileDevice::NoError)
    {
        throw badInput(u"Cannot read the %1 \"%2\": %3."_s.arg(QLatin1String(what), source, file.errorString()));
    }
    if (content.size() > longest)
    {
        throw badInput(u"The %1 \"%2\" is longer than 256 MiB."_s.arg(QLatin1String(what), source));
    }
    return {source, content};
}

rest::MappedFile fileToSend(QString const& path)
{
    rest::MappedFile const file(path);
    if (!file.isOpen())
    {
        throw badInput(u"Cannot read the file \"%1\": %2."_s.arg(path, file.errorString()));
    }
    return file;
}

std::vector<FileDescription> describeFiles(QStringList const& paths, int chunkSize)
{
    if (chunkSize <= 0)
    {
        throw badInput(u"The chunk size %1 is not positive."_s.arg(chunkSize));
    }
    std::vector<FileDescription> files;
    for (QString const& path : paths)
    {
        files.push_back(describeFile(path, chunkSize));
    }
    return files;
}

std::vector<CreateRestorationRequestInfo::ImplantConnection> implants(QStringList const& texts)
{
    std::vector<CreateRestorationRequestInfo::ImplantConnection> list;
    for (QString const& text : texts)
    {
        bool isNumber = false;
        int const tooth = text.section(u':', -1).toInt(&isNumber);
        QString const id = text.section(u':', 0, -2);
        if (!isNumber || tooth <= 0 || id.isEmpty())
        {
            throw badInput(u"The implant \"%1\" is not of the form ID:TOOTH."_s.arg(text));
        }
        list.push_back({.implantConnectionId = id, .toothNumber = tooth});
    }
    return list;
}

} // namespace cli
