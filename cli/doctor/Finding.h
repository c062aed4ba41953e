#pragma once

#include <QJsonObject>
#include <QString>

#include "cli/shell/Outcome.h"

namespace cli
{

enum class Verdict : int
{
    Ok,
    Warning,
    Failed,
    NotTried
};

/// What a check has found, in sentences that hold no secret: people send them around.
struct Finding
{
    Verdict verdict = Verdict::Ok;
    QString found;
    QString advice = {};                    ///< what to do about it, for somebody who knows no networks
    QJsonObject details = {};               ///< what is found once more, for programs
    ExitCode code = ExitCode::NoConnection; ///< the program's, if no check before this one has failed

    static Finding ok(QString const& found, QJsonObject const& details = {})
    {
        return {Verdict::Ok, found, {}, details};
    }

    static Finding warning(QString const& found, QString const& advice, QJsonObject const& details = {})
    {
        return {Verdict::Warning, found, advice, details};
    }

    static Finding failed(QString const& found, QString const& advice, ExitCode code = ExitCode::NoConnection)
    {
        return {Verdict::Failed, found, advice, {}, code};
    }

    static Finding notTried(QString const& reason) { return {Verdict::NotTried, reason}; }

    /// The same with these details.
    Finding with(QJsonObject const& more) const { return {verdict, found, advice, more, code}; }
};

} // namespace cli
