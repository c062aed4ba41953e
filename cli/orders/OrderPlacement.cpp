#include "cli/orders/OrderPlacement.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QStringList>

#include <KeloCommunicationLib/connection/KeloErrors.h>

#include "cli/shell/Context.h"
#include "cli/shell/Interruption.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

QString command(OrderWish const& wish, Context const& context, QString const& more)
{
    QString const state = wish.statePath.isEmpty() ? QString() : " --state "_L1 + shellQuoted(wish.statePath);
    return u"kelo orders create %1 --files %2%3%4%5"_s.arg(
        shellQuoted(wish.orderFile), shellQuoted(wish.folder), state, more, context.givenOptions());
}

/// What is known of an order that the service has not answered as it should.
QString mayExist(OrderState const& state, OrderWish const& wish, Context const& context)
{
    QString const known =
        state.reference.isEmpty()
            ? u"The order was sent on %1, and no usable answer came: it may exist."_s.arg(
                state.sentAt.toString(Qt::ISODate))
            : u"The order %1 exists, but the answer does not tell where its files go."_s.arg(state.reference);
    return u"%1 It is not sent a second time by itself. Ask those who run the service before you order again: %2"_s.arg(
        known, wish.againCommand(context));
}

/// Whether the outcome says that the service has not created anything.
bool provesNothingCreated(Failure const& failure, TessalyConnectionInterface::Reply<OrderRequestResponse> const& future)
{
    if (future.isCanceled())
    {
        return false;
    }
    auto const status = future.get().status;
    // A server that failed, or one on the way that lost sight of it, may have created the order; one that was busy has
    // not.
    bool const isRefusal = status.httpStatus < 500 || status.httpStatus == 503;
    return (status.kind == 2 && failure.code() == ExitCode::ServiceError && isRefusal)
           || (status.kind == 1 && !status.message.contains(kelo::maybeProcessed));
}

/// Without this file only the message can tell where the files go.
void saveAnswer(OrderStateFile& stateFile, OrderState const& state, OrderWish const& wish, Context const& context)
{
    try
    {
        stateFile.save(state);
    }
    catch (Failure const& failure)
    {
        QStringList commands;
        for (auto const& slot : state.uploadSlots)
        {
            commands << u"kelo orders upload %1 %2%3"_s.arg(
                shellQuoted(slot.reference), shellQuoted(QDir(wish.folder).filePath(slot.file.getName())),
                context.givenOptions());
        }
        commands << u"kelo orders finish %1%2"_s.arg(shellQuoted(state.reference), context.givenOptions());
        throw failure.told(u"%1 - The order %2 exists. To go on with it: %3"_s.arg(
            failure.message(), state.reference, commands.join(" && "_L1)));
    }
}

} // namespace

QString OrderWish::resumeCommand(QString const& reference, Context const& context) const
{
    return command(*this, context, " --resume "_L1 + shellQuoted(reference));
}

QString OrderWish::againCommand(Context const& context) const
{
    QString const size = chunkSize == usualChunkSize ? QString() : u" --chunk-size %1"_s.arg(chunkSize);
    return command(*this, context, size + " --again"_L1);
}

OrderFileLock::OrderFileLock(QString const& orderFile)
    : descriptor_(::open(QFile::encodeName(orderFile).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
    // A file that cannot be opened, and a file system without locks, are not this one's matter.
    if (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
    {
        ::close(descriptor_);
        throw badInput(u"Another kelo is at work with \"%1\"."_s.arg(orderFile));
    }
}

OrderFileLock::~OrderFileLock()
{
    if (descriptor_ >= 0)
    {
        ::close(descriptor_);
    }
}

void refuseRepetition(
    OrderState const& former, QString const& fingerprint, OrderWish const& wish, Context const& context)
{
    if (wish.isAgain && (former.isFinished || !former.isAnswered))
    {
        return;
    }
    QString known;
    if (!former.isAnswered)
    {
        known = mayExist(former, wish, context);
    }
    else if (former.isFinished)
    {
        known = u"The order %1 is placed and finished. To order again: %2"_s.arg(
            former.reference, wish.againCommand(context));
    }
    else
    {
        known = u"The order %1 is not finished. To go on with it: %2"_s.arg(
            former.reference, wish.resumeCommand(former.reference, context));
    }
    bool const isOther = !former.fingerprint.isEmpty() && former.fingerprint != fingerprint;
    QString const whose = isOther ? u"\"%1\" tells of another order than \"%2\" and its files hold now"_s
                                  : u"\"%1\" tells what became of \"%2\""_s;
    throw badInput(u"%1: %2"_s.arg(whose.arg(wish.stateFile(), wish.orderFile), known));
}

QString howToGoOn(OrderState const& state, OrderWish const& wish, Context const& context)
{
    return u"The order %1 exists. Files that are up: %2; that are not: %3. To go on with it: %4"_s.arg(
        state.reference, fileNames(state, true), fileNames(state, false), wish.resumeCommand(state.reference, context));
}

OrderState placeOnce(
    OrderRequest const& request, std::optional<OrderState> const& former, OrderStateFile& stateFile,
    OrderWish const& wish, Context const& context)
{
    auto state = stateBeforeSending(request);
    try
    {
        stateFile.save(state);
    }
    catch (Failure const& failure)
    {
        throw failure.told(failure.message() + " - Nothing was ordered."_L1);
    }
    sayWhenInterrupted(mayExist(state, wish, context));
    auto const future = context.connection().createOrder(request);
    try
    {
        takeAnswer(state, request, context.valueOf(future));
    }
    catch (Failure const& failure)
    {
        if (provesNothingCreated(failure, future))
        {
            throw afterStep(
                failure.told(failure.message() + " - Nothing was ordered."_L1), [&] { stateFile.takeBack(former); });
        }
        throw afterStep(
            failure.told(u"%1 - %2"_s.arg(failure.message(), mayExist(state, wish, context))),
            [&] { stateFile.save(state); });
    }
    saveAnswer(stateFile, state, wish, context);
    return state;
}

} // namespace cli
