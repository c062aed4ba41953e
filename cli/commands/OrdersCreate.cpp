#include "cli/commands/Commands.h"

#include <QFileInfo>
#include <QJsonObject>

#include "cli/Arguments.h"
#include "cli/Context.h"
#include "cli/Input.h"
#include "cli/Listing.h"
#include "cli/OrderCalls.h"
#include "cli/OrderFile.h"
#include "cli/OrderState.h"
#include "cli/OrderView.h"
#include "cli/Progress.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

struct Wish
{
    QString orderFile;
    QString folder;
    QString statePath;
    int chunkSize = 0;

    QString resumeCommand(QString const& reference) const
    {
        return u"kelo orders create \"%1\" --files \"%2\" --resume %3%4"_s.arg(
            orderFile, folder, reference,
            statePath == defaultStatePath() ? QString() : u" --state \"%1\""_s.arg(statePath));
    }

    QString defaultStatePath() const { return orderFile + ".kelo-order"_L1; }
};

/// Shows at once what a person waits for; programs get one document at the end.
void tell(Context const& context, QString const& text)
{
    if (!context.output().isJson())
    {
        context.output().show({}, text);
    }
}

/// Sends what is not up yet, and notes in the state file what is.
void upload(OrderState& state, OrderStateFile& stateFile, Wish const& wish, Context const& context)
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
        progress.finish(slot.file.getSize());
    }
}

/// From the created order to its end. A failure tells how far the order has come and how it goes on.
void complete(OrderState& state, OrderStateFile& stateFile, Wish const& wish, Context const& context)
{
    try
    {
        upload(state, stateFile, wish, context);
        context.valueOf(context.connection().postFinishCadOrder(state.reference));
        state.isFinished = true;
        stateFile.save(state);
    }
    catch (Failure const& failure)
    {
        throw Failure(
            failure.code(),
            u"%1 - The order %2 exists. Files that are up: %3; that are not: %4. To go on with it: %5"_s.arg(
                failure.message(), state.reference, fileNames(state, true), fileNames(state, false),
                wish.resumeCommand(state.reference)));
    }
}

void showEnd(OrderState const& state, std::vector<PriceInfoResponse> const& prices, Context const& context)
{
    tell(context, u"Finished the order %1\n"_s.arg(printable(state.reference)));
    std::vector<OrderDetails> status;
    try
    {
        status = orderStatus({state.reference}, context);
    }
    catch (Failure const& failure)
    {
        throw Failure(
            failure.code(), u"%1 - Only its state could not be asked for: the order %2 is placed and finished."_s.arg(
                                failure.message(), state.reference));
    }
    QJsonObject const json{
        {u"OrderReference"_s, state.reference},
        {u"ProductionIdentifier"_s, state.productionIdentifier},
        {u"Prices"_s, described(prices)},
        {u"Orders"_s, described(status)}};
    context.output().show(json, statusText(status));
}

/// Whatever the answer was lost to, the order may be there: only an answer that refuses it says that it is not.
OrderRequestResponse createOnce(OrderRequest const& request, Context const& context)
{
    QString problem = u"The service answered without an order reference."_s;
    try
    {
        auto const created = context.valueOf(context.connection().createOrder(request));
        if (!created.getOrderReference().isEmpty())
        {
            return created;
        }
    }
    catch (Failure const& failure)
    {
        if (failure.code() != ExitCode::NoConnection)
        {
            throw;
        }
        problem = failure.message();
    }
    throw Failure(
        ExitCode::NoConnection,
        u"%1 - The order may exist. It was not sent a second time; ask the service before you order again."_s.arg(
            problem));
}

/// Without this file only the message could tell where the files go.
void saveFirst(OrderStateFile& stateFile, OrderState const& state)
{
    try
    {
        stateFile.save(state);
    }
    catch (Failure const& failure)
    {
        QStringList places;
        for (auto const& slot : state.uploadSlots)
        {
            places << u"%1 to %2"_s.arg(slot.file.getName(), slot.reference);
        }
        throw Failure(
            failure.code(),
            u"%1 - The order %2 exists. To go on with it: kelo orders upload %3, then kelo orders finish %2"_s.arg(
                failure.message(), state.reference, places.join(u", "_s)));
    }
}

void create(Wish const& wish, Context const& context)
{
    OrderStateFile stateFile(wish.statePath);
    if (stateFile.exists())
    {
        if (auto const earlier = stateFile.load(); !earlier.isFinished)
        {
            throw badInput(u"The order %1 of this file is not finished (see %2). To go on with it: %3"_s.arg(
                earlier.reference, stateFile.path(), wish.resumeCommand(earlier.reference)));
        }
    }
    auto draft = readOrder(wish.orderFile, context);
    describeOrderFiles(draft, wish.folder, wish.chunkSize);
    stateFile.prepare();
    auto const prices = pricesOf(draft, context);
    tell(context, pricesText(prices));
    auto const created = createOnce(draft.request, context);
    auto state = stateOfCreated(draft.request, created);
    saveFirst(stateFile, state);
    tell(
        context,
        u"Created the order %1 (%2)\n"_s.arg(printable(state.reference), printable(state.productionIdentifier)));
    complete(state, stateFile, wish, context);
    showEnd(state, prices, context);
}

void resume(QString const& reference, Wish const& wish, Context const& context)
{
    OrderStateFile stateFile(wish.statePath);
    auto state = stateFile.load();
    if (state.reference != reference || state.installation != context.installation())
    {
        throw badInput(u"\"%1\" tells of the order %2 of %3, not of %4 of %5."_s.arg(
            stateFile.path(), state.reference, state.installation, reference, context.installation()));
    }
    if (state.isFinished)
    {
        throw badInput(u"The order %1 is finished already."_s.arg(reference));
    }
    complete(state, stateFile, wish, context);
    showEnd(state, {}, context);
}

} // namespace

Action ordersCreate(Arguments& arguments)
{
    auto const file = arguments.requiredText("ORDER.json", "The order file");
    auto const folder = arguments.text("--files", "The folder of the order's files; the order file's own unless given");
    auto const reference = arguments.text("--resume", "Goes on with this unfinished order instead of creating one");
    auto const state = arguments.text("--state", "Where the order's state is kept; ORDER.json.kelo-order unless given");
    auto const chunkSize =
        arguments.number("--chunk-size", "The chunk size announced for the files; 1 MiB unless given", 1 << 20);
    return [=](Context const& context)
    {
        Wish wish{.orderFile = *file, .folder = *folder, .statePath = *state, .chunkSize = *chunkSize};
        wish.folder = wish.folder.isEmpty() ? QFileInfo(*file).path() : wish.folder;
        wish.statePath = wish.statePath.isEmpty() ? wish.defaultStatePath() : wish.statePath;
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
