#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>

#include <QElapsedTimer>
#include <QString>
#include <QTimer>

#include <platform/rest/Progress.h>

namespace cli
{

class Output;

/// Tells how far a transfer of several files has come: a bar on standard error if that is a terminal, with the speed
/// and the time that is left; and a line on standard output for every file that is through, unless that is to be JSON.
/// The bar follows the bytes of the requests that are made between the beginning of a file and its end.
class Progress
{
public:
    Progress(Output const& output, QString const& verb, int files, qint64 bytes);
    ~Progress();
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    void begin(QString const& name);
    /// The file that was begun last is through.
    void finish(qint64 bytes);

private:
    void draw(qint64 bytesOfFile = 0);
    QString speedText(qint64 bytesDone);

    /// How much was through at a moment.
    struct Mark
    {
        qint64 milliseconds;
        qint64 bytes;
    };

    Output const& output_;
    QString verb_;
    int files_;
    qint64 bytes_;
    bool isTerminal_;
    QString name_;
    int filesDone_ = 0;
    qint64 bytesDone_ = 0;
    QElapsedTimer clock_;
    std::deque<Mark> marks_; ///< of the last seconds
    std::optional<rest::ProgressScope> watched_;
};

/// Tells on standard error, if that is a terminal, that something which takes longer than a second is still going on:
/// for as long as it lives, while its thread's event loop runs or one waits with `until`.
class Waiting
{
public:
    /// `text` is called in this object's thread, again and again.
    explicit Waiting(std::function<QString()> text);
    ~Waiting();
    Waiting(Waiting const&) = delete;
    Waiting& operator=(Waiting const&) = delete;

    template <class Future>
    Future const& until(Future const& future) const
    {
        while (!future.waitFor(interval))
        {
            draw();
        }
        return future;
    }

private:
    static constexpr std::chrono::milliseconds interval{1000};

    void draw() const;

    std::function<QString()> text_;
    QElapsedTimer clock_;
    QTimer timer_;
};

} // namespace cli
