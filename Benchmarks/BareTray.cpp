// The least that a Qt program with a status item can do: what the start of the monitor is measured beside.
#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QPixmap dot(22, 22);
    dot.fill(Qt::darkGreen);
    QSystemTrayIcon item{QIcon(dot)};
    item.show();
    return QApplication::exec();
}
