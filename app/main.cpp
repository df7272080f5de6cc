#include "app/ApplicationSetup.h"
#include "app/GUI_CanView.h"
#include "app/Settings.h"
#include "device/CANCommunication.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    setApplicationAttributes();
    QApplication application(argc, argv);
    applyApplicationLook(application);
    Translators translators;
    installLanguage(translators, getLanguage());

    GUI_CanView window(std::make_unique<CANCommunication>());
    window.show();
    return QApplication::exec();
}
