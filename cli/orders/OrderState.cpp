#include "cli/orders/OrderState.h"

#include <algorithm>

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include "cli/shell/Input.h"
#include "cli/shell/Outcome.h"
#include "cli/shell/StrictReader.h"

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
            {.key = u"OrderReference"_s},
            {.key = u"ProductionIdentifier"_s},
            {.key = u"Fingerprint"_s},
            {.key = u"SentAt"_s},
            {.key = u"Files"_s, .kind = ValueKind::List, .isRequired = true, .parts = {slot}},
            {.key = u"IsAnswered"_s, .kind = ValueKind::Boolean},
            {.key = u"IsFinished"_s, .kind = ValueKind::Boolean}}};
}

QJsonObject stateJson(OrderState const& state)
{
    QJsonArray files;
    std::transform(state.uploadSlots.begin(), state.uploadSlots.end(), std::back_inserter(files), slotJson);
    return {
        {u"Installation"_s, state.installation},
        {u"OrderReference"_s, state.reference},
        {u"ProductionIdentifier"_s, state.productionIdentifier},
        {u"Fingerprint"_s, state.fingerprint},
        {u"SentAt"_s, state.sentAt.toString(Qt::ISODateWithMs)},
        {u"Files"_s, files},
        {u"IsAnswered"_s, state.isAnswered},
        {u"IsFinished"_s, state.isFinished}};
}

/// What the service calls something, or nothing when it cannot be used.
QString usableReference(QString const& text)
{
    try
    {
        return identifier("reference", text);
    }
    catch (Failure const&)
    {
        return {};
    }
}

} // namespace

OrderState stateBeforeSending(OrderRequest const& request)
{
    return {
        .installation = request.getInstallationReference(),
        .fingerprint = fingerprintOf(request),
        .sentAt = QDateTime::currentDateTimeUtc()};
}

QString fingerprintOf(OrderRequest const& request)
{
    auto const json = QJsonDocument(jsonSerializer::describe(request)).toJson(QJsonDocument::Compact);
    return QString::fromLatin1(QCryptographicHash::hash(json, QCryptographicHash::Sha256).toHex());
}

void takeAnswer(OrderState& state, OrderRequest const& request, OrderRequestResponse const& created)
{
    state.reference = usableReference(created.getOrderReference());
    state.productionIdentifier = created.getProductionIdentifier();
    if (state.reference.isEmpty())
    {
        throw Failure(ExitCode::NoConnection, u"The service answered without an order reference that can be used."_s);
    }
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
            if (slot == open.end() || usableReference(slot->file.getReference()).isEmpty())
            {
                throw Failure(
                    ExitCode::NoConnection,
                    u"The service opened no upload slot for \"%1\"; nothing was uploaded."_s.arg(file.getName()));
            }
            state.uploadSlots.push_back({.reference = slot->file.getReference(), .file = file});
            open.erase(slot);
        }
    }
    state.isAnswered = true;
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

std::optional<OrderState> OrderStateFile::load() const
{
    if (!QFile::exists(path_))
    {
        return std::nullopt;
    }
    auto const json = readStrictly(path_, contentOf("order's state file", path_), formOfState());
    OrderState state{
        .installation = json[u"Installation"].toString(),
        .reference = json[u"OrderReference"].toString(),
        .productionIdentifier = json[u"ProductionIdentifier"].toString(),
        .fingerprint = json[u"Fingerprint"].toString(),
        .sentAt = QDateTime::fromString(json[u"SentAt"].toString(), Qt::ISODate),
        .isAnswered = json[u"IsAnswered"].toBool(true), // earlier versions wrote no other states
        .isFinished = json[u"IsFinished"].toBool()};
    for (auto const& slot : json[u"Files"].toArray())
    {
        state.uploadSlots.push_back(readSlot(slot.toObject()));
    }
    bool const isWhole = std::all_of(
        state.uploadSlots.begin(), state.uploadSlots.end(),
        [](OrderState::Slot const& slot) { return !slot.reference.isEmpty() && !slot.file.getName().isEmpty(); });
    if ((state.isAnswered && state.reference.isEmpty()) || !isWhole)
    {
        throw badInput(u"\"%1\" is not the state file of an order."_s.arg(path_));
    }
    return state;
}

void OrderStateFile::prepare()
{
    if (path_ == "-"_L1)
    {
        throw badInput(u"The order's state must be kept in a file: it will be read again."_s);
    }
    if (!file_)
    {
        file_.emplace("order's state file", path_);
    }
}

void OrderStateFile::save(OrderState const& state)
{
    prepare();
    file_->write(QJsonDocument(stateJson(state)).toJson());
}

void OrderStateFile::takeBack(std::optional<OrderState> const& former)
{
    former ? save(*former) : file_->remove();
}

} // namespace cli
