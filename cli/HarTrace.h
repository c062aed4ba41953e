#pragma once

#include <memory>
#include <vector>

#include <QJsonObject>
#include <QSaveFile>
#include <QString>

#include <platform/rest/TraceData.h>

namespace cli
{

/// The exchanges as an HTTP archive, version 1.2. Header values are redacted as in the trace; bodies are in it as sent
/// and received.
QJsonObject toHar(std::vector<rest::TraceData> const& exchanges);

/// The file of `--trace`: opened before anything is sent, so that a bad path costs nothing, and complete or not there
/// at all.
class HarFile
{
public:
    /// Throws a Failure when the file cannot be written.
    explicit HarFile(QString const& path);

    void write(std::vector<rest::TraceData> const& exchanges);

private:
    QSaveFile file_;
};

} // namespace cli
