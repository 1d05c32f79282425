#pragma once

#include "Classes/ACTIVITY_LOGS/DayFileScan.h"

#include <QString>

#include <array>
#include <string>
#include <string_view>

/// Records in the making, for whoever takes the bytes of a day file apart.
namespace DayFileRecords
{
/// The elements of a record.
struct Field {
    std::string_view element;
    QString LogNode::*text;
    bool isShared; ///< records often have the same text
};

/// In the order of a file.
inline constexpr std::array<Field, 11> Fields{{
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

/// Finds fields by their elements; quick while they come in the order of a file.
class FieldOrder
{
public:
    /// Null for any other element.
    [[nodiscard]] const Field *find(std::string_view element)
    {
        for (std::size_t tried = 0; tried < Fields.size(); ++tried) {
            const Field &field = Fields[m_next];
            m_next = m_next + 1 < Fields.size() ? m_next + 1 : 0;
            if (field.element == element)
                return &field;
        }
        return nullptr;
    }

private:
    std::size_t m_next = 0;
};

/// Short texts that were met lately: records of a day repeat most of theirs, and a list of years then holds
/// each of them once a day instead of once a record.
class SharedTexts
{
public:
    [[nodiscard]] QString text(std::string_view bytes);

private:
    static constexpr std::size_t LongestBytes = 64;
    struct Entry {
        std::string bytes;
        QString text;
    };
    std::array<Entry, 64> m_entries;
};

class Maker
{
public:
    explicit Maker(const QString &dayKey) : m_dayKey(dayKey) {}

    /// A record begins, in the place of one that has not ended. False when there are too many of them.
    [[nodiscard]] bool begin(qsizetype at);
    [[nodiscard]] bool isOpen() const { return bool(m_record.node); }
    /// The last of several values counts. Nothing outside of a record.
    void set(const Field &field, std::string_view utf8);
    /// The record's job runs: see DayFileScan::Record.
    void setInProgress() { m_record.isInProgress = true; }
    void end(qsizetype behind);

    [[nodiscard]] std::vector<DayFileScan::Record> take() { return std::move(m_records); }

private:
    const QString &m_dayKey;
    SharedTexts m_shared;
    DayFileScan::Record m_record; ///< its node is null outside of records
    int m_begun = 0;
    std::vector<DayFileScan::Record> m_records;
};
} // namespace DayFileRecords
