#include "cli/OrderState.h"

#include <algorithm>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include "cli/Input.h"
#include "cli/Outcome.h"
#include "cli/StrictReader.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

struct OpenSlot
{
    QString article;
    OrderFile file;
};

std::vector<OpenSlot> openSlots(OrderRequestResponse const& created)
{
    std::vector<OpenSlot> all;
    auto const items = created.getFiles();
    for (auto const& item : items)
    {
        for (auto const& file : item.getFiles())
        {
            all.push_back({item.getArticleNumber(), file});
        }
    }
    return all;
}

QJsonObject slotJson(OrderState::Slot const& slot)
{
    auto json = jsonSerializer::describe(slot.file);
    json.insert(u"Reference"_s, slot.reference);
    json.insert(u"IsUploaded"_s, slot.isUploaded);
    return json;
}

OrderState::Slot readSlot(QJsonObject const& json)
{
    return {
        .reference = json[u"Reference"].toString(),
        .file = jsonSerializer::fromDescription<OrderFileInfo>(json),
        .isUploaded = json[u"IsUploaded"].toBool()};
}

/// As `save` writes it. Only what would do harm if it were not there is required.
Form formOfState()
{
    using jsonSerializer::ValueKind;
    Form slot = formOf(jsonSerializer::schemaOf<OrderFileInfo>());
    slot[u"Reference"].isRequired = true;
    slot[u"Name"].isRequired = true;
    slot[u"IsUploaded"].kind = ValueKind::Boolean;
    return {
        .kind = ValueKind::Record,
        .parts = {
            {.key = u"Installation"_s},
            {.key = u"OrderReference"_s, .isRequired = true},
            {.key = u"ProductionIdentifier"_s},
            {.key = u"Files"_s, .kind = ValueKind::List, .isRequired = true, .parts = {slot}},
            {.key = u"IsFinished"_s, .kind = ValueKind::Boolean}}};
}

Failure cannotWrite(QSaveFile const& file)
{
    return badInput(u"Cannot write the order's state file \"%1\": %2."_s.arg(file.fileName(), file.errorString()));
}

} // namespace

OrderState stateOfCreated(OrderRequest const& request, OrderRequestResponse const& created)
{
    OrderState state{
        .installation = request.getInstallationReference(),
        .reference = created.getOrderReference(),
        .productionIdentifier = created.getProductionIdentifier()};
    auto open = openSlots(created);
    auto const items = request.getOrderItems();
    for (auto const& item : items)
    {
        for (auto const& file : item.getFiles())
        {
            auto const slot = std::find_if(
                open.begin(), open.end(),
                [&](OpenSlot const& candidate)
                { return candidate.article == item.getArticleNumber() && candidate.file.getName() == file.getName(); });
            if (slot == open.end() || slot->file.getReference().isEmpty())
            {
                throw Failure(
                    ExitCode::NoConnection,
                    u"The order %1 exists, but the service opened no upload slot for \"%2\"; nothing was uploaded."_s
                        .arg(state.reference, file.getName()));
            }
            state.uploadSlots.push_back({.reference = slot->file.getReference(), .file = file});
            open.erase(slot);
        }
    }
    return state;
}

QString fileNames(OrderState const& state, bool isUploaded)
{
    QStringList names;
    for (auto const& slot : state.uploadSlots)
    {
        if (slot.isUploaded == isUploaded)
        {
            names << slot.file.getName();
        }
    }
    return names.isEmpty() ? u"none"_s : names.join(u", "_s);
}

bool OrderStateFile::exists() const
{
    return QFile::exists(path_);
}

OrderState OrderStateFile::load() const
{
    auto const json = readStrictly(path_, contentOf("order's state file", path_), formOfState());
    OrderState state{
        .installation = json[u"Installation"].toString(),
        .reference = json[u"OrderReference"].toString(),
        .productionIdentifier = json[u"ProductionIdentifier"].toString(),
        .isFinished = json[u"IsFinished"].toBool()};
    for (auto const& slot : json[u"Files"].toArray())
    {
        state.uploadSlots.push_back(readSlot(slot.toObject()));
    }
    bool const isWhole = std::all_of(
        state.uploadSlots.begin(), state.uploadSlots.end(),
        [](OrderState::Slot const& slot) { return !slot.reference.isEmpty() && !slot.file.getName().isEmpty(); });
    if (state.reference.isEmpty() || !isWhole)
    {
        throw badInput(u"\"%1\" is not the state file of an order."_s.arg(path_));
    }
    return state;
}

void OrderStateFile::prepare()
{
    prepared_ = std::make_unique<QSaveFile>(path_);
    if (!prepared_->open(QIODevice::WriteOnly))
    {
        throw cannotWrite(*prepared_);
    }
}

void OrderStateFile::save(OrderState const& state)
{
    QJsonArray files;
    std::transform(state.uploadSlots.begin(), state.uploadSlots.end(), std::back_inserter(files), slotJson);
    QJsonObject const json{
        {u"Installation"_s, state.installation},
        {u"OrderReference"_s, state.reference},
        {u"ProductionIdentifier"_s, state.productionIdentifier},
        {u"Files"_s, files},
        {u"IsFinished"_s, state.isFinished}};
    if (!prepared_)
    {
        prepare();
    }
    auto const file = std::move(prepared_);
    if (file->write(QJsonDocument(json).toJson()) < 0 || !file->commit())
    {
        throw cannotWrite(*file);
    }
}

} // namespace cli
