#pragma once

#include "Classes/ACTIVITY_LOGS/DayFileRecords.h"

#include <QByteArrayView>

#include <stop_token>

/// Day files in the one form in which daemons and this program write them: `records` with nothing but `record`
/// within, these with nothing but their known elements, ASCII without entities. To make sure of that takes a
/// third of the time that a parser of any XML needs.
namespace PlainDayFile
{
/// Hands everything to `maker`. False for any other form, whether or not it is well-formed, and once `stop` is
/// asked for: what the maker has by then counts for nothing.
[[nodiscard]] bool scan(QByteArrayView bytes, const std::stop_token &stop, DayFileRecords::Maker &maker);
} // namespace PlainDayFile
