#pragma once

#include <QString>

#include <functional>

class QWidget;

/// A window in which the user chooses a folder, or makes one; it does not hold the caller up. `chosen` is
/// called with a path as the file system names it, and not at all when the user cancels or `parent` goes.
void chooseLogFolder(QWidget *parent, const QString &start, std::function<void(const QString &)> chosen);
