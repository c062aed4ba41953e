#include "cli/shell/Progress.h"

#include <algorithm>

#include <unistd.h>

#include <QLocale>

#include "cli/shell/Output.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int barWidth = 24;

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1);
}

} // namespace

Progress::Progress(Output const& output, QString const& verb, int files, qint64 bytes)
    : output_(output), verb_(verb), files_(files), bytes_(bytes), isTerminal_(::isatty(STDERR_FILENO) == 1)
{
}

Progress::~Progress()
{
    drawStatusLine({});
}

void Progress::begin(QString const& name)
{
    name_ = name;
    draw();
    if (isTerminal_)
    {
        // Called by another thread while the one that holds this object waits for the transfer.
        watched_.emplace([this](rest::TransferProgress const& progress)
                         { draw(std::max(progress.sent, progress.received)); });
    }
}

void Progress::finish(qint64 bytes)
{
    watched_.reset();
    ++filesDone_;
    bytesDone_ += bytes;
    draw();
    if (!isTerminal_ && !output_.isJson())
    {
        output_.show({}, u"%1 %2 (%3)\n"_s.arg(verb_, printable(name_), sizeText(bytes)));
    }
}

void Progress::draw(qint64 bytesOfFile) const
{
    if (!isTerminal_)
    {
        return;
    }
    qint64 const bytesDone = std::min(bytesDone_ + bytesOfFile, bytes_);
    // Without a byte to send the files themselves are the measure.
    double const share = bytes_ > 0   ? static_cast<double>(bytesDone) / static_cast<double>(bytes_)
                         : files_ > 0 ? static_cast<double>(filesDone_) / files_
                                      : 1;
    int const filled = static_cast<int>(share * barWidth);
    drawStatusLine(u"[%1%2] %3/%4 files, %5 of %6  %7"_s.arg(QString(filled, u'#'), QString(barWidth - filled, u'.'))
                       .arg(filesDone_)
                       .arg(files_)
                       .arg(sizeText(bytesDone), sizeText(bytes_), printable(name_)));
}

} // namespace cli
