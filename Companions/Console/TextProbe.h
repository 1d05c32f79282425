#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// Reads what stands in the windows of a program the way a screen reader does, and presses what can be pressed:
/// over the accessibility bus. Of a table it reads the titles alone; LogTable reads its rows.
namespace TextProbe
{
/// Names of all that is shown in the windows of these processes, and what stands in their text fields, in the
/// order of the windows' contents. Empty when nothing can be read, for one because the program has just begun
/// to answer.
[[nodiscard]] QStringList texts(const QList<qint64> &processes);

/// Presses the first control that is shown under this name. False when there is none, or it cannot be pressed.
[[nodiscard]] bool press(const QList<qint64> &processes, const QString &name);
} // namespace TextProbe
