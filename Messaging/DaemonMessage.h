#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>
#include <QVariant>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

/// One message from the daemon: the parsed JSON object of one frame. A cheap handle, valid for as long as it is
/// kept; copies share the parsed form. One thread at a time.
///
/// Numbers keep their kind: whole ones are qlonglong (qulonglong beyond it), others double; true and false are
/// bool. Where an object has a key twice the first one counts.
class DaemonMessage
{
public:
    class Object;

    /// The payload as it came.
    [[nodiscard]] const QByteArray &payload() const;

    /// The top-level `type`; empty when it is missing or no text.
    [[nodiscard]] QString type() const;
    /// True for the reports of a running operation.
    [[nodiscard]] bool isOperationProgress() const;

    /// The keys that route a report; empty when missing or of another kind. A key is looked for at the top
    /// level first and then inside the object `data`.
    [[nodiscard]] std::optional<QString> userName() const { return text(QLatin1StringView("userName")); }
    [[nodiscard]] std::optional<qint64> operationStartType() const
    {
        return integer(QLatin1StringView("operationStartType"));
    }
    [[nodiscard]] std::optional<qint64> progressType() const
    {
        return integer(QLatin1StringView("progressType"));
    }

    /// The value of any key, looked for in the same two places. Names joined by '/' lead into objects within.
    /// Far cheaper than the whole object where a few values are wanted.
    [[nodiscard]] std::optional<QString> text(QLatin1StringView key) const;
    [[nodiscard]] std::optional<qint64> integer(QLatin1StringView key) const;
    [[nodiscard]] bool contains(QLatin1StringView key) const;
    /// An object within, which is looked for only once then; none where there is no object.
    [[nodiscard]] std::optional<Object> object(QLatin1StringView key) const;

    /// The whole object. Made at the first call and then kept.
    [[nodiscard]] const QVariantMap &toVariantMap() const;
    /// The values of type, data, State, UserName, operation, destination, profile and newOperation, in this
    /// order; a key that is missing leaves no gap. A JSON null is a value, held as std::nullptr_t.
    [[nodiscard]] QVariantList argumentList() const;

private:
    friend class DaemonMessageReader;
    struct Content;
    explicit DaemonMessage(std::shared_ptr<Content> content) : m_content(std::move(content)) {}
    std::shared_ptr<Content> m_content;
};

/// An object within a message; valid for as long as that message is kept. Names and texts are UTF-8.
class DaemonMessage::Object
{
public:
    [[nodiscard]] qsizetype memberCount() const;
    /// Empty for a member that is missing or no text.
    [[nodiscard]] std::string_view text(std::string_view name) const;
    /// Whether the other one has members of the same names and kinds in the same order.
    [[nodiscard]] bool hasSameMembers(const Object &other) const;
    /// Calls `take` with name and value of each member whose value is a text; in the order in which they came.
    void forEachText(const std::function<void(std::string_view name, std::string_view text)> &take) const;

private:
    friend class DaemonMessage;
    struct Place { // as the parser has it
        const void *document = nullptr;
        std::size_t index = 0;
    };
    explicit Object(const Place &place) : m_place(place) {}
    Place m_place;
};

/// Makes messages from payloads. It keeps its parser, and the memory of a message that nobody holds any more,
/// from one payload to the next.
class DaemonMessageReader
{
public:
    DaemonMessageReader();
    ~DaemonMessageReader();
    DaemonMessageReader(const DaemonMessageReader &) = delete;
    DaemonMessageReader &operator=(const DaemonMessageReader &) = delete;

    /// Empty, with the cause in `reason`, for bytes that are no JSON text in UTF-8, nest deeper than 1024
    /// levels, hold a number that fits no type, or whose top level is no object. Bytes with 64 bytes of
    /// capacity behind them are parsed where they lie.
    [[nodiscard]] std::optional<DaemonMessage> read(QByteArray payload, QString *reason);

private:
    struct Parser;
    std::unique_ptr<Parser> m_parser;
    /// Two, since whoever takes messages holds the last one while the next is read.
    std::array<std::shared_ptr<DaemonMessage::Content>, 2> m_kept;
};
