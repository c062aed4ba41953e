#include "cli/shell/Context.h"

#include <algorithm>
#include <utility>

#include <KeloCommunicationLib/connection/KeloErrors.h>
#include <platform/core/HostEnvironment.h>

#include "cli/shell/Exchange.h"
#include "cli/shell/Input.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QString givenOr(QString const& given, QString const& fallback)
{
    return given.isNull() ? fallback : given;
}

QString wordsFor(CommonOptions const& options)
{
    std::pair<QString, QString> const all[] = {
        {u"--url"_s, options.url},
        {u"--user"_s, options.user},
        {u"--installation"_s, options.installation},
        {u"--ca-file"_s, options.certificateFile},
        {u"--timeout"_s, options.timeout}};
    QString words;
    for (auto const& [name, value] : all)
    {
        words += value.isNull() ? QString() : u" %1 %2"_s.arg(name, shellQuoted(value));
    }
    return words;
}

/// A version that cannot be read would silently be none.
void checkCollaborationVersion()
{
    constexpr auto name = "KELO_COLLABORATION_VERSION";
    if (QString const text = qEnvironmentVariable(name); !text.isEmpty())
    {
        versionOf(name, text);
    }
}

/// 0 if none is given.
std::chrono::milliseconds timeoutOf(CommonOptions const& options)
{
    QString const fromEnvironment = qEnvironmentVariable("KELO_TIMEOUT");
    QString const text = givenOr(options.timeout, fromEnvironment);
    if (options.timeout.isNull() && fromEnvironment.isEmpty())
    {
        return std::chrono::milliseconds(0);
    }
    bool isNumber = false;
    double const seconds = text.toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0.1 && seconds <= 3600))
    {
        throw badInput(u"The time-out \"%1\" is not a number of seconds from 0.1 to 3600."_s.arg(text));
    }
    return std::chrono::milliseconds(static_cast<qint64>(seconds * 1000));
}

Failure refusal(QString const& message, rest::RestReplyStatus const& status)
{
    return {ExitCode::ServiceError, message, {.serviceCode = status.code, .httpStatus = status.httpStatus}};
}

} // namespace

QUrl serviceUrl(QString const& text, QString const& advice)
{
    if (text.isEmpty())
    {
        throw badInput(u"No service address: %1."_s.arg(advice));
    }
    QUrl url(text, QUrl::StrictMode);
    bool const mayHoldSecret = text.contains(u'@');
    QString const name = mayHoldSecret ? u"The URL"_s : u"The URL \"%1\""_s.arg(text);
    if (mayHoldSecret && (!url.isValid() || !url.userInfo().isEmpty() || url.authority().contains(u'@')))
    {
        throw badInput(u"The URL holds a user name or password: use --user and KELO_PASSWORD instead."_s);
    }
    if (!url.isValid())
    {
        throw badInput(name + u" is malformed: %1."_s.arg(url.errorString().section(u';', 0, 0)));
    }
    if (url.scheme() != "http"_L1 && url.scheme() != "https"_L1)
    {
        throw badInput(name + u" does not begin with http:// or https://."_s);
    }
    if (url.host().isEmpty())
    {
        throw badInput(name + u" names no host."_s);
    }
    if (url.hasQuery() || url.hasFragment())
    {
        throw badInput(name + u" must end with its path: no query, no fragment."_s);
    }
    return url;
}

Context::Context(CommonOptions const& options) : givenOptions_(wordsFor(options)), output_(options.json)
{
    checkCollaborationVersion();
    auto environment = core::hostEnvironment();
    url_ = serviceUrl(givenOr(options.url, qEnvironmentVariable("KELO_API_URL")), u"give --url or set KELO_API_URL"_s);
    user_ = givenOr(options.user, environment.username);
    if (options.installation.isNull() && !qEnvironmentVariableIsSet("KELO_INSTALLATION"))
    {
        throw badInput(u"No installation: give --installation or set KELO_INSTALLATION."_s);
    }
    installation_ = identifier("installation", givenOr(options.installation, environment.installationReference({})));
    certificateFile_ = givenOr(options.certificateFile, qEnvironmentVariable("KELO_CA_FILE"));
    if (!certificateFile_.isEmpty())
    {
        contentOf("certificate file", certificateFile_);
    }
    if (!options.traceFile.isNull())
    {
        trace_ = std::make_shared<HarFile>(options.traceFile);
    }
    timeout_ = timeoutOf(options);
    environment.installationReference = [installation = installation_](QString const&) { return installation; };
    environment.username = user_;
    environment.password = givenOr(options.password, environment.password);
    core::setHostEnvironment(environment);
    TessalyConnectionBase::m_callback =
        [answers = answers_, trace = trace_, isTold = options.verbose](rest::TraceData const& exchange)
    {
        answers->add(exchange);
        if (trace)
        {
            trace->add(exchange);
        }
        if (isTold)
        {
            writeError({ExitCode::Success, summaryOf(exchange)}, false);
        }
    };
    connection_ = TessalyConnection::makeConnection(url_, user_, environment.password);
    configure(*connection_);
}

void Context::configure(rest::Connection& connection) const
{
    connection.setExtraCertificates(certificateFile_);
    connection.setDefaultTimeout(timeout_);
}

void Context::check(rest::RestReplyStatus const& status, Shape shape, std::size_t count) const
{
    auto const answers = answers_->takeFresh();
    checkStatus(status);
    auto const end = answers.begin() + static_cast<std::ptrdiff_t>(std::min(count, answers.size()));
    if (!std::all_of(answers.begin(), end, [shape](Answer const& answer) { return answer.has(shape); }))
    {
        throw Failure(
            ExitCode::NoConnection,
            u"%1 answered with something that the KELO service does not send; is the URL right?"_s.arg(
                url_.toDisplayString()),
            {.httpStatus = status.httpStatus});
    }
}

rest::RestReplyStatus Context::untoldStatus(Purpose purpose) const
{
    auto const answers = answers_->fresh();
    if (answers.empty())
    {
        throw unfinished();
    }
    auto status = answers.front().status;
    if (purpose == Purpose::Question)
    {
        // The hook knows exchanges only, and takes every POST for one that changes something.
        status.message = kelo::withoutMaybeProcessed(status.message);
    }
    return status;
}

Failure Context::unfinished() const
{
    return {ExitCode::NoConnection, u"The call to %1 was abandoned."_s.arg(url_.toDisplayString())};
}

void Context::recordSecrets() const
{
    if (trace_)
    {
        trace_->keepSecrets();
    }
}

std::function<void()> Context::traceWriter() const
{
    return [trace = trace_]
    {
        if (trace)
        {
            trace->write();
        }
    };
}

void Context::checkStatus(rest::RestReplyStatus const& status) const
{
    if (status.kind == 0)
    {
        return;
    }
    QString const service = url_.toDisplayString();
    if (status.kind == 1)
    {
        throw Failure(ExitCode::NoConnection, u"No answer from %1: %2"_s.arg(service, status.message));
    }
    if (status.httpStatus == 401)
    {
        QString const advice = user_.isEmpty() ? u"The service asks for a user name and password"_s
                                               : u"The service does not accept the user name or the password"_s;
        throw refusal(u"%1: %2"_s.arg(advice, kelo::errorMessage(status)), status);
    }
    if (kelo::errorCode(status) == KeloErrorCode::UnreadableError && status.message.isEmpty())
    {
        throw Failure(
            ExitCode::NoConnection,
            u"%1 answered with HTTP status %2 and no message of the KELO service; is the URL right?"_s.arg(service).arg(
                status.httpStatus),
            {.httpStatus = status.httpStatus});
    }
    throw refusal(kelo::errorMessage(status), status);
}

} // namespace cli
