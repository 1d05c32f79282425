#include "Classes/ACTIVITY_LOGS/PlainDayFile.h"

#include "Platform/Limits.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace
{
using DayFileRecords::Field;

/// Bytes that stand in a value for themselves alone, or are part of a character that may. '>' does too, but for
/// the end of CDATA that it may be.
constexpr std::array<bool, 256> Plain = [] {
    std::array<bool, 256> plain{};
    for (int c = 0x20; c < 0x100; ++c)
        plain[std::size_t(c)] = c != '<' && c != '>' && c != '&';
    return plain;
}();

/// Whether all of it is UTF-8 that XML can hold, and is to be listed whole. What is doubtful is left to the
/// other parser, as a replacement character that really stands there.
bool isText(std::string_view bytes)
{
    if (bytes.size() > Limits::DayFileValueBytes)
        return false;
    if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) < 0x80; }))
        return true;
    const QString text = QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c < QChar(QChar::ReplacementCharacter); });
}

class Reader
{
public:
    Reader(QByteArrayView bytes, DayFileRecords::Maker &maker)
        : m_begin(bytes.data()), m_at(m_begin), m_end(m_begin + bytes.size()), m_maker(maker)
    {
    }
    bool read(const std::stop_token &stop);

private:
    bool passes(std::string_view text)
    {
        const bool isHere =
            std::size_t(m_end - m_at) >= text.size() && std::memcmp(m_at, text.data(), text.size()) == 0;
        m_at += isHere ? text.size() : 0;
        return isHere;
    }
    void passBlanks()
    {
        while (m_at < m_end && (*m_at == '\n' || *m_at == '\t' || *m_at == ' '))
            ++m_at;
    }
    std::string_view passPlain()
    {
        const char *const from = m_at;
        while (m_at < m_end && Plain[uchar(*m_at)])
            ++m_at;
        return {from, std::size_t(m_at - from)};
    }
    const Field *fieldAhead();
    bool readRecord();
    bool readValue(bool &hasStatus);

    const char *const m_begin;
    const char *m_at;
    const char *const m_end;
    DayFileRecords::FieldOrder m_order;
    DayFileRecords::Maker &m_maker;
};

bool Reader::read(const std::stop_token &stop)
{
    passes("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
    passBlanks();
    if (!passes("<records>"))
        return false;
    for (passBlanks(); passes("<record>"); passBlanks()) {
        if (stop.stop_requested() || !readRecord())
            return false;
    }
    if (!passes("</records>"))
        return false;
    passBlanks();
    return m_at == m_end;
}

bool Reader::readRecord()
{
    constexpr std::string_view Start = "<record>";
    if (!m_maker.begin(m_at - m_begin - qsizetype(Start.size())))
        return false;
    bool hasStatus = false;
    for (passBlanks(); !passes("</record>"); passBlanks()) {
        if (!readValue(hasStatus))
            return false;
    }
    m_maker.end(m_at - m_begin);
    return true;
}

const Field *Reader::fieldAhead()
{
    if (!passes("<"))
        return nullptr;
    const char *const name = m_at;
    while (m_at < m_end && *m_at >= 'a' && *m_at <= 'z')
        ++m_at;
    return m_order.find({name, std::size_t(m_at - name)});
}

bool Reader::readValue(bool &hasStatus)
{
    const Field *const field = fieldAhead();
    if (!field)
        return false;
    std::string_view value;
    if (!passes("/>")) {
        if (!passes(">"))
            return false;
        value = passPlain();
        if (!isText(value) || !passes("</") || !passes(field->element) || !passes(">"))
            return false;
    }
    m_maker.set(*field, value);
    if (field->text == &LogNode::status && !std::exchange(hasStatus, true) && value == DayFileScan::InProgress)
        m_maker.setInProgress();
    return true;
}
} // namespace

bool PlainDayFile::scan(QByteArrayView bytes, const std::stop_token &stop, DayFileRecords::Maker &maker)
{
    return Reader(bytes, maker).read(stop);
}
