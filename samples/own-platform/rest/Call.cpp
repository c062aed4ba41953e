#include "Call.h"

#include <limits>
#include <utility>

#include <QNetworkAccessManager>

#include "OneTimeBody.h"
#include "Trace.h"

namespace rest
{

namespace
{

constexpr int mostRedirects = 5;

/// Errors below this number are of the network or a proxy, the others tell an HTTP status in other words.
constexpr int firstErrorOfAnswers = 200;

bool wasNeverSent(int error)
{
    return error == QNetworkReply::ConnectionRefusedError || error == QNetworkReply::HostNotFoundError
           || error == QNetworkReply::SslHandshakeFailedError;
}

bool haveSameOrigin(QUrl const& one, QUrl const& other)
{
    int const defaultPort = one.scheme() == QLatin1String("https") ? 443 : 80;
    return one.scheme() == other.scheme() && one.host() == other.host()
           && one.port(defaultPort) == other.port(defaultPort);
}

/// As long as a timer can count.
int intervalFor(std::chrono::milliseconds timeout)
{
    constexpr std::chrono::milliseconds longest(std::numeric_limits<int>::max());
    return static_cast<int>(std::min(timeout, longest).count());
}

} // namespace

Call::Call(Exchange exchange, std::function<void(Outcome)> done)
    : exchange_(std::move(exchange)), done_(std::move(done))
{
    connect(&timer_, &QTimer::timeout, this, &Call::handleTimeout);
    timer_.setSingleShot(true);
    timer_.start(intervalFor(exchange_.timeout));
    start();
}

Call::~Call()
{
    reply_->disconnect(this);
    reply_->abort();
}

void Call::start()
{
    startTime_ = QDateTime::currentDateTimeUtc();
    reply_ = send();
    reply_->setParent(this);
    connect(reply_, &QNetworkReply::readyRead, this, &Call::read);
    connect(reply_, &QNetworkReply::finished, this, &Call::finish);
    connect(reply_, &QNetworkReply::uploadProgress, this, &Call::handleProgress);
    connect(reply_, &QNetworkReply::downloadProgress, this, &Call::handleProgress);
    connect(
        reply_, &QNetworkReply::requestSent, this,
        [this]
        {
            isSent_ = true;
            timer_.start(intervalFor(exchange_.timeout));
        });
}

QNetworkReply* Call::send()
{
    QNetworkAccessManager& manager = *exchange_.manager;
    switch (exchange_.method)
    {
    case HttpMethod::Put:
        return manager.put(exchange_.request, new OneTimeBody(exchange_.body, this));
    case HttpMethod::Post:
        return manager.post(exchange_.request, new OneTimeBody(exchange_.body, this));
    case HttpMethod::Get:
        break;
    }
    return manager.get(exchange_.request);
}

void Call::read()
{
    exchange_.sinceLastHeard->start();
    handleProgress();
    outcome_.body += reply_->readAll();
    if (outcome_.body.size() > exchange_.replySizeLimit)
    {
        fail(QNetworkReply::UnknownContentError, QStringLiteral("the answer is too large"));
    }
}

void Call::handleProgress()
{
    if (exchange_.isTransfer)
    {
        timer_.start(intervalFor(exchange_.timeout));
    }
}

void Call::handleTimeout()
{
    std::chrono::milliseconds const silence(
        exchange_.sinceLastHeard->isValid() ? exchange_.sinceLastHeard->elapsed() : exchange_.timeout.count());
    if (!isSent_ && silence < exchange_.timeout)
    {
        // It waits for its turn, and the service answers others.
        timer_.start(intervalFor(exchange_.timeout - silence));
        return;
    }
    fail(QNetworkReply::TimeoutError, QStringLiteral("it took longer than its time-out"));
}

void Call::fail(QNetworkReply::NetworkError error, QString const& text)
{
    outcome_.error = error;
    outcome_.errorText = text;
    // Emits `finished`.
    reply_->abort();
}

void Call::finish()
{
    if (outcome_.errorText.isEmpty() && isAnswered())
    {
        exchange_.sinceLastHeard->start();
        outcome_.httpStatus = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        outcome_.body += reply_->readAll();
    }
    else
    {
        if (outcome_.errorText.isEmpty())
        {
            outcome_.error = reply_->error();
            outcome_.errorText = outcome_.error == QNetworkReply::ContentReSendError
                                     ? QStringLiteral("the connection was lost")
                                     : reply_->errorString();
        }
        outcome_.errorText = sentence(outcome_.errorText);
        outcome_.body.clear();
    }
    outcome_.traces.push_back(traceOf(exchange_, outcome_, *reply_, startTime_));
    if (!follow())
    {
        timer_.stop();
        std::exchange(done_, nullptr)(std::move(outcome_));
    }
}

bool Call::isAnswered() const
{
    int const status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    int const error = reply_->error();
    // With a success there is no error of the answer's: its body could not be read.
    return error == 0 ? status != 0 : status >= 300 && error >= firstErrorOfAnswers;
}

bool Call::follow()
{
    QUrl const target = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    QUrl const url = exchange_.request.url().resolved(target);
    bool const isRead = exchange_.method == HttpMethod::Get;
    if (!isRead || target.isEmpty() || redirects_ == mostRedirects || !haveSameOrigin(url, exchange_.request.url()))
    {
        return false;
    }
    ++redirects_;
    exchange_.request.setUrl(url);
    outcome_.httpStatus = 0;
    outcome_.body.clear();
    reply_->disconnect(this);
    reply_->deleteLater();
    start();
    return true;
}

QString Call::sentence(QString const& what) const
{
    QString text = QStringLiteral("No answer from %1: %2.").arg(exchange_.request.url().host(), what);
    if (exchange_.method != HttpMethod::Get && !wasNeverSent(outcome_.error))
    {
        text += QStringLiteral(" The server may have processed the request.");
    }
    return text;
}

} // namespace rest
