#include "Classes/ACTIVITY_LOGS/DayFileScan.h"

#include "Classes/ACTIVITY_LOGS/DayFileRecords.h"
#include "Classes/ACTIVITY_LOGS/PlainDayFile.h"
#include "Platform/Limits.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <string>
#include <string_view>

#include <expat.h>

using namespace Qt::StringLiterals;

namespace
{
/// Any XML, as expat reads it.
class Scanner
{
public:
    Scanner(const QString &dayKey, const std::stop_token &stop)
        : m_stop(stop), m_parser(XML_ParserCreate(nullptr), XML_ParserFree), m_maker(dayKey)
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
    void endStatus(int depth);
    void giveUp(const QString &reason);

    const std::stop_token &m_stop;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> m_parser;
    QString m_reason; ///< why it was given up

    DayFileRecords::Maker m_maker;
    DayFileRecords::FieldOrder m_order;
    std::string m_text;
    int m_depth = 0;          ///< elements that are open
    int m_innermost = 0;      ///< depth of the element that was opened last
    int m_recordDepth = 0;    ///< of the record that was opened last
    bool m_hasStatus = false; ///< that record, one right within it
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
    m_recordDepth = m_depth;
    m_hasStatus = false;
    if (!m_maker.begin(qsizetype(XML_GetCurrentByteIndex(m_parser.get()))))
        giveUp(u"too many records"_s);
}

void Scanner::end(std::string_view name)
{
    const int depth = m_depth--;
    if (name == "record") {
        XML_Parser parser = m_parser.get();
        m_maker.end(qsizetype(XML_GetCurrentByteIndex(parser)) + XML_GetCurrentByteCount(parser));
        return;
    }
    const DayFileRecords::Field *field = m_order.find(name);
    if (!field)
        return;
    m_maker.set(*field, m_text);
    if (field->text == &LogNode::status && depth == m_recordDepth + 1 && !std::exchange(m_hasStatus, true))
        endStatus(depth);
    m_text.clear();
}

/// An element within the status is a part of its text that was not gathered.
void Scanner::endStatus(int depth)
{
    constexpr int RecordBelowRoot = 2;
    if (m_recordDepth == RecordBelowRoot && m_innermost == depth && m_text == DayFileScan::InProgress)
        m_maker.setInProgress();
}

void Scanner::addText(std::string_view text)
{
    if (m_stop.stop_requested())
        return giveUp({});
    std::size_t taken = std::min(text.size(), Limits::DayFileValueBytes - m_text.size());
    while (taken > 0 && taken < text.size() && (uchar(text[taken]) & 0xC0) == 0x80) // within a letter
        --taken;
    m_text += text.substr(0, taken);
    if (!m_maker.isOpen() && !m_holdsAnything)
        m_holdsAnything = text.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

DayFileScan::Outcome Scanner::run(QByteArrayView bytes)
{
    static_assert(Limits::DayFileBytes <= INT_MAX, "the parser counts in int");
    XML_Parser parser = m_parser.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, didStart, didEnd);
    XML_SetCharacterDataHandler(parser, didMeetText);
    XML_SetStartDoctypeDeclHandler(parser, didMeetDocumentType);
    if (XML_Parse(parser, bytes.data(), int(bytes.size()), XML_TRUE) == XML_STATUS_OK)
        return {.isWhole = true, .records = m_maker.take(), .holdsAnything = m_holdsAnything};
    if (XML_GetErrorCode(parser) == XML_ERROR_ABORTED)
        return {.reason = m_reason};
    return {.reason = u"line %1: %2"_s.arg(XML_GetCurrentLineNumber(parser))
                          .arg(QLatin1StringView(XML_ErrorString(XML_GetErrorCode(parser))))};
}
} // namespace

DayFileScan::Outcome DayFileScan::run(QByteArrayView bytes, const QString &dayKey, const std::stop_token &stop)
{
    if (bytes.size() > Limits::DayFileBytes)
        return {.reason = u"too large"_s};
    if (DayFileRecords::Maker maker(dayKey); PlainDayFile::scan(bytes, stop, maker)) {
        std::vector<Record> records = maker.take();
        const bool holdsAnything = !records.empty();
        return {.isWhole = true, .records = std::move(records), .holdsAnything = holdsAnything};
    }
    return Scanner(dayKey, stop).run(bytes);
}

QByteArray DayFileScan::without(const std::vector<Record> &records, QByteArrayView bytes)
{
    QByteArray kept;
    kept.reserve(bytes.size());
    qsizetype from = 0;
    for (const Record &record : records) {
        kept += bytes.sliced(from, record.begin - from);
        from = record.end;
        // In an encoding of two bytes a unit, one of the two is no '>' here or no line feed.
        if (from < bytes.size() && bytes[from - 1] == '>' && bytes[from] == '\n')
            ++from;
    }
    return kept += bytes.sliced(from);
}
