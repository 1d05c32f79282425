#include "Messaging/DaemonMessage.h"

#include <simdjson.h>

#include <algorithm>

#include <array>

using namespace Qt::StringLiterals;
namespace dom = simdjson::dom;

namespace
{
/// What the parser keeps for the next payload is bounded: memory that one great message took is given back.
constexpr qsizetype KeptPayloadLimit = 256 * 1024;

constexpr std::array ArgumentKeys{"type",      "data",        "State",   "UserName",
                                  "operation", "destination", "profile", "newOperation"};

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

    [[nodiscard]] std::optional<dom::element> topLevel(std::string_view key) const
    {
        return within(document.root(), key);
    }

    /// `path` at the top level; where its first name is missing there, in `data`.
    [[nodiscard]] std::optional<dom::element> find(std::string_view path) const
    {
        const auto first = path.substr(0, path.find('/'));
        auto value = topLevel(first);
        if (!value) {
            const auto data = topLevel("data");
            value = data ? within(*data, first) : std::nullopt;
        }
        while (value && path.find('/') != path.npos) {
            path.remove_prefix(path.find('/') + 1);
            value = within(*value, path.substr(0, path.find('/')));
        }
        return value;
    }

private:
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
    return toString(text);
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

std::optional<qsizetype> DaemonMessage::memberCount(QLatin1StringView key) const
{
    dom::object object;
    const auto value = m_content->find(toView(key));
    if (!value || value->get_object().get(object) != simdjson::SUCCESS)
        return std::nullopt;
    return qsizetype(object.size());
}

bool DaemonMessage::forEachText(QLatin1StringView key,
                                const std::function<void(std::string_view, std::string_view)> &take) const
{
    dom::object object;
    const auto value = m_content->find(toView(key));
    if (!value || value->get_object().get(object) != simdjson::SUCCESS)
        return false;
    for (const auto [name, member] : object) {
        std::string_view text;
        if (member.get_string().get(text) == simdjson::SUCCESS)
            take(name, text);
    }
    return true;
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
    const auto size = size_t(payload.size());
    const bool padded = size_t(payload.capacity()) >= size + simdjson::SIMDJSON_PADDING;
    const auto free = std::find_if(m_kept.begin(), m_kept.end(),
                                   [](const auto &kept) { return kept && kept.use_count() == 1; });
    const auto content =
        free != m_kept.end() ? std::exchange(*free, nullptr) : std::make_shared<DaemonMessage::Content>();
    content->payload = std::move(payload);
    content->map.reset();

    dom::element root;
    const auto error =
        m_parser->parser.parse_into_document(content->document, content->payload.constData(), size, !padded)
            .get(root);
    if (size > KeptPayloadLimit)
        m_parser = std::make_unique<Parser>();
    if (error != simdjson::SUCCESS || !root.is_object()) {
        *reason = error != simdjson::SUCCESS
                      ? u"no JSON: "_s + QString::fromLatin1(simdjson::error_message(error))
                      : u"the top level is no object"_s;
        return std::nullopt;
    }
    const auto place = std::find(m_kept.begin(), m_kept.end(), nullptr);
    if (size <= KeptPayloadLimit)
        (place != m_kept.end() ? *place : m_kept.front()) = content;
    return DaemonMessage(content);
}
