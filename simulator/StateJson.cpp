#include "simulator/StateJson.h"

#include "simulator/Http.h"

#include <QJsonDocument>

namespace simulator
{

namespace
{

// ---- what each record is made of; the one list for both directions -----------------------------------------------

/// Bytes that are no text.
struct Binary
{
    QByteArray& bytes;
};

template <class Visitor>
void members(Visitor& visit, PartnerConnection& connection)
{
    visit("Id", connection.id);
    visit("Installation", connection.installation);
    visit("PartnerId", connection.partnerId);
    visit("Name", connection.name);
    visit("ZipCode", connection.zipCode);
    visit("IsInitiator", connection.isInitiator);
    visit("Status", connection.status);
}

template <class Visitor>
void members(Visitor& visit, Session& session)
{
    visit("Id", session.id);
    visit("Installation", session.installation);
    visit("ConnectionId", session.connectionId);
}

template <class Visitor>
void members(Visitor& visit, CollaborationFile& file)
{
    visit("Id", file.id);
    visit("Name", file.name);
    visit("FileType", file.fileType);
    visit("Size", file.size);
    visit("ChunkSize", file.chunkSize);
    visit("CreatedBy", file.createdBy);
    visit("IsOwn", file.isOwn);
    visit("IsUploaded", file.isUploaded);
    visit("IsSeen", file.isSeen);
}

template <class Visitor>
void members(Visitor& visit, Note& note)
{
    visit("Text", note.text);
    visit("CreatedAt", note.createdAt);
    visit("CreatedBy", note.createdBy);
    visit("IsOwn", note.isOwn);
}

template <class Visitor>
void members(Visitor& visit, Patient& patient)
{
    visit("Id", patient.id);
    visit("FirstName", patient.firstName);
    visit("LastName", patient.lastName);
    visit("DateOfBirth", patient.dateOfBirth);
    visit("Gender", patient.gender);
}

template <class Visitor>
void members(Visitor& visit, ImplantConnection& implant)
{
    visit("Id", implant.id);
    visit("Tooth", implant.tooth);
    visit("ManufacturerId", implant.manufacturerId);
    visit("Category", implant.category);
    visit("Size", implant.size);
}

template <class Visitor>
void members(Visitor& visit, Restoration& restoration)
{
    visit("FirstTooth", restoration.firstTooth);
    visit("LastTooth", restoration.lastTooth);
    visit("Type", restoration.type);
    visit("Material", restoration.material);
    visit("Color", restoration.color);
    visit("Note", restoration.note);
    visit("BarType", restoration.barType);
    visit("UseAuthenticProducts", restoration.useAuthenticProducts);
    visit("Implants", restoration.implants);
}

template <class Visitor>
void members(Visitor& visit, CollaborationRequest& request)
{
    visit("Id", request.id);
    visit("TransactionId", request.transactionId);
    visit("Key", request.key);
    visit("Installation", request.installation);
    visit("ConnectionId", request.connectionId);
    visit("Kind", request.kind);
    visit("Status", request.status);
    visit("Version", request.version);
    visit("Metadata", request.metadata);
    visit("DueDate", request.dueDate);
    visit("CreatedAt", request.createdAt);
    visit("FileIds", request.fileIds);
    visit("Notes", request.notes);
    visit("InternalCaseIdentifier", request.internalCaseIdentifier);
    visit("OrderReference", request.orderReference);
    visit("TreatingClinician", request.treatingClinician);
    visit("RequesterPatientReference", request.requesterPatientReference);
    visit("Patient", request.patient);
    visit("Restorations", request.restorations);
    visit("IsFileLocked", request.isFileLocked);
}

template <class Visitor>
void members(Visitor& visit, Collaboration& collaboration)
{
    visit("Connections", collaboration.connections);
    visit("Sessions", collaboration.sessions);
    visit("Requests", collaboration.requests);
    visit("Files", collaboration.files);
}

template <class Visitor>
void members(Visitor& visit, PortalCase& portalCase)
{
    visit("Id", portalCase.id);
    visit("Installation", portalCase.installation);
    visit("PatientId", portalCase.patientId);
    visit("Name", portalCase.name);
    visit("Status", portalCase.status);
    visit("CreatedBy", portalCase.createdBy);
    visit("CreatedAt", portalCase.createdAt);
    visit("SharedWith", portalCase.sharedWith);
    visit("Files", portalCase.files);
}

template <class Visitor>
void members(Visitor& visit, Article& article)
{
    visit("Id", article.id);
    visit("Installation", article.installation);
    visit("Cents", article.cents);
    visit("IsForTeeth", article.isForTeeth);
}

template <class Visitor>
void members(Visitor& visit, ShippingAddress& address)
{
    visit("Id", address.id);
    visit("Installation", address.installation);
    visit("Name", address.name);
    visit("Street", address.street);
    visit("PostalCode", address.postalCode);
    visit("City", address.city);
    visit("Region", address.region);
    visit("Country", address.country);
}

template <class Visitor>
void members(Visitor& visit, UploadSlot& slot)
{
    visit("Id", slot.id);
    visit("Name", slot.name);
    visit("Size", slot.size);
    visit("Md5", slot.md5);
    visit("ReceivedBytes", slot.receivedBytes);
    visit("Uploads", slot.uploads);
}

template <class Visitor>
void members(Visitor& visit, OrderItem& item)
{
    visit("ArticleNumber", item.articleNumber);
    visit("Quantity", item.quantity);
    visit("FirstTooth", item.firstTooth);
    visit("LastTooth", item.lastTooth);
    visit("Files", item.files);
}

template <class Visitor>
void members(Visitor& visit, Order& order)
{
    visit("Id", order.id);
    visit("ProductionIdentifier", order.productionIdentifier);
    visit("Kind", order.kind);
    visit("Installation", order.installation);
    visit("State", order.state);
    visit("Items", order.items);
    visit("Request", order.request);
}

template <class Visitor>
void members(Visitor& visit, Orders& orders)
{
    visit("Articles", orders.articles);
    visit("Addresses", orders.addresses);
    visit("Orders", orders.orders);
}

template <class Visitor>
void members(Visitor& visit, PartnerPlatform& platform)
{
    visit("Id", platform.id);
    visit("Installation", platform.installation);
    visit("Name", platform.name);
    visit("ShouldCreateConnection", platform.shouldCreateConnection);
    visit("ShouldAnonymize", platform.shouldAnonymize);
    visit("Logo", platform.logo);
}

template <class Visitor>
void members(Visitor& visit, PartnerAccount& account)
{
    visit("Id", account.id);
    visit("Installation", account.installation);
    visit("PartnerId", account.partnerId);
    visit("UserName", account.userName);
    visit("GivenName", account.givenName);
    visit("IsConnected", account.isConnected);
}

template <class Visitor>
void members(Visitor& visit, PartnerCase& partnerCase)
{
    visit("CaseId", partnerCase.caseId);
    visit("AccountId", partnerCase.accountId);
    visit("Installation", partnerCase.installation);
    visit("PatientId", partnerCase.patientId);
    visit("Status", partnerCase.status);
    visit("CreatedAt", partnerCase.createdAt);
    visit("AllowsUpdates", partnerCase.allowsUpdates);
    visit("PlatformCaseId", partnerCase.platformCaseId);
}

template <class Visitor>
void members(Visitor& visit, Partners& partners)
{
    visit("Platforms", partners.platforms);
    visit("CollaboratorLogos", partners.collaboratorLogos);
    visit("Accounts", partners.accounts);
    visit("Cases", partners.cases);
}

template <class Visitor>
void members(Visitor& visit, StatisticsUpload& upload)
{
    Binary data = {upload.data};
    visit("Type", upload.type);
    visit("Data", data);
    visit("ReceivedAt", upload.receivedAt);
}

/// Not the random numbers, which are drawn from only while a state is seeded.
template <class Visitor>
void members(Visitor& visit, State& state)
{
    visit("Now", state.now);
    visit("LastNumbers", state.lastNumbers);
    visit("Installations", state.installations);
    visit("Collaboration", state.collaboration);
    visit("Cases", state.cases);
    visit("Orders", state.orders);
    visit("Partners", state.partners);
    visit("Statistics", state.statistics);
}

struct AnyVisitor
{
    template <class Value>
    void operator()(char const* key, Value& value);
};

template <class Value>
concept Record = requires(AnyVisitor& visit, Value& value)
{
    members(visit, value);
};

template <class Value>
concept Enumeration = std::is_enum_v<Value>;

// ---- writing -------------------------------------------------------------------------------------------------------

class Writer
{
public:
    template <class Value>
    void operator()(char const* key, Value& value)
    {
        json_.insert(QLatin1String(key), write(value));
    }

    template <Record Value>
    static QJsonObject record(Value& value)
    {
        Writer writer;
        members(writer, value);
        return writer.json_;
    }

private:
    static QJsonValue write(bool value) { return value; }
    static QJsonValue write(int value) { return value; }
    static QJsonValue write(qint64 value) { return value; }
    static QJsonValue write(QString const& text) { return text; }
    static QJsonValue write(QStringList const& texts) { return QJsonArray::fromStringList(texts); }
    static QJsonValue write(QByteArray const& text) { return QString::fromLatin1(text); }
    static QJsonValue write(Binary const& data) { return QString::fromLatin1(data.bytes.toBase64()); }
    static QJsonValue write(QDate const& day) { return day.toString(Qt::ISODate); }
    static QJsonValue write(QDateTime const& time) { return time.toString(Qt::ISODateWithMs); }
    static QJsonValue write(QJsonArray const& array) { return array; }
    static QJsonValue write(QJsonObject const& object) { return object; }

    template <class Value>
    static QJsonValue write(QMap<QString, Value> const& map)
    {
        QJsonObject object;
        for (auto const& key : map.keys())
        {
            object.insert(key, write(map[key]));
        }
        return object;
    }
    template <class Element>
    static QJsonValue write(std::vector<Element>& list)
    {
        return writeList(list);
    }
    template <class Element>
    static QJsonValue write(IdList<Element>& list)
    {
        return writeList(list);
    }
    template <class List>
    static QJsonValue writeList(List& list)
    {
        QJsonArray array;
        for (auto& element : list)
        {
            array.append(record(element));
        }
        return array;
    }
    template <Enumeration Value>
    static QJsonValue write(Value value)
    {
        return static_cast<int>(value);
    }
    template <Record Value>
    static QJsonValue write(Value& value)
    {
        return record(value);
    }

    QJsonObject json_ = {};
};

// ---- reading -------------------------------------------------------------------------------------------------------

constexpr int lastOf(RequestKind)
{
    return static_cast<int>(RequestKind::Referral);
}
constexpr int lastOf(OrderKind)
{
    return static_cast<int>(OrderKind::CaseDesigner);
}
constexpr int lastOf(OrderState)
{
    return static_cast<int>(OrderState::Completed);
}

void require(bool fits, Reason reason, QString const& place, QString const& why)
{
    if (!fits)
    {
        throw Refusal(reason, place + (place.isEmpty() ? "" : ": ") + why);
    }
}

class Reader
{
public:
    template <class Value>
    void operator()(char const* key, Value& value)
    {
        known_ << QLatin1String(key);
        if (auto const json = json_.value(known_.last()); !json.isUndefined())
        {
            read(json, value, place_ + (place_.isEmpty() ? "" : ".") + known_.last());
        }
    }

    template <Record Value>
    static void record(QJsonValue const& json, Value& value, QString const& place)
    {
        require(json.isObject(), Reason::WrongType, place, "an object is wanted");
        Reader reader(json.toObject(), place);
        members(reader, value);
        for (auto const& key : reader.json_.keys())
        {
            require(reader.known_.contains(key), Reason::UnknownMember, place, key);
        }
    }

private:
    Reader(QJsonObject json, QString place) : json_(std::move(json)), place_(std::move(place)) {}

    static void read(QJsonValue const& json, bool& value, QString const& place)
    {
        require(json.isBool(), Reason::WrongType, place, "true or false is wanted");
        value = json.toBool();
    }
    static void read(QJsonValue const& json, qint64& value, QString const& place)
    {
        auto const isWhole = json.toInteger(0) == json.toInteger(1);
        require(json.isDouble() && isWhole, Reason::WrongType, place, "an integer is wanted");
        value = json.toInteger();
    }
    static void read(QJsonValue const& json, int& value, QString const& place)
    {
        qint64 number = 0;
        read(json, number, place);
        require(number == static_cast<int>(number), Reason::BadValue, place, QString::number(number));
        value = static_cast<int>(number);
    }
    static void read(QJsonValue const& json, QString& text, QString const& place)
    {
        require(json.isString(), Reason::WrongType, place, "a text is wanted");
        text = json.toString();
    }
    static void read(QJsonValue const& json, QByteArray& text, QString const& place)
    {
        QString whole;
        read(json, whole, place);
        text = whole.toLatin1();
    }
    static void read(QJsonValue const& json, Binary& data, QString const& place)
    {
        QByteArray text;
        read(json, text, place);
        auto const decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
        require(static_cast<bool>(decoded), Reason::BadValue, place, "base64 is wanted");
        data.bytes = decoded.decoded;
    }
    static void read(QJsonValue const& json, QDate& day, QString const& place)
    {
        day = QDate::fromString(json.toString(), Qt::ISODate);
        require(day.isValid() || json == QJsonValue(""), Reason::WrongType, place, "a day as YYYY-MM-DD is wanted");
    }
    static void read(QJsonValue const& json, QDateTime& time, QString const& place)
    {
        time = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
        require(time.isValid() || json == QJsonValue(""), Reason::WrongType, place, "a time in ISO form is wanted");
    }
    static void read(QJsonValue const& json, QJsonObject& object, QString const& place)
    {
        require(json.isObject(), Reason::WrongType, place, "an object is wanted");
        object = json.toObject();
    }
    static void read(QJsonValue const& json, QJsonArray& array, QString const& place)
    {
        require(json.isArray(), Reason::WrongType, place, "a list is wanted");
        array = json.toArray();
    }
    static void read(QJsonValue const& json, QStringList& texts, QString const& place)
    {
        readList(
            json, place,
            [&texts](QJsonValue const& element, QString const& at)
            {
                QString text;
                read(element, text, at);
                texts << text;
            });
    }
    template <class Value>
    static void read(QJsonValue const& json, QMap<QString, Value>& map, QString const& place)
    {
        QJsonObject object;
        read(json, object, place);
        for (auto const& key : object.keys())
        {
            read(object[key], map[key], place + '.' + key);
        }
    }
    template <class Element>
    static void read(QJsonValue const& json, std::vector<Element>& list, QString const& place)
    {
        readList(
            json, place,
            [&list](QJsonValue const& element, QString const& at) { record(element, list.emplace_back(), at); });
    }
    template <class Element>
    static void read(QJsonValue const& json, IdList<Element>& list, QString const& place)
    {
        readList(
            json, place,
            [&list](QJsonValue const& item, QString const& at)
            {
                Element element;
                record(item, element, at);
                require(!element.id.isEmpty(), Reason::MissingMember, at, "Id");
                require(!list.contains(element.id), Reason::BadValue, at, element.id + " is there twice");
                list.add(std::move(element));
            });
    }
    template <class ReadElement>
    static void readList(QJsonValue const& json, QString const& place, ReadElement readElement)
    {
        QJsonArray array;
        read(json, array, place);
        for (qsizetype at = 0; at < array.size(); ++at)
        {
            readElement(array.at(at), QStringLiteral("%1[%2]").arg(place).arg(at));
        }
    }
    template <Enumeration Value>
    static void read(QJsonValue const& json, Value& value, QString const& place)
    {
        int number = 0;
        read(json, number, place);
        auto const fits = number >= 0 && number <= lastOf(value);
        require(fits, Reason::BadValue, place, QStringLiteral("from 0 to %1").arg(lastOf(value)));
        value = static_cast<Value>(number);
    }
    template <Record Value>
    static void read(QJsonValue const& json, Value& value, QString const& place)
    {
        record(json, value, place);
    }

    QJsonObject const json_;
    QString const place_;
    QStringList known_ = {};
};

// ---- what holds a state together -----------------------------------------------------------------------------------

/// Calls for each element, with its place.
template <class List, class Check>
void each(char const* place, List const& list, Check check)
{
    auto number = 0;
    for (auto const& element : list)
    {
        check(element, QStringLiteral("%1[%2]").arg(QLatin1String(place)).arg(number++));
    }
}

void checkReference(bool isKnown, QString const& place, QString const& id)
{
    require(isKnown, Reason::UnknownReference, place, id);
}

template <class List>
void checkInstallations(State const& state, char const* place, List const& list)
{
    each(
        place, list,
        [&state](auto const& element, QString const& at) {
            checkReference(
                state.installations.contains(element.installation), at + ".Installation", element.installation);
        });
}

/// Whether the list, in which ids are unique within an installation only, has this one.
template <class List>
bool has(List const& list, QString const& installation, QString const& id)
{
    return std::any_of(
        list.begin(), list.end(),
        [&](auto const& element) { return element.id == id && element.installation == installation; });
}

void checkCollaboration(State const& state)
{
    auto const& [connections, sessions, requests, files] = state.collaboration;
    checkInstallations(state, "Collaboration.Connections", connections);
    checkInstallations(state, "Collaboration.Sessions", sessions);
    checkInstallations(state, "Collaboration.Requests", requests);
    auto const checkConnection = [&connections = connections](auto const& element, QString const& at)
    {
        auto const isKnown = element.connectionId.isEmpty() || connections.contains(element.connectionId);
        checkReference(isKnown, at + ".ConnectionId", element.connectionId);
    };
    each("Collaboration.Sessions", sessions, checkConnection);
    each("Collaboration.Requests", requests, checkConnection);
    each(
        "Collaboration.Requests", requests,
        [&files = files](CollaborationRequest const& request, QString const& at)
        {
            for (auto const& id : request.fileIds)
            {
                checkReference(files.contains(id), at + ".FileIds", id);
            }
        });
    each(
        "Collaboration.Connections", connections,
        [](PartnerConnection const& connection, QString const& at)
        {
            auto const last = static_cast<int>(connectionStatusTexts.size()) - 1;
            auto const fits = connection.status >= 0 && connection.status <= last;
            require(fits, Reason::BadValue, at + ".Status", QStringLiteral("from 0 to %1").arg(last));
        });
}

void checkOrders(State const& state)
{
    auto const& [articles, addresses, orders] = state.orders;
    checkInstallations(state, "Orders.Articles", articles);
    checkInstallations(state, "Orders.Addresses", addresses);
    checkInstallations(state, "Orders.Orders", orders);
    each(
        "Orders.Orders", orders,
        [&articles = articles](Order const& order, QString const& at)
        {
            for (auto const& item : order.items)
            {
                auto const isKnown = has(articles, order.installation, item.articleNumber);
                checkReference(isKnown, at + ".Items", item.articleNumber);
            }
        });
}

void checkPartners(State const& state)
{
    auto const& partners = state.partners;
    checkInstallations(state, "Partners.Platforms", partners.platforms);
    checkInstallations(state, "Partners.Accounts", partners.accounts);
    checkInstallations(state, "Partners.Cases", partners.cases);
    each(
        "Partners.Accounts", partners.accounts,
        [&partners](PartnerAccount const& account, QString const& at)
        {
            auto const isKnown = has(partners.platforms, account.installation, account.partnerId);
            checkReference(isKnown, at + ".PartnerId", account.partnerId);
        });
    each(
        "Partners.Cases", partners.cases,
        [&state](PartnerCase const& partnerCase, QString const& at)
        {
            checkReference(state.cases.contains(partnerCase.caseId), at + ".CaseId", partnerCase.caseId);
            auto const isKnown = state.partners.accounts.contains(partnerCase.accountId);
            checkReference(isKnown, at + ".AccountId", partnerCase.accountId);
        });
}

/// Lest an id be given out that somebody has written into the state.
void raiseLastNumber(State& state, QString const& id)
{
    auto const prefix = id.section('-', 0, -2);
    auto const number = id.section('-', -1).toInt();
    if (!prefix.isEmpty() && number > state.lastNumbers.value(prefix) && id == idOf(prefix, number))
    {
        state.lastNumbers[prefix] = number;
    }
}

void raiseLastNumbers(State& state)
{
    auto const raiseAll = [&state](auto const& list)
    {
        for (auto const& element : list)
        {
            raiseLastNumber(state, element.id);
        }
    };
    raiseAll(state.collaboration.connections);
    raiseAll(state.collaboration.sessions);
    raiseAll(state.collaboration.requests);
    raiseAll(state.collaboration.files);
    raiseAll(state.cases);
    raiseAll(state.orders.orders);
    for (auto const& request : state.collaboration.requests)
    {
        raiseLastNumber(state, request.transactionId);
        raiseLastNumber(state, request.orderReference);
    }
    for (auto const& order : state.orders.orders)
    {
        for (auto const& item : order.items)
        {
            raiseAll(item.files);
        }
    }
}

} // namespace

QJsonObject toJson(State const& state)
{
    // The list of members serves both directions, and the writer changes nothing.
    return Writer::record(const_cast<State&>(state));
}

State stateFromText(QByteArray const& text)
{
    QJsonParseError error;
    auto const document = QJsonDocument::fromJson(text, &error);
    auto const line = text.left(error.offset).count('\n') + 1;
    require(document.isObject(), Reason::MalformedBody, QStringLiteral("line %1").arg(line), error.errorString());
    State state;
    Reader::record(document.object(), state, {});
    require(state.now.isValid(), Reason::MissingMember, {}, "Now");
    checkCollaboration(state);
    checkInstallations(state, "Cases", state.cases);
    checkOrders(state);
    checkPartners(state);
    raiseLastNumbers(state);
    return state;
}

} // namespace simulator
