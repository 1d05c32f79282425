#include "Classes/ACTIVITY_LOGS/LogListPlace.h"

#include "Classes/ACTIVITY_LOGS/LogTableView.h"

#include <QHashFunctions>
#include <QHeaderView>
#include <QScrollBar>

std::size_t SameRecord::operator()(const LogNodePtr &record) const
{
    return qHashMulti(0, record->datetime, record->optype, record->logfile);
}

bool SameRecord::operator()(const LogNodePtr &a, const LogNodePtr &b) const
{
    return a == b || (a->datetime == b->datetime && a->optype == b->optype && a->logfile == b->logfile &&
                      a->uname == b->uname && a->dayKey == b->dayKey);
}

LogListPlace LogListPlace::of(const LogTableView &table)
{
    LogListPlace place;
    const LogNodes selected = table.selectedRecords();
    place.m_selected.insert(selected.begin(), selected.end());
    place.m_current = table.logModel().record(table.currentIndex().row());
    if (table.verticalScrollBar()->value() > 0) {
        const int top = table.rowAt(0);
        place.m_top = table.logModel().record(top);
        place.m_offset = place.m_top ? -table.rowViewportPosition(top) : 0;
    }
    return place;
}

bool LogListPlace::restore(LogTableView &table) const
{
    const LogNodes &records = table.logModel().records();
    std::vector<int> selected;
    int current = -1;
    int top = -1;
    const SameRecord same;
    for (std::size_t row = 0; row < records.size(); ++row) {
        if (!m_selected.empty() && m_selected.contains(records[row]))
            selected.push_back(int(row));
        if (m_current && same(m_current, records[row]))
            current = int(row);
        if (m_top && same(m_top, records[row]))
            top = int(row);
    }
    table.selectRows(selected, current);
    if (top >= 0) {
        table.executeDelayedLayout();
        table.verticalScrollBar()->setValue(table.verticalHeader()->sectionPosition(top) + m_offset);
    } else if (!m_top) {
        table.verticalScrollBar()->setValue(0);
    }
    return !selected.empty();
}
