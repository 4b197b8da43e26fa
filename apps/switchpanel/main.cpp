// switchpanel: the view models of the switch device panel on the command line.
#include "console.h"
#include "program.h"

#include <QtCore/QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("switchpanel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SWITCHPANEL_VERSION));
    console::prepare();
    return static_cast<int>(runProgram(QCoreApplication::arguments().mid(1)));
}
