#include "cli/shell/Progress.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <unistd.h>

#include <QLocale>

#include "cli/shell/Output.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int barWidth = 12;

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1);
}

QString durationText(qint64 seconds)
{
    return seconds < 100 ? u"%1 s"_s.arg(seconds)
                         : u"%1:%2 min"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QChar(u'0'));
}

bool isOnTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

} // namespace

Progress::Progress(Output const& output, QString const& verb, int files, qint64 bytes)
    : output_(output), verb_(verb), files_(files), bytes_(bytes), isTerminal_(isOnTerminal())
{
    clock_.start();
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
    if (!output_.isJson())
    {
        output_.showDone({}, u"%1 %2 (%3)\n"_s.arg(verb_, printable(name_), sizeText(bytes)));
    }
}

void Progress::draw(qint64 bytesOfFile)
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
    drawStatusLine(u"[%1%2] %3/%4 files, %5 of %6%7  %8"_s.arg(QString(filled, u'#'), QString(barWidth - filled, u'.'))
                       .arg(filesDone_)
                       .arg(files_)
                       .arg(sizeText(bytesDone), sizeText(bytes_), speedText(bytesDone), printable(name_)));
}

QString Progress::speedText(qint64 bytesDone)
{
    constexpr qint64 shortest = 1000;
    constexpr qint64 longest = 5000;
    Mark const now{clock_.elapsed(), bytesDone};
    marks_.push_back(now);
    while (now.milliseconds - marks_.front().milliseconds > longest)
    {
        marks_.pop_front();
    }
    qint64 const time = now.milliseconds - marks_.front().milliseconds;
    if (time < shortest || now.bytes <= marks_.front().bytes)
    {
        return {};
    }
    double const speed = static_cast<double>(now.bytes - marks_.front().bytes) * 1000 / static_cast<double>(time);
    return u", %1/s, %2 left"_s.arg(
        sizeText(static_cast<qint64>(speed)),
        durationText(static_cast<qint64>(std::ceil(static_cast<double>(bytes_ - bytesDone) / speed))));
}

Waiting::Waiting(std::function<QString()> text) : text_(std::move(text))
{
    clock_.start();
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { draw(); });
    timer_.start(interval);
}

Waiting::~Waiting()
{
    drawStatusLine({});
}

void Waiting::draw() const
{
    if (isOnTerminal())
    {
        drawStatusLine(u"%1, %2"_s.arg(text_(), durationText((clock_.elapsed() + 500) / 1000)));
    }
}

} // namespace cli
