// Scrolling through 100,000 records: a frame of the window's list, dressed as it is, beside one of a plain
// table of the same texts in the same place. Both are scrolled alike, in turns, by rows, by pages and by leaps.

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Records = 100'000;
constexpr int Frames = 300;
constexpr int Runs = 5;

LogNodes records()
{
    const QString statuses[] = {u"Success"_s, u"Failure"_s, u"In Progress"_s, u"Cancelled"_s, u"Odd"_s};
    LogNodes list;
    const QDateTime newest(QDate(2026, 11, 23), QTime(12, 0));
    for (int i = 0; i < Records; ++i) {
        auto record = std::make_shared<LogNode>();
        record->datetime = newest.addSecs(-700LL * i).toString(u"MM-dd-yyyy HH:mm:ss"_s);
        record->status = statuses[i % 5];
        record->optype = QString::number(1 + i % 24);
        record->duration = u"00:%1:07"_s.arg(i % 60, 2, 10, QChar(u'0'));
        record->files = QString::number(i % 90'000);
        list.push_back(std::move(record));
    }
    return list;
}

/// The same texts, as simple as a table can be given them.
class PlainRows : public QAbstractTableModel
{
public:
    explicit PlainRows(const LogTableModel &of) : m_cells(std::size_t(of.rowCount()) * LogColumns)
    {
        for (std::size_t cell = 0; cell < m_cells.size(); ++cell)
            m_cells[cell] = of.text(int(cell / LogColumns), LogColumn(cell % LogColumns));
    }
    int rowCount(const QModelIndex &) const override { return int(m_cells.size() / LogColumns); }
    int columnCount(const QModelIndex &) const override { return LogColumns; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::DisplayRole ? m_cells[std::size_t(index.row() * LogColumns + index.column())]
                                       : QVariant();
    }

private:
    std::vector<QString> m_cells;
};

struct Times {
    std::vector<double> frames; ///< milliseconds
    void scroll(QTableView &view)
    {
        const int page = view.verticalScrollBar()->pageStep();
        const int end = view.verticalScrollBar()->maximum();
        for (int i = 0; i < Frames; ++i) {
            const int step = i % 3 == 0 ? view.verticalScrollBar()->singleStep() : i % 3 == 1 ? page : end / 7;
            QElapsedTimer timer;
            timer.start();
            view.verticalScrollBar()->setValue((view.verticalScrollBar()->value() + step) % end);
            view.viewport()->repaint();
            frames.push_back(double(timer.nsecsElapsed()) / 1e6);
        }
    }
    double median()
    {
        std::nth_element(frames.begin(), frames.begin() + frames.size() / 2, frames.end());
        return frames[frames.size() / 2];
    }
    double longest() const { return *std::max_element(frames.begin(), frames.end()); }
};
} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    ActivityLogsView window;
    window.showRecords(records(), QDateTime::currentDateTime());
    window.resize(1000, 1200);
    window.show();
    PlainRows rows(window.model());
    QTableView plain;
    plain.setModel(&rows);
    plain.setVerticalScrollMode(QTableView::ScrollPerPixel);
    plain.verticalHeader()->hide();
    plain.verticalHeader()->setDefaultSectionSize(window.table().rowHeight(0));
    plain.resize(window.table().size());
    for (int column = 0; column < LogColumns; ++column)
        plain.setColumnWidth(column, window.table().columnWidth(column));
    plain.show();
    QApplication::processEvents();
    Times ours, anchor;
    for (int run = 0; run < Runs; ++run) {
        anchor.scroll(plain);
        ours.scroll(window.table());
    }
    std::printf(
        "a frame of %d records  %6.2f ms, of a plain table %.2f ms: %.2f times; longest %.1f ms, %.1f ms\n",
        Records, ours.median(), anchor.median(), ours.median() / anchor.median(), ours.longest(),
        anchor.longest());
    return 0;
}
