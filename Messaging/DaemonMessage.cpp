#include "Messaging/DaemonMessage.h"

#include "Platform/Limits.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <bit>

#include <malloc.h>

using namespace Qt::StringLiterals;
namespace dom = simdjson::dom;

namespace
{
constexpr std::array ArgumentKeys{"type",      "data",        "State",   "UserName",
                                  "operation", "destination", "profile", "newOperation"};

/// Whether the payload holds more values than anything that makes sense, told without taking memory for them.
/// It need not be JSON; keys count as nothing, and a collection within another one counts twice.
bool hasTooManyValues(const QByteArray &payload)
{
    if (payload.size() <= Limits::MessageValues)
        return false;
    qsizetype values = 0;
    bool inText = false;
    for (auto byte = payload.cbegin(); byte != payload.cend(); ++byte) {
        if (*byte == '"')
            inText = !inText;
        else if (inText && *byte == '\\' && byte + 1 != payload.cend())
            ++byte;
        else if (!inText && (*byte == ',' || *byte == '[' || *byte == '{'))
            ++values;
    }
    return values > Limits::MessageValues;
}

/// Memory that one great message took is given back to the system, and not kept for the next.
template<class T>
void deleteAndGiveBack(T *content)
{
    const bool isGreat = content->payload.size() > Limits::KeptFrameBytes;
    delete content;
    if (isGreat)
        malloc_trim(0);
}

QString toString(std::string_view text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

std::string_view toView(QLatin1StringView key)
{
    return {key.data(), size_t(key.size())};
}

QVariant toVariant(const dom::element &value); // values nest no deeper than the parser has let pass

QVariantList toList(const dom::array &array)
{
    QVariantList list;
    list.reserve(qsizetype(array.size()));
    for (const dom::element item : array)
        list.append(toVariant(item));
    return list;
}

QVariantMap toMap(const dom::object &object)
{
    QVariantMap map;
    for (const auto [name, value] : object) {
        const QString key = toString(name);
        const auto place = std::as_const(map).lowerBound(key);
        if (place == map.cend() || place.key() != key)
            map.insert(place, key, toVariant(value));
    }
    return map;
}

QVariant toVariant(const dom::element &value)
{
    switch (value.type()) {
    case dom::element_type::ARRAY:
        return toList(value.get_array().value_unsafe());
    case dom::element_type::OBJECT:
        return toMap(value.get_object().value_unsafe());
    case dom::element_type::INT64:
        return qlonglong(value.get_int64().value_unsafe());
    case dom::element_type::UINT64:
        return qulonglong(value.get_uint64().value_unsafe());
    case dom::element_type::DOUBLE:
        return value.get_double().value_unsafe();
    case dom::element_type::STRING:
        return toString(value.get_string().value_unsafe());
    case dom::element_type::BOOL:
        return value.get_bool().value_unsafe();
    case dom::element_type::NULL_VALUE:
        break;
    }
    return QVariant::fromValue(nullptr);
}
} // namespace

struct DaemonMessage::Content {
    QByteArray payload;
    dom::document document;
    mutable std::optional<QVariantMap> map;

    [[nodiscard]] dom::object object() const { return document.root().get_object().value_unsafe(); }

    /// One report after the other asks for the name of one account, so the last text is kept.
    const QString &lastText(std::string_view utf8) const
    {
        if (m_lastUtf8 != utf8) {
            m_lastUtf8 = utf8;
            m_lastText = toString(utf8);
        }
        return m_lastText;
    }

    /// To be called when the document is another.
    void noteMembers()
    {
        m_noted = 0;
        for (const auto [name, value] : object()) {
            if (m_noted == m_members.size())
                break;
            m_members[m_noted++] = {name, value};
        }
    }

    [[nodiscard]] std::optional<dom::element> topLevel(std::string_view key) const
    {
        const auto end = m_members.begin() + m_noted;
        const auto found =
            std::find_if(m_members.begin(), end, [&](const Member &one) { return one.name == key; });
        if (found != end)
            return found->value;
        return m_noted == m_members.size() ? within(document.root(), key) : std::nullopt;
    }

    /// `path` at the top level; where its first name is missing there, in `data`.
    [[nodiscard]] std::optional<dom::element> find(std::string_view path) const
    {
        auto slash = path.find('/');
        const auto first = path.substr(0, slash);
        auto value = topLevel(first);
        if (!value) {
            const auto data = topLevel("data");
            value = data ? within(*data, first) : std::nullopt;
        }
        while (value && slash != std::string_view::npos) {
            path.remove_prefix(slash + 1);
            slash = path.find('/');
            value = within(*value, path.substr(0, slash));
        }
        return value;
    }

private:
    struct Member {
        std::string_view name;
        dom::element value;
    };
    /// The first members of the top level: several are asked for, and the form of the document is slow to
    /// search.
    std::array<Member, 16> m_members;
    std::size_t m_noted = 0;
    mutable std::string m_lastUtf8;
    mutable QString m_lastText = u""_s; // as of an empty text

    static std::optional<dom::element> within(const dom::element &object, std::string_view key)
    {
        dom::element value;
        if (object.at_key(key).get(value) != simdjson::SUCCESS)
            return std::nullopt;
        return value;
    }
};

const QByteArray &DaemonMessage::payload() const
{
    return m_content->payload;
}

QString DaemonMessage::type() const
{
    std::string_view type;
    const auto value = m_content->topLevel("type");
    return value && value->get_string().get(type) == simdjson::SUCCESS ? toString(type) : QString();
}

bool DaemonMessage::isOperationProgress() const
{
    std::string_view type;
    const auto value = m_content->topLevel("type");
    return value && value->get_string().get(type) == simdjson::SUCCESS && type == "operationProgress";
}

std::optional<QString> DaemonMessage::text(QLatin1StringView key) const
{
    std::string_view text;
    const auto value = m_content->find(toView(key));
    if (!value || value->get_string().get(text) != simdjson::SUCCESS)
        return std::nullopt;
    return m_content->lastText(text);
}

std::optional<qint64> DaemonMessage::integer(QLatin1StringView key) const
{
    int64_t number = 0;
    const auto value = m_content->find(toView(key));
    if (!value || value->get_int64().get(number) != simdjson::SUCCESS)
        return std::nullopt;
    return number;
}

bool DaemonMessage::contains(QLatin1StringView key) const
{
    return m_content->find(toView(key)).has_value();
}

std::optional<DaemonMessage::Object> DaemonMessage::object(QLatin1StringView key) const
{
    dom::object object;
    const auto value = m_content->find(toView(key));
    if (!value || value->get_object().get(object) != simdjson::SUCCESS)
        return std::nullopt;
    return Object(std::bit_cast<Object::Place>(object));
}

namespace
{
template<class Place>
dom::object objectAt(const Place &place)
{
    return std::bit_cast<dom::object>(place);
}
} // namespace

qsizetype DaemonMessage::Object::memberCount() const
{
    return qsizetype(objectAt(m_place).size());
}

std::string_view DaemonMessage::Object::text(std::string_view name) const
{
    std::string_view text;
    return objectAt(m_place).at_key(name).get_string().get(text) == simdjson::SUCCESS ? text
                                                                                      : std::string_view();
}

bool DaemonMessage::Object::hasSameMembers(const Object &other) const
{
    const auto ours = objectAt(m_place);
    const auto theirs = objectAt(other.m_place);
    return std::equal(ours.begin(), ours.end(), theirs.begin(), theirs.end(),
                      [](const dom::key_value_pair &one, const dom::key_value_pair &another) {
                          return one.key == another.key && one.value.type() == another.value.type();
                      });
}

void DaemonMessage::Object::forEachText(
    const std::function<void(std::string_view, std::string_view)> &take) const
{
    for (const auto [name, member] : objectAt(m_place)) {
        std::string_view text;
        if (member.get_string().get(text) == simdjson::SUCCESS)
            take(name, text);
    }
}

const QVariantMap &DaemonMessage::toVariantMap() const
{
    if (!m_content->map)
        m_content->map = toMap(m_content->object());
    return *m_content->map;
}

QVariantList DaemonMessage::argumentList() const
{
    QVariantList list;
    for (const char *const key : ArgumentKeys) {
        if (const auto value = m_content->topLevel(key))
            list.append(toVariant(*value));
    }
    return list;
}

struct DaemonMessageReader::Parser {
    dom::parser parser;
};

DaemonMessageReader::DaemonMessageReader() : m_parser(std::make_unique<Parser>())
{
}

DaemonMessageReader::~DaemonMessageReader() = default;

std::optional<DaemonMessage> DaemonMessageReader::read(QByteArray payload, QString *reason)
{
    if (hasTooManyValues(payload)) {
        *reason = u"too many values"_s;
        return std::nullopt;
    }
    const auto size = size_t(payload.size());
    const bool padded = size_t(payload.capacity()) >= size + simdjson::SIMDJSON_PADDING;
    const auto free = std::find_if(m_kept.begin(), m_kept.end(),
                                   [](const auto &kept) { return kept && kept.use_count() == 1; });
    const auto content = free != m_kept.end()
                             ? std::exchange(*free, nullptr)
                             : std::shared_ptr<DaemonMessage::Content>(
                                   new DaemonMessage::Content, deleteAndGiveBack<DaemonMessage::Content>);
    content->payload = std::move(payload);
    content->map.reset();

    dom::element root;
    const auto error =
        m_parser->parser.parse_into_document(content->document, content->payload.constData(), size, !padded)
            .get(root);
    if (size > Limits::KeptFrameBytes)
        m_parser = std::make_unique<Parser>();
    if (error != simdjson::SUCCESS || !root.is_object()) {
        *reason = error != simdjson::SUCCESS
                      ? u"no JSON: "_s + QString::fromLatin1(simdjson::error_message(error))
                      : u"the top level is no object"_s;
        return std::nullopt;
    }
    content->noteMembers();
    const auto place = std::find(m_kept.begin(), m_kept.end(), nullptr);
    if (size <= Limits::KeptFrameBytes)
        (place != m_kept.end() ? *place : m_kept.front()) = content;
    return DaemonMessage(content);
}
