// x9_gallery LANGUAGE FOLDER   Takes a picture of every window of the program (LANGUAGE zh or en), with the offscreen
// platform as well as on a screen: FOLDER/<LANGUAGE>-<window>.png, for a QT_SCALE_FACTOR of 2 ...@2x.png.

#include "app/Application.h"
#include "app/Settings.h"
#include "tests/support/WindowCatalog.h"

#include <QAbstractAnimation>
#include <QApplication>
#include <QDir>
#include <QTextStream>
#include <QtTest>
#include <QWidget>

#include <algorithm>

namespace {
bool isMoving(const QWidget &window)
{
    const auto animations = window.findChildren<QAbstractAnimation *>();
    return std::any_of(animations.begin(), animations.end(), [](const QAbstractAnimation *animation) {
        return animation->state() == QAbstractAnimation::Running;
    });
}

bool takePicture(QWidget &window, const QString &path)
{
    return QTest::qWaitFor([&window] { return !isMoving(window); }) && window.grab().save(path);
}
} // namespace

int main(int argc, char *argv[])
{
    setApplicationAttributes();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3 || !QDir(arguments.at(2)).exists()) {
        QTextStream(stderr) << "usage: x9_gallery zh|en FOLDER\n";
        return 2;
    }
    applyApplicationLook(application);
    const QString &language = arguments.at(1);
    Translators translators;
    const int languageIndex = language == QLatin1String("en") ? 1 : 0;
    installLanguage(translators, languageIndex);
    setLanguage(languageIndex); // the language menu shows what is stored

    const QDir folder(QDir(arguments.at(2)).absolutePath()); // the windows change the working directory
    const QString suffix = application.devicePixelRatio() > 1 ? QStringLiteral("@2x.png") : QStringLiteral(".png");
    for (const CatalogWindow &entry : windowCatalog()) {
        const QString path = folder.filePath(language + QLatin1Char('-') + entry.name + suffix);
        bool isTaken = false;
        entry.show([&](QWidget &window) { isTaken = takePicture(window, path); });
        if (!isTaken) {
            QTextStream(stderr) << "No picture of " << entry.name << ".\n";
            return 1;
        }
    }
    return 0;
}
