#include <KeloCommunicationLib/json/internal/TextReader.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <tuple>

#include <simdjson.h>

#include <KeloCommunicationLib/json/JsonSerializer.h>

namespace jsonSerializer::implementation
{

namespace
{

namespace ondemand = simdjson::ondemand;

/// Leaves what is out of the ordinary to the document.
void require(bool isOrdinary)
{
    if (!isOrdinary)
    {
        throw simdjson::simdjson_error(simdjson::UNEXPECTED_ERROR);
    }
}

bool contains(std::string_view text, char character)
{
    return std::memchr(text.data(), character, text.size()) != nullptr;
}

/// The members of one object: those of the record with those of embedded records.
class Members
{
public:
    struct Member
    {
        Field const* field;
        void* owner;
        std::size_t size; ///< of the key
    };

    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): only the first `size_` members are ever looked at
    Members(void* record, Table table) { add(record, table); }

    /// The member whose key begins here, or null for one that the record does not have. The next row's is tried first:
    /// services write members in one order. A key that comes twice is for the document: the last one counts, even if
    /// it is null.
    Member const* find(char const* key)
    {
        if (next_ < size_ && isKey(members_[next_], key))
        {
            return take(next_);
        }
        for (std::size_t at = 0; at < size_; ++at)
        {
            if (isKey(members_[at], key))
            {
                return take(at);
            }
        }
        return nullptr;
    }

private:
    static constexpr std::size_t capacity = 64;

    void add(void* record, Table table)
    {
        for (Field const& field : table)
        {
            if (field.isEmbedded())
            {
                auto const addPart = [&](void* part) { add(part, field.type->rows); };
                field.change(record, addPart);
            }
            else
            {
                require(size_ < capacity);
                members_[size_++] = {&field, record, static_cast<std::size_t>(field.key.size())};
            }
        }
    }

    /// May look at as many bytes behind the text as a key can have; the padding is longer.
    static bool isKey(Member const& member, char const* key)
    {
        static_assert(std::tuple_size_v<decltype(Field::keyBytes)> <= simdjson::SIMDJSON_PADDING);
        char const* const own = member.field->keyBytes.data();
        return key[member.size] == '"' && isEqual(key, own, member.size);
    }

    /// Word by word: to call a function for each of these few bytes takes longer than to compare them.
    static bool isEqual(char const* left, char const* right, std::size_t size)
    {
        if (size < sizeof(std::uint64_t))
        {
            std::size_t same = 0;
            while (same < size && left[same] == right[same])
            {
                ++same;
            }
            return same == size;
        }
        // The last word ends where the text ends, so it may overlap the one before.
        for (std::size_t at = 0; at < size; at += sizeof(std::uint64_t))
        {
            std::size_t const from = std::min(at, size - sizeof(std::uint64_t));
            if (wordAt(left + from) != wordAt(right + from))
            {
                return false;
            }
        }
        return true;
    }

    static std::uint64_t wordAt(char const* bytes)
    {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, sizeof(word));
        return word;
    }

    Member const* take(std::size_t at)
    {
        require(!seen_[at]);
        seen_[at] = true;
        next_ = at + 1;
        return &members_[at];
    }

    std::array<Member, capacity> members_;
    std::bitset<capacity> seen_;
    std::size_t size_ = 0;
    std::size_t next_ = 0;
};

/// As deep as any reply is; the document goes deeper.
constexpr int deepest = 128;

/// Whether a long text begins deeper than any reply is: to index all of it would take several times its size.
bool beginsTooDeep(QByteArray const& text)
{
    constexpr qsizetype longText = 65536;
    int depth = 0;
    int most = 0;
    for (char const character : text.size() < longText ? QByteArrayView() : QByteArrayView(text).first(longText))
    {
        depth += character == '[' || character == '{' ? 1 : character == ']' || character == '}' ? -1 : 0;
        most = std::max(most, depth);
    }
    return most > deepest;
}

/// Walks a text once, in its order, and leaves nothing unlooked at: what is not JSON anywhere is not JSON at all.
class TextReader
{
public:
    explicit TextReader(QByteArray const& text) : end_(text.constEnd()) {}

    void readWhole(ondemand::document& document, Type const& type, void* target)
    {
        ondemand::json_type const is = document.type();
        if (is == ondemand::json_type::array)
        {
            require(type.kind == ValueKind::List);
            readElements(document.get_array(), type, target);
        }
        else
        {
            require(is == ondemand::json_type::object);
            type.kind == ValueKind::List ? readOnlyMember(document.get_object(), type, target)
                                         : readMembers(document.get_object(), type.rows, target);
        }
        require(document.current_location().error() == simdjson::OUT_OF_BOUNDS);
    }

private:
    static constexpr std::size_t sampleSize = 32;

    template <class Result>
    static auto& checked(Result& result)
    {
        require(result.error() == simdjson::SUCCESS);
        return result.value_unsafe();
    }

    class Level
    {
    public:
        explicit Level(int& depth) : depth_(depth) { require(++depth_ <= deepest); }
        Level(Level const&) = delete;
        Level& operator=(Level const&) = delete;
        ~Level() { --depth_; }

    private:
        int& depth_;
    };

    void read(ondemand::value& json, Type const& type, void* target)
    {
        ondemand::json_type const is = json.type();
        if (type.kind == ValueKind::Record && is == ondemand::json_type::object)
        {
            readMembers(json.get_object(), type.rows, target);
        }
        else if (type.kind == ValueKind::List)
        {
            type.clear(target);
            is == ondemand::json_type::array ? readElements(json.get_array(), type, target) : pass(json);
        }
        else
        {
            Scalar scalar;
            take(json, is, scalar);
            if (type.kind != ValueKind::Record)
            {
                type.read(target, scalar);
            }
        }
    }

    void readMembers(ondemand::object object, Table table, void* record)
    {
        Level const level(depth_);
        Members members(record, table);
        for (auto result : object)
        {
            ondemand::field& field = checked(result);
            Members::Member const* const member = members.find(field.key().raw());
            if (member == nullptr)
            {
                passKey(field);
            }
            ondemand::value& json = field.value();
            if (member == nullptr || member->field->change == nullptr || json.type() == ondemand::json_type::null)
            {
                pass(json);
            }
            else
            {
                readMember(json, *member->field, member->owner);
            }
        }
    }

    void readMember(ondemand::value& json, Field const& field, void* owner)
    {
        if (field.address != nullptr)
        {
            read(json, *field.type, field.address(owner));
            return;
        }
        auto const readIt = [&](void* target) { read(json, *field.type, target); };
        field.change(owner, readIt);
    }

    void readElements(ondemand::array array, Type const& list, void* target)
    {
        Level const level(depth_);
        std::size_t count = 0;
        char const* first = nullptr;
        for (auto result : array)
        {
            ondemand::value& element = checked(result);
            if (depth_ == 1 && count <= sampleSize)
            {
                char const* const here = element.raw_json_token().data();
                first = count == 0 ? here : first;
                if (count == sampleSize)
                {
                    reserveLike(first, here, list, target);
                }
                ++count;
            }
            read(element, *list.items, list.append(target));
        }
    }

    /// Growing in steps costs a long list as much as reading it. Makes room for as many elements as the whole text has
    /// if they are like the first ones, but for no more than the text is long.
    void reserveLike(char const* first, char const* here, Type const& list, void* target) const
    {
        auto const length = static_cast<std::size_t>(end_ - first);
        auto const sample = static_cast<std::size_t>(here - first);
        std::size_t const count = length / sample * sampleSize + length % sample * sampleSize / sample + 1;
        list.reserve(target, std::min(count, length / list.entrySize));
    }

    /// A list as the one member of an object, whatever its key. The document warns of any other object.
    void readOnlyMember(ondemand::object object, Type const& list, void* target)
    {
        int count = 0;
        for (auto result : object)
        {
            ondemand::field& field = checked(result);
            require(++count == 1);
            passKey(field);
            readElements(field.value().get_array(), list, target);
        }
        require(count == 1);
    }

    /// The value if it is a scalar; one of any other type is passed.
    void take(ondemand::value& json, ondemand::json_type is, Scalar& scalar)
    {
        switch (is)
        {
        case ondemand::json_type::string:
            scalar.is = Scalar::Is::Text;
            scalar.text = textOf(json);
            break;
        case ondemand::json_type::boolean:
            scalar.is = Scalar::Is::Boolean;
            scalar.boolean = json.get_bool();
            break;
        case ondemand::json_type::number:
            takeNumber(json, scalar);
            break;
        default:
            pass(json);
        }
    }

    static void takeNumber(ondemand::value& json, Scalar& scalar)
    {
        constexpr double limit = 9223372036854775808.0; // 2^63
        std::string_view const token = json.raw_json_token();
        ondemand::number const number = json.get_number();
        scalar.is = Scalar::Is::Integer;
        if (number.is_int64())
        {
            scalar.integer = number.get_int64();
            scalar.number = static_cast<double>(scalar.integer);
            return;
        }
        scalar.number = number.as_double();
        if (std::abs(scalar.number) < DBL_MIN)
        {
            // Zero, or so small that it becomes zero or loses digits: that is no number for the document.
            require(token.substr(0, token.find_first_of("eE")).find_first_of("123456789") == std::string_view::npos);
            scalar.number = 0;
        }
        else if (scalar.number >= -limit && scalar.number < limit && std::trunc(scalar.number) == scalar.number)
        {
            scalar.integer = static_cast<qint64>(scalar.number);
        }
        else
        {
            scalar.is = Scalar::Is::Number;
        }
    }

    QString textOf(ondemand::value& json) const
    {
        std::string_view const token = json.raw_json_token();
        std::string_view text;
        if (contains(token, '\\'))
        {
            text = json.get_string();
        }
        else
        {
            json.get_raw_json_string().error();
            std::size_t const quote = token.find_last_not_of(" \t\r\n");
            require(quote != 0 && token[quote] == '"');
            text = token.substr(1, quote - 1);
        }
        // Qt takes it for a byte order mark in one of its two ways from bytes to text.
        require(text.substr(0, 3) != "\xEF\xBB\xBF");
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }

    /// Goes through a key that is none of the record's. What one with escapes says, and whether they are valid, is for
    /// the document.
    void passKey(ondemand::field& field) const
    {
        char const* const begin = field.key().raw();
        auto const* const quote =
            static_cast<char const*>(std::memchr(begin, '"', static_cast<std::size_t>(end_ - begin)));
        require(quote != nullptr);
        require(!contains({begin, static_cast<std::size_t>(quote - begin)}, '\\'));
    }

    /// Goes through a value that nobody wants.
    void pass(ondemand::value& json)
    {
        Level const level(depth_);
        switch (ondemand::json_type const is = json.type(); is)
        {
        case ondemand::json_type::array:
            for (auto result : json.get_array())
            {
                ondemand::value& element = checked(result);
                pass(element);
            }
            break;
        case ondemand::json_type::object:
            for (auto result : json.get_object())
            {
                ondemand::field& field = checked(result);
                passKey(field);
                pass(field.value());
            }
            break;
        case ondemand::json_type::null:
            require(json.is_null());
            break;
        default:
            Scalar unwanted;
            take(json, is, unwanted);
        }
    }

    char const* end_;
    int depth_ = 0;
};

} // namespace

bool readText(Type const& type, void* value, QByteArray const& text)
{
    if (beginsTooDeep(text))
    {
        return false;
    }
    auto const size = static_cast<std::size_t>(text.size());
    if (static_cast<std::size_t>(text.capacity()) < size + simdjson::SIMDJSON_PADDING)
    {
        QByteArray padded;
        padded.reserve(text.size() + static_cast<qsizetype>(simdjson::SIMDJSON_PADDING));
        padded.append(text.constData(), text.size());
        return readText(type, value, padded);
    }
    // Not quite six bytes for each of the text are kept for the next one.
    constexpr std::size_t largestKept = std::size_t{16} * 1024 * 1024 / 6;
    thread_local ondemand::parser parser;
    bool isRead = true;
    try
    {
        ondemand::document document = parser.iterate(text.constData(), size, size + simdjson::SIMDJSON_PADDING);
        TextReader(text).readWhole(document, type, value);
    }
    catch (simdjson::simdjson_error const&)
    {
        isRead = false;
    }
    if (parser.capacity() > largestKept)
    {
        parser = ondemand::parser();
    }
    return isRead;
}

void readDocument(Type const& type, void* value, QJsonDocument const& document)
{
    if (type.kind == ValueKind::Record)
    {
        readRecord(value, type.rows, document.object());
    }
    else if (auto const list = listIn(document))
    {
        readList(type, value, *list);
    }
}

} // namespace jsonSerializer::implementation
