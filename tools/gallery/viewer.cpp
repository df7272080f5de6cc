// x9_viewer_gallery LANGUAGE FOLDER   Takes pictures of the viewer with a made-up capture (LANGUAGE zh or en):
// FOLDER/<LANGUAGE>-viewer.png, ...-viewer-filter.png, ...-viewer-dark.png, and of its other windows; for a
// QT_SCALE_FACTOR of 2 ...@2x.png.

#include "tests/viewer/SyntheticCapture.h"
#include "viewer/CaptureTab.h"
#include "viewer/ComparisonWindow.h"
#include "viewer/ViewerApplication.h"
#include "viewer/ViewerWindow.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

namespace {

constexpr qint64 Frames = 200000;

/// Opens a window by the entry of a menu; null where none came.
QWidget *openWindow(ViewerWindow &window, const char *action, const char *name)
{
    window.findChild<QAction *>(QLatin1String(action))->trigger();
    return window.findChild<QWidget *>(QLatin1String(name));
}

/// As a system with light letters on dark windows hands it to programs.
QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53), QColor(35, 35, 35));
    palette.setColor(QPalette::AlternateBase, QColor(44, 44, 44));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    return palette;
}

} // namespace

int main(int argc, char *argv[])
{
    setViewerAttributes();
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3 || !QDir(arguments.at(2)).exists()) {
        QTextStream(stderr) << "usage: x9_viewer_gallery zh|en FOLDER\n";
        return 2;
    }
    applyViewerLook();
    ViewerTranslators translators;
    installViewerLanguage(translators,
                          arguments.at(1) == QLatin1String("en") ? QStringLiteral("EN") : QStringLiteral("CN"));
    const QTemporaryDir settings;
    ViewerWindow window(ViewerSettings(settings.path()),
                        [](const QString & /*path*/) { return syntheticCapture(Frames); });
    window.show();
    const QString suffix = application.devicePixelRatio() > 1.5 ? QStringLiteral("@2x.png") : QStringLiteral(".png");
    const auto saveOther = [&](QWidget &shown, const QString &name) {
        QTest::qWait(700); // windows are brought up to date twice a second
        return shown.grab().save(QDir(arguments.at(2)).filePath(arguments.at(1) + QLatin1Char('-') + name + suffix));
    };
    const auto save = [&](const QString &name) {
        return saveOther(window, name);
    };
    bool isSaved = save(QStringLiteral("viewer-welcome"));
    window.openFiles({QStringLiteral("drive.csv"), QStringLiteral("bench.blf")});
    CaptureTab &tab = *window.currentTab();
    const bool isLoaded = QTest::qWaitFor([&tab] { return tab.capture().overview().covered() == Frames; });
    tab.table().setCurrentPlace(40);
    tab.toggleMark();
    tab.table().setCurrentPlace(50);
    isSaved = isLoaded && isSaved && save(QStringLiteral("viewer"));
    auto *filter = tab.findChild<FilterEdit *>(QStringLiteral("filter"));
    filter->take(QStringLiteral("data[5] == 1 and not ext"));
    isSaved = QTest::qWaitFor([&tab] { return !tab.capture().isFiltering(); }) && isSaved;
    filter->setText(QStringLiteral("data[5] == 1 and not exd"));
    isSaved = isSaved && save(QStringLiteral("viewer-filter"));
    filter->take({});
    tab.toggleMark();
    tab.table().setCurrentPlace(30001); // its switch moves there
    tab.toggleMark();
    const QVector<QPair<QWidget *, QString>> others{
        {openWindow(window, "compareAtMark", "comparison"), QStringLiteral("viewer-compare")},
        {openWindow(window, "periods", "periods"), QStringLiteral("viewer-periods")},
        {openWindow(window, "busLoad", "busLoad"), QStringLiteral("viewer-bus-load")}};
    for (const auto &[shown, name] : others) {
        isSaved = isSaved && shown != nullptr && saveOther(*shown, name);
    }
    filter->take(QStringLiteral("fd or error"));
    QApplication::setPalette(darkPalette());
    for (const auto &[shown, name] : others) {
        isSaved = isSaved && saveOther(*shown, name + QStringLiteral("-dark"));
    }
    isSaved = isSaved && save(QStringLiteral("viewer-dark"));
    return isSaved ? 0 : 1;
}
