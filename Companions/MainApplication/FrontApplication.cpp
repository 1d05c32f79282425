#include "Companions/MainApplication/FrontApplication.h"

#include "Companions/Common/Commands.h"

#include <QDBusConnection>

FrontApplication::FrontApplication(QObject *parent) : QObject(parent)
{
}

bool FrontApplication::open()
{
    // The object first: whoever sees the name may call at once.
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.registerObject(QStringLiteral("/com/halvernet/Corvane"), this,
                              QDBusConnection::ExportScriptableSlots) &&
           bus.registerService(QStringLiteral("com.halvernet.Corvane"));
}

void FrontApplication::Activate(const QVariantMap &)
{
    printLine(QStringLiteral("-- activated"));
}
