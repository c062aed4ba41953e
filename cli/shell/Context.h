#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

#include <QString>
#include <QUrl>

#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/rest/RestReply.h>
#include <platform/threading/Future.h>

#include "cli/shell/Answers.h"
#include "cli/shell/HarTrace.h"
#include "cli/shell/Outcome.h"
#include "cli/shell/Output.h"

namespace cli
{

/// What a call is for. A service that is asked again does no harm.
enum class Purpose : int
{
    Change,
    Question
};

/// The options that every command has. A null text was not given, and the environment's value counts.
struct CommonOptions
{
    QString url;
    QString user;
    QString password;
    QString installation;
    QString certificateFile;
    QString timeout;
    QString traceFile;
    bool json = false;
    bool verbose = false;
};

/// A service's address. Throws a Failure for one that cannot be used, with the advice if there is none; what may hold a
/// password is not repeated in the message.
QUrl serviceUrl(QString const& text, QString const& advice);

/// Where a command runs: the connection, the installation and the way results and failures are shown.
class Context
{
public:
    /// Checks the options and throws a Failure for the first mistake. Nothing is sent.
    explicit Context(CommonOptions const& options);

    /// For a command that needs no service: there is only the output, and what was given.
    static Context withoutService(CommonOptions const& options)
    {
        Context context{Output(options.json)};
        context.options_ = options;
        return context;
    }

    /// What was given on the command line; known without a service only.
    CommonOptions const& options() const { return options_; }

    TessalyConnection& connection() const { return *connection_; }

    QString const& installation() const { return installation_; }

    /// Who acts, in the bodies that name a user.
    QString const& user() const { return user_; }

    /// Whose certificates are trusted beside the system's; may be empty.
    QString const& certificateFile() const { return certificateFile_; }

    /// How long a call may take; 0 if nobody has said so.
    std::chrono::milliseconds timeout() const { return timeout_; }

    /// Gives a connection that a command makes itself the certificates to trust and the time-out.
    void configure(rest::Connection& connection) const;

    Output const& output() const { return output_; }

    /// Waits for the reply of a call and returns its value; throws a Failure when there is none. The reply must have
    /// the shape that its type tells, unless another is given.
    template <class T>
    T valueOf(threading::Future<rest::RestReply<T>> future, Shape shape = shapeOf<T>) const
    {
        finished(future);
        auto reply = std::move(future).take();
        check(reply.status, shape);
        if constexpr (!std::is_void_v<T>)
        {
            return std::move(reply.value);
        }
    }

    /// Waits until the call is finished; throws a Failure when it was abandoned.
    template <class T>
    threading::Future<T> const& finished(threading::Future<T> const& future) const
    {
        future.wait();
        if (future.isCanceled())
        {
            throw unfinished();
        }
        return future;
    }

    /// Throws a Failure unless a call has succeeded and the first `count` answers since the last check have that shape:
    /// a service that is not the wanted one must not pass for one without data.
    void check(rest::RestReplyStatus const& status, Shape shape, std::size_t count = 1) const;

    /// The status of an operation whose result has none: that of the first answer since the last check. Throws a
    /// Failure if there was none.
    rest::RestReplyStatus untoldStatus(Purpose purpose = Purpose::Question) const;

    /// The Failure of a call that ended without an outcome.
    Failure unfinished() const;

    /// Whether the service was asked for anything yet.
    bool hasAsked() const { return answers_->hasAny(); }

    /// The options with which this context would be made again, but for the password and the trace: words for a shell,
    /// each with a space before it.
    QString const& givenOptions() const { return givenOptions_; }

    /// The trace holds users' secrets, too; they are redacted unless this is called.
    void recordSecrets() const;

    /// Writes the trace, if one is wanted and it is not written yet; may be called by any thread and after this object
    /// is gone.
    std::function<void()> traceWriter() const;

private:
    explicit Context(Output output) : output_(output) {}

    template <class T>
    struct IsVector : std::false_type
    {
    };
    template <class T>
    struct IsVector<std::vector<T>> : std::true_type
    {
    };
    template <class T>
    static constexpr Shape shapeOf = std::is_void_v<T>    ? Shape::Anything
                                     : IsVector<T>::value ? Shape::List
                                                          : Shape::Object;

    void checkStatus(rest::RestReplyStatus const& status) const;

    CommonOptions options_;
    QUrl url_;
    QString user_;
    QString installation_;
    QString certificateFile_;
    std::chrono::milliseconds timeout_{0};
    QString givenOptions_;
    Output output_;
    std::shared_ptr<HarFile> trace_;
    std::shared_ptr<Answers> answers_ = std::make_shared<Answers>();
    std::unique_ptr<TessalyConnection> connection_;
};

} // namespace cli
