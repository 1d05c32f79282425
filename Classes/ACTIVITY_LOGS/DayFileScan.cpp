#include "Classes/ACTIVITY_LOGS/DayFileScan.h"

#include "Platform/Limits.h"

#include <array>
#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <expat.h>

using namespace Qt::StringLiterals;

namespace
{
/// A value's element, and whether records often share its text.
struct Field {
    std::string_view element;
    QString LogNode::*text;
    bool isShared;
};

/// In the order of the file, so that the next one is nearly always the one looked for.
constexpr std::array<Field, 11> Fields{{
    {"datetime", &LogNode::datetime, false},
    {"uname", &LogNode::uname, true},
    {"files", &LogNode::files, true},
    {"filesinsync", &LogNode::filesinsync, true},
    {"status", &LogNode::status, true},
    {"duration", &LogNode::duration, true},
    {"content", &LogNode::content, true},
    {"optype", &LogNode::optype, true},
    {"lpath", &LogNode::lpath, true},
    {"logfile", &LogNode::logfile, false},
    {"logname", &LogNode::logname, true},
}};

/// Short texts that were met lately: records of a day repeat most of theirs, and a list of years holds each of
/// them once a day instead of once a record.
class SharedTexts
{
public:
    QString text(std::string_view bytes)
    {
        if (bytes.empty())
            return {};
        if (bytes.size() > LongestBytes)
            return QString::fromUtf8(bytes);
        Entry &entry = m_entries[std::hash<std::string_view>()(bytes) % m_entries.size()];
        if (entry.bytes != bytes)
            entry = {std::string(bytes), QString::fromUtf8(bytes)};
        return entry.text;
    }

private:
    static constexpr std::size_t LongestBytes = 64;
    struct Entry {
        std::string bytes;
        QString text;
    };
    std::array<Entry, 64> m_entries;
};

class Scanner
{
public:
    Scanner(const QString &dayKey, const std::stop_token &stop, const DayFileScan::Take &take)
        : m_dayKey(dayKey), m_stop(stop), m_take(take), m_parser(XML_ParserCreate(nullptr), XML_ParserFree)
    {
    }
    DayFileScan::Outcome run(QByteArrayView bytes);

private:
    static Scanner &self(void *data) { return *static_cast<Scanner *>(data); }
    static void XMLCALL didStart(void *data, const XML_Char *name, const XML_Char **)
    {
        self(data).start(name);
    }
    static void XMLCALL didEnd(void *data, const XML_Char *name) { self(data).end(name); }
    static void XMLCALL didMeetText(void *data, const XML_Char *text, int length)
    {
        self(data).addText({text, std::size_t(length)});
    }
    static void XMLCALL didMeetDocumentType(void *data, const XML_Char *, const XML_Char *, const XML_Char *,
                                            int)
    {
        self(data).giveUp(u"a document type"_s);
    }

    void start(std::string_view name);
    void end(std::string_view name);
    void addText(std::string_view text);
    void endRecord();
    void giveUp(const QString &reason);
    const Field *fieldOf(std::string_view name);

    const QString &m_dayKey;
    const std::stop_token &m_stop;
    const DayFileScan::Take &m_take;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> m_parser;
    QString m_reason; ///< why it was given up

    int m_depth = 0;     ///< elements that are open
    int m_innermost = 0; ///< depth of the element that was opened last
    int m_records = 0;
    std::size_t m_nextField = 0;
    std::string m_text;
    SharedTexts m_shared;
    DayFileScan::Record m_record; ///< its node is null outside of records
    int m_recordDepth = 0;
    bool m_hasStatus = false; ///< of the record, one right within it
    bool m_holdsAnything = false;
};

void Scanner::giveUp(const QString &reason)
{
    m_reason = reason;
    XML_StopParser(m_parser.get(), XML_FALSE);
}

void Scanner::start(std::string_view name)
{
    ++m_depth;
    m_innermost = m_depth;
    m_holdsAnything = m_holdsAnything || m_depth > 1;
    if (m_depth > Limits::DayFileDepth)
        return giveUp(u"too many levels"_s);
    if (m_stop.stop_requested())
        return giveUp({});
    if (name == "records")
        return;
    m_text.clear();
    if (name != "record")
        return;
    if (++m_records > Limits::DayFileRecords)
        return giveUp(u"too many records"_s);
    m_record.node = std::make_shared<LogNode>();
    m_record.begin = qsizetype(XML_GetCurrentByteIndex(m_parser.get()));
    m_record.isInProgress = false;
    m_recordDepth = m_depth;
    m_hasStatus = false;
    m_nextField = 0;
}

const Field *Scanner::fieldOf(std::string_view name)
{
    for (std::size_t tried = 0; tried < Fields.size(); ++tried) {
        const Field &field = Fields[m_nextField];
        m_nextField = (m_nextField + 1) % Fields.size();
        if (field.element == name)
            return &field;
    }
    return nullptr;
}

void Scanner::end(std::string_view name)
{
    const int depth = m_depth--;
    if (name == "record")
        return endRecord();
    const Field *field = fieldOf(name);
    if (!field)
        return;
    if (m_record.node) {
        m_record.node.get()->*field->text = field->isShared
                                                ? m_shared.text(m_text)
                                                : QString::fromUtf8(m_text.data(), qsizetype(m_text.size()));
        if (field->text == &LogNode::status && depth == m_recordDepth + 1 && !m_hasStatus) {
            m_hasStatus = true;
            constexpr int RecordBelowRoot = 2;
            m_record.isInProgress =
                m_recordDepth == RecordBelowRoot && m_innermost == depth && m_text == DayFileScan::InProgress;
        }
    }
    m_text.clear();
}

void Scanner::endRecord()
{
    if (!m_record.node)
        return;
    m_record.end = qsizetype(XML_GetCurrentByteIndex(m_parser.get())) + XML_GetCurrentByteCount(m_parser.get());
    m_record.node->dayKey = m_dayKey;
    m_take(std::exchange(m_record, {}));
}

void Scanner::addText(std::string_view text)
{
    m_text += text;
    if (!m_record.node && !m_holdsAnything)
        m_holdsAnything = text.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

DayFileScan::Outcome Scanner::run(QByteArrayView bytes)
{
    static_assert(Limits::DayFileBytes <= INT_MAX, "the parser counts in int");
    if (bytes.size() > Limits::DayFileBytes)
        return {.reason = u"too large"_s};
    XML_Parser parser = m_parser.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, didStart, didEnd);
    XML_SetCharacterDataHandler(parser, didMeetText);
    XML_SetStartDoctypeDeclHandler(parser, didMeetDocumentType);
    if (XML_Parse(parser, bytes.data(), int(bytes.size()), XML_TRUE) == XML_STATUS_OK)
        return {.isWhole = true, .holdsAnything = m_holdsAnything};
    if (XML_GetErrorCode(parser) == XML_ERROR_ABORTED)
        return {.reason = m_reason};
    return {.reason = u"line %1: %2"_s.arg(XML_GetCurrentLineNumber(parser))
                          .arg(QLatin1StringView(XML_ErrorString(XML_GetErrorCode(parser))))};
}
} // namespace

DayFileScan::Outcome DayFileScan::run(QByteArrayView bytes, const QString &dayKey, const std::stop_token &stop,
                                      const Take &take)
{
    return Scanner(dayKey, stop, take).run(bytes);
}
