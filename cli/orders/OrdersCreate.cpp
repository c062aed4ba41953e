#include "cli/Commands.h"

#include <QFileInfo>
#include <QJsonObject>

#include "cli/orders/OrderCalls.h"
#include "cli/orders/OrderFile.h"
#include "cli/orders/OrderPlacement.h"
#include "cli/orders/OrderView.h"
#include "cli/shell/Arguments.h"
#include "cli/shell/Context.h"
#include "cli/shell/Failures.h"
#include "cli/shell/Input.h"
#include "cli/shell/Interruption.h"
#include "cli/shell/Listing.h"
#include "cli/shell/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

/// Shows at once what a person waits for; programs get one document at the end.
void tell(Context const& context, QString const& text)
{
    if (!context.output().isJson())
    {
        context.output().show({}, text);
    }
}

/// Sends what is not up yet, and notes in the state file what is.
void upload(OrderState& state, OrderStateFile& stateFile, OrderWish const& wish, Context const& context)
{
    qint64 bytes = 0;
    int files = 0;
    for (auto const& slot : state.uploadSlots)
    {
        bytes += slot.isUploaded ? 0 : slot.file.getSize();
        files += slot.isUploaded ? 0 : 1;
    }
    Progress progress(context.output(), u"Uploaded"_s, files, bytes);
    for (auto& slot : state.uploadSlots)
    {
        if (slot.isUploaded)
        {
            continue;
        }
        progress.begin(slot.file.getName());
        auto const file = announcedFile(slot.file, wish.folder);
        context.valueOf(context.connection().uploadOrderFile(slot.reference, file.bytes()));
        slot.isUploaded = true;
        stateFile.save(state);
        sayWhenInterrupted(howToGoOn(state, wish, context));
        progress.finish(slot.file.getSize());
    }
}

/// From the created order to its end. A failure tells how far the order has come and how it goes on.
void complete(OrderState& state, OrderStateFile& stateFile, OrderWish const& wish, Context const& context)
{
    sayWhenInterrupted(howToGoOn(state, wish, context));
    try
    {
        tell(
            context,
            u"Created the order %1 (%2)\n"_s.arg(printable(state.reference), printable(state.productionIdentifier)));
        upload(state, stateFile, wish, context);
        context.valueOf(context.connection().postFinishCadOrder(state.reference));
        state.isFinished = true;
        stateFile.save(state);
    }
    catch (Failure const& failure)
    {
        // A file that was there when the order was placed: no mistake in what was asked for.
        auto const code = failure.code() == ExitCode::BadInput ? ExitCode::FileFailed : failure.code();
        QString const known = state.isFinished ? u"The order %1 is placed and finished."_s.arg(state.reference)
                                               : howToGoOn(state, wish, context);
        throw failure.with(code).told(u"%1 - %2"_s.arg(failure.message(), known));
    }
    sayWhenInterrupted(u"The order %1 is placed and finished."_s.arg(state.reference));
}

void showEnd(OrderState const& state, std::vector<PriceInfoResponse> const& prices, Context const& context)
{
    if (!context.output().isJson())
    {
        context.output().showDone({}, u"Finished the order %1\n"_s.arg(printable(state.reference)));
    }
    std::vector<OrderDetails> status;
    try
    {
        status = orderStatus({state.reference}, context);
    }
    catch (Failure const& failure)
    {
        throw failure.told(u"%1 - Only its state could not be asked for: the order %2 is placed and finished."_s.arg(
            failure.message(), state.reference));
    }
    QJsonObject const json{
        {u"OrderReference"_s, state.reference},
        {u"ProductionIdentifier"_s, state.productionIdentifier},
        {u"Prices"_s, described(prices)},
        {u"Orders"_s, described(status)}};
    context.output().showDone(json, statusText(status));
}

/// The order with its files, as it would be sent.
OrderDraft draftOf(OrderWish const& wish, Context const& context)
{
    auto draft = readOrder(wish.orderFile, context);
    describeOrderFiles(draft, wish.folder, wish.chunkSize);
    return draft;
}

void create(OrderWish const& wish, Context const& context)
{
    OrderStateFile stateFile(wish.stateFile());
    auto const former = stateFile.load();
    // A mistake in the order counts only where nothing is known of a former one.
    std::optional<OrderDraft> draft;
    Failures mistakes;
    mistakes.attempt([&] { draft = draftOf(wish, context); });
    if (former)
    {
        refuseRepetition(*former, draft ? fingerprintOf(draft->request) : QString(), wish, context);
    }
    mistakes.raise(1, {});
    stateFile.prepare();
    auto const prices = pricesOf(*draft, context);
    tell(context, pricesText(prices));
    auto state = placeOnce(draft->request, former, stateFile, wish, context);
    complete(state, stateFile, wish, context);
    showEnd(state, prices, context);
}

void resume(QString const& reference, OrderWish const& wish, Context const& context)
{
    OrderStateFile stateFile(wish.stateFile());
    auto state = stateFile.load();
    if (!state || state->reference != reference || state->installation != context.installation())
    {
        throw badInput(
            u"\"%1\" tells nothing of the order %2 of %3."_s.arg(stateFile.path(), reference, context.installation()));
    }
    if (state->isFinished || !state->isAnswered)
    {
        throw badInput((state->isFinished ? u"The order %1 is finished already."_s
                                          : u"The service has not told where the files of the order %1 go."_s)
                           .arg(reference));
    }
    complete(*state, stateFile, wish, context);
    showEnd(*state, {}, context);
}

} // namespace

Action ordersCreate(Arguments& arguments)
{
    auto const file = arguments.requiredText("ORDER.json", "The order file; - is standard input", Offer::Kind::Files);
    auto const folder = arguments.text(
        "--files", "The folder of the order's files; the order file's own unless given", Offer::Kind::Folders);
    auto const reference = arguments.text("--resume", "Goes on with this unfinished order instead of creating one");
    auto const state = arguments.text(
        "--state", "Where the order's state is kept; ORDER.json.kelo-order unless given, and needed with -",
        Offer::Kind::Files);
    auto const chunkSize =
        arguments.number("--chunk-size", "The chunk size announced for the files; 1 MiB unless given", usualChunkSize);
    auto const again = arguments.flag(
        "--again", "Orders again though the state file tells of an order that is finished, or may exist");
    return [=](Context const& context)
    {
        // The state cannot be kept beside what is read only once.
        QFileInfo const place(*file);
        bool const isStream = isStandardInput(*file) || (place.exists() && !place.isFile());
        if (isStream && state->isEmpty())
        {
            throw badInput(u"Give --state: an order that comes from no file has no place for its state."_s);
        }
        OrderWish const wish{
            .orderFile = *file,
            .folder = !folder->isEmpty() ? *folder
                      : isStream         ? u"."_s
                                         : place.path(),
            .statePath = *state,
            .chunkSize = *chunkSize,
            .isAgain = *again};
        OrderFileLock const lock(isStream ? QFileInfo(*state).path() : wish.orderFile);
        if (reference->isNull())
        {
            create(wish, context);
        }
        else
        {
            resume(identifier("order reference", *reference), wish, context);
        }
    };
}

} // namespace cli
