#pragma once

#include "Classes/ACTIVITY_LOGS/LogDates.h"
#include "Classes/ACTIVITY_LOGS/LogNode.h"
#include "Classes/ACTIVITY_LOGS/LogStatusLook.h"
#include "Platform/DispatchQueue.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

#include <array>
#include <span>

/// The columns of the list, in the order in which they stand at first.
enum class LogColumn { Operation, DateTime, Duration, Status, Files, Delete };
inline constexpr int LogColumns = 6;

/// The records of the list as texts and images. It holds them by reference; what is shown of one is worked out
/// when it is first seen, so that a list of 100,000 costs no more than its rows.
class LogTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LogTableModel(QObject *parent = nullptr);

    /// Takes these rows in place of the former ones. A date that can't be read is shown as `now`.
    void setRecords(LogNodes records, const QDateTime &now);
    /// Takes away every row of these records. Others keep their place and their selection.
    void removeRecords(const LogNodes &records);
    [[nodiscard]] const LogNodes &records() const { return m_records; }
    /// The record of a row; null outside the list.
    [[nodiscard]] LogNodePtr record(int row) const;

    /// Images for a light or dark ground.
    void setDark(bool dark);

    /// What a cell shows: one line of bounded length, whatever the record holds. Empty outside the list.
    [[nodiscard]] QString text(int row, LogColumn column) const;
    [[nodiscard]] const QIcon &operationImage(int row) const;
    [[nodiscard]] const LogStatusLook &statusLook(int row) const;
    [[nodiscard]] const QIcon &statusImage(LogState state) const { return m_stateImages[std::size_t(state)]; }
    /// The first row from `first` on, round the end, whose operation or date begins with `typed` in any case;
    /// -1 without one.
    [[nodiscard]] int find(const QString &typed, int first) const;

    [[nodiscard]] static Qt::Alignment alignment(LogColumn column);
    /// The column's name in stored settings.
    [[nodiscard]] static QString identifier(LogColumn column);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    /// What all records of one operation, or of one status, have in common.
    struct Operation {
        QString text;
        QIcon image;
    };
    struct Status {
        QString text;
        LogStatusLook look;
    };

    const Operation &operation(int row) const;
    const Status &status(int row) const;
    [[nodiscard]] const QString &dateTime(int row) const;
    void removeFew(std::span<const int> rows);

    LogNodes m_records;
    DispatchQueue m_freeing{"ActivityLogs.free"};
    QDateTime m_now;
    mutable LogDates m_dates;
    mutable std::vector<QString> m_dateTimes; ///< by row; null until it is seen
    mutable QHash<QString, Operation> m_operations;
    mutable QHash<QString, Status> m_statuses;
    std::array<QIcon, LogStates> m_stateImages;
    bool m_isDark = false;
};
