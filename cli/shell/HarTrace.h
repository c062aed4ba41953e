#pragma once

#include <mutex>
#include <vector>

#include <QString>

#include <platform/rest/TraceData.h>

#include "cli/shell/OutputFile.h"

namespace cli
{

/// The file of `--trace`, an HTTP archive, version 1.2: opened before anything is sent, so that a bad path costs
/// nothing, and complete or not there at all. Header values are redacted as in the trace, and so are the members of
/// JSON bodies that hold users' secrets; else bodies are in it as sent and received.
class HarFile
{
public:
    /// Throws a Failure when the file cannot be written.
    explicit HarFile(QString const& path);

    /// Keeps an exchange until the file is written; may be called from any thread.
    void add(rest::TraceData const& exchange);
    /// Secrets are recorded, too, because the user asked for them.
    void keepSecrets();

    /// Writes what there is, once: a later call does nothing. Throws a Failure when not all could be written. May be
    /// called from any thread.
    void write();

private:
    OutputFile file_;
    std::mutex writing_;
    bool isWritten_ = false;
    std::mutex mutex_;
    bool keepsSecrets_ = false;
    std::vector<rest::TraceData> exchanges_;
};

} // namespace cli
