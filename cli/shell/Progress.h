#pragma once

#include <optional>

#include <QString>

#include <platform/rest/Progress.h>

namespace cli
{

class Output;

/// Tells how far a transfer of several files has come: a bar on standard error if that is a terminal, else a line for
/// every file on standard output, unless that is to be JSON. The bar follows the bytes of the requests that are made
/// between the beginning of a file and its end.
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
    void draw(qint64 bytesOfFile = 0) const;

    Output const& output_;
    QString verb_;
    int files_;
    qint64 bytes_;
    bool isTerminal_;
    QString name_;
    int filesDone_ = 0;
    qint64 bytesDone_ = 0;
    std::optional<rest::ProgressScope> watched_;
};

} // namespace cli
