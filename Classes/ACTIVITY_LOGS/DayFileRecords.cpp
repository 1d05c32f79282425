#include "Classes/ACTIVITY_LOGS/DayFileRecords.h"

#include "Platform/Limits.h"

#include <utility>

QString DayFileRecords::SharedTexts::text(std::string_view bytes)
{
    if (bytes.empty())
        return {};
    if (bytes.size() > LongestBytes)
        return QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
    Entry &entry = m_entries[std::hash<std::string_view>()(bytes) % m_entries.size()];
    if (entry.bytes != bytes)
        entry = {std::string(bytes), QString::fromUtf8(bytes.data(), qsizetype(bytes.size()))};
    return entry.text;
}

bool DayFileRecords::Maker::begin(qsizetype at)
{
    m_record = {.node = std::make_shared<LogNode>(), .begin = at};
    return ++m_begun <= Limits::DayFileRecords;
}

void DayFileRecords::Maker::set(const Field &field, std::string_view utf8)
{
    if (isOpen()) {
        m_record.node.get()->*field.text =
            field.isShared ? m_shared.text(utf8) : QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
    }
}

void DayFileRecords::Maker::end(qsizetype behind)
{
    if (!isOpen())
        return;
    m_record.end = behind;
    m_record.node->dayKey = m_dayKey;
    m_records.push_back(std::exchange(m_record, {}));
}
