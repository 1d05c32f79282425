#pragma once

#include "Companions/Common/PathTable.h"

#include <QTemporaryDir>

/// A home folder of its own for one test, and the product's path table in it. There is no session bus.
class TemporaryHome
{
public:
    TemporaryHome() : m_oldHome(qgetenv("HOME"))
    {
        qputenv("HOME", m_folder.path().toLocal8Bit());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    }
    ~TemporaryHome() { qputenv("HOME", m_oldHome); }

    const PathTable table = PathTable::load({}).value_or(PathTable({}));

private:
    QTemporaryDir m_folder;
    QByteArray m_oldHome;
};
