#pragma once

#include <QObject>
#include <QVariantMap>

/// The application as the desktop knows it while it runs: the owner of its bus name, which others bring to the
/// front.
class FrontApplication : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit FrontApplication(QObject *parent = nullptr);

    /// Takes the name. False when there is no session bus, or somebody else has it.
    [[nodiscard]] bool open();

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
};
