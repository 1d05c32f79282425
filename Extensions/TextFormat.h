#pragma once

#include <QString>
#include <QStringList>

/// Fills the placeholders of a format: "%@" takes the next argument, "%1$@" to "%9$@" the numbered one (so that
/// a translation can change the order), "%%" is a percent sign. A placeholder with no argument stays as it is,
/// and arguments are never scanned for placeholders, whatever they hold.
[[nodiscard]] QString formatted(const QString &format, const QStringList &arguments);
