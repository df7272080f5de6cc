// x9_tour LANGUAGE FOLDER [can]   Shows the program at work (LANGUAGE zh or en), to be started beside the adapter
// library: the virtual one, or with "can" one that has no LIN, on interfaces that somebody sends on.

#include "app/Application.h"
#include "app/GUI_CanView.h"
#include "device/CANCommunication.h"
#include "tools/tour/Tour.h"

#include <QApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    setApplicationAttributes();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const bool isCan = arguments.size() == 4 && arguments.at(3) == QLatin1String("can");
    if ((arguments.size() != 3 && !isCan) || !QDir(arguments.at(2)).exists()) {
        QTextStream(stderr) << "usage: x9_tour zh|en FOLDER [can]\n";
        return 2;
    }
    applyApplicationLook(application);
    Translators translators;
    installLanguage(translators, arguments.at(1) == QLatin1String("en") ? 1 : 0);

    GUI_CanView window(std::make_unique<CANCommunication>());
    window.show();
    const auto adapter = isCan ? Tour::Adapter::Can : Tour::Adapter::Virtual;
    return Tour(window, arguments.at(1), QDir(arguments.at(2)), adapter).run() ? 0 : 1;
}
