#include "Companions/MainApplication/FrontApplication.h"

#include "Companions/Common/Commands.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

FrontApplication::FrontApplication(QObject *parent) : QObject(parent)
{
}

bool FrontApplication::open()
{
    // The object first: whoever sees the name may call at once.
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.registerObject(u"/com/halvernet/Corvane"_s, this, QDBusConnection::ExportScriptableSlots) &&
           bus.registerService(u"com.halvernet.Corvane"_s);
}

void FrontApplication::Activate(const QVariantMap &)
{
    printLine(u"-- activated"_s);
}
