#include <algorithm>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <KeloCommunicationLib/json/JsonSerializer.h>

#include "cli/orders/OrderFile.h"
#include "cli/orders/OrderState.h"
#include "cli/shell/Context.h"
#include "cli/shell/StrictReader.h"
#include "tests/fuzz/Fuzzing.h"

// The input is an order file, or an order's state file. Behind a line "=====" may stand the service's answer to the
// order.

namespace
{

using fuzz::require;
using namespace Qt::Literals::StringLiterals;

/// A folder with an order file, its state and two files to be sent.
class Desk
{
public:
    Desk()
    {
        require(folder_.isValid() && QDir(filesFolder()).mkpath(u"."_s), "a folder can be made");
        write(filesFolder() + u"/a.stl"_s, "solid a");
        write(filesFolder() + u"/b.stl"_s, QByteArray());
    }

    QString orderFile() const { return folder_.filePath(u"order.json"_s); }

    QString stateFile() const { return folder_.filePath(u"order.json.state"_s); }

    QString filesFolder() const { return folder_.filePath(u"files"_s); }

    cli::Context const& context() const { return context_; }

    static void write(QString const& path, QByteArray const& content)
    {
        QFile file(path);
        require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "a file can be written");
    }

private:
    QTemporaryDir folder_;
    cli::Context context_{cli::CommonOptions{
        .url = u"http://127.0.0.1:1"_s,
        .user = u"user"_s,
        .password = u"password"_s,
        .installation = u"I"_s,
        .certificateFile = {},
        .timeout = {},
        .traceFile = {}}};
};

Desk const& desk()
{
    static Desk const instance;
    return instance;
}

/// True if `action` has an end of its own; false if it ended with a message for the user.
template <class Action>
bool succeeds(Action const& action)
{
    try
    {
        action();
        return true;
    }
    catch (cli::Failure const& failure)
    {
        require(!failure.message().isEmpty(), "a mistake is told");
        return false;
    }
}

// ---- JSON ----------------------------------------------------------------------------------------------------------

qsizetype memberCount(QJsonValue const& value)
{
    qsizetype count = 0;
    if (value.isObject())
    {
        QJsonObject const object = value.toObject();
        count = object.size();
        for (QJsonValue const member : object)
        {
            count += memberCount(member);
        }
    }
    for (QJsonValue const element : value.toArray())
    {
        count += memberCount(element);
    }
    return count;
}

void checkStrictReading(QByteArray const& text)
{
    static cli::Form const form = cli::formOf(jsonSerializer::schemaOf<OrderRequest>());
    QJsonObject object;
    if (succeeds([&] { object = cli::readStrictly(u"f"_s, text, form); }))
    {
        // Qt takes one byte order mark for none.
        auto const plain = QByteArray(text).replace("\xEF\xBB\xBF", "");
        require(memberCount(object) == memberCount(QJsonDocument::fromJson(plain).object()), "no member gets lost");
    }
}

// ---- the order's state ---------------------------------------------------------------------------------------------

void requireSame(cli::OrderState const& one, cli::OrderState const& other)
{
    auto const isSameSlot = [](cli::OrderState::Slot const& first, cli::OrderState::Slot const& second)
    {
        return first.reference == second.reference && first.isUploaded == second.isUploaded
               && first.file.getName() == second.file.getName() && first.file.getSize() == second.file.getSize()
               && first.file.getCheckSum() == second.file.getCheckSum();
    };
    bool const isSame = one.installation == other.installation && one.reference == other.reference
                        && one.productionIdentifier == other.productionIdentifier
                        && one.fingerprint == other.fingerprint && one.sentAt == other.sentAt
                        && one.isAnswered == other.isAnswered && one.isFinished == other.isFinished
                        && std::equal(
                            one.uploadSlots.begin(), one.uploadSlots.end(), other.uploadSlots.begin(),
                            other.uploadSlots.end(), isSameSlot);
    require(isSame, "a state that was saved is loaded as it was");
}

void saveAndLoad(cli::OrderState const& state)
{
    cli::OrderStateFile file(desk().stateFile());
    file.save(state);
    auto const loaded = file.load();
    require(loaded.has_value(), "a state that was saved is there");
    requireSame(*loaded, state);
}

void checkState(QByteArray const& text)
{
    Desk::write(desk().stateFile(), text);
    std::optional<cli::OrderState> state;
    if (succeeds([&] { state = cli::OrderStateFile(desk().stateFile()).load(); }) && state)
    {
        saveAndLoad(*state);
        fileNames(*state, true);
    }
}

// ---- the order -----------------------------------------------------------------------------------------------------

void checkAnnouncedFiles(cli::OrderDraft const& draft)
{
    for (OrderItemInfo const& item : draft.request.getOrderItems())
    {
        for (OrderFileInfo const& file : item.getFiles())
        {
            require(
                QStringList({u"a.stl"_s, u"b.stl"_s}).contains(file.getName()), "only files of the folder are sent");
            require(
                cli::announcedFile(file, desk().filesFolder()).size() == file.getSize(),
                "a file has the size that was announced");
        }
    }
}

void checkOrder(QByteArray const& text, QByteArray const& answer)
{
    Desk::write(desk().orderFile(), text);
    cli::OrderDraft draft;
    if (!succeeds([&] { draft = cli::readOrder(desk().orderFile(), desk().context()); }))
    {
        return;
    }
    auto const items = draft.request.getOrderItems();
    require(!items.isEmpty(), "an order has items");
    require(static_cast<std::size_t>(items.size()) == draft.prices.orderItems.size(), "each item has a price request");
    jsonSerializer::toJson(draft.request);
    jsonSerializer::toJson(draft.prices);

    auto const created = jsonSerializer::fromJson<OrderRequestResponse>(QJsonDocument::fromJson(answer).object());
    auto state = cli::stateBeforeSending(draft.request);
    saveAndLoad(state);
    if (succeeds([&] { takeAnswer(state, draft.request, created); }))
    {
        saveAndLoad(state);
    }
    if (succeeds([&] { cli::describeOrderFiles(draft, desk().filesFolder(), 4); }))
    {
        checkAnnouncedFiles(draft);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const input(reinterpret_cast<char const*>(data), static_cast<qsizetype>(size));
    static QByteArray const marker("\n=====\n");
    qsizetype const end = input.indexOf(marker);
    QByteArray const text = end < 0 ? input : input.left(end);
    checkStrictReading(text);
    checkState(text);
    checkOrder(text, end < 0 ? QByteArray() : input.mid(end + marker.size()));
    return 0;
}
