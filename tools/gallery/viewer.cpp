// x9_viewer_gallery LANGUAGE FOLDER   Takes pictures of the viewer with made-up captures (LANGUAGE zh or en):
// FOLDER/<LANGUAGE>-viewer.png, the steps of the guide's walk ...-viewer-walk-*, ...-viewer-filter, -bookmarks, -dark,
// -signals, -values, -databases, -signals-dark, -plots, -plots-dark, -failed, the windows ...-viewer-compare, -periods,
// -bus-load and the same with -dark, and the dialogs ...-viewer-colors, -colors-dark, -columns, -save and -save-dark;
// for a QT_SCALE_FACTOR of 2 ...@2x.png.

#include "tests/viewer/SyntheticCapture.h"
#include "tools/gallery/ViewerWalk.h"
#include "viewer/CaptureSignals.h"
#include "viewer/CaptureTab.h"
#include "viewer/ComparisonWindow.h"
#include "viewer/PlotArea.h"
#include "viewer/PlotPanel.h"
#include "viewer/TableLook.h"
#include "viewer/ViewerApplication.h"
#include "viewer/ViewerWindow.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QStyle>
#include <QTableWidget>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTreeView>
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
    palette.setColor(QPalette::PlaceholderText, QColor(160, 160, 160));
    return palette;
}

/// Of the panels for signals, with a database that has a mistake.
template<typename Save>
bool saveSignals(CaptureTab &tab, const QString &folder, Save save)
{
    QFile file(QDir(folder).filePath(QStringLiteral("engine.dbc")));
    if (!file.open(QIODevice::WriteOnly) || file.write(syntheticDatabase() + "BO_ none\n") < 0) {
        return false;
    }
    file.close();
    CaptureSignals &parts = tab.captureSignals();
    parts.add({file.fileName()});
    const bool isRead = QTest::qWaitFor([&parts] { return !parts.databases().isLoading(); });
    tab.panels().setCurrentIndex(1);
    tab.table().setCurrentPlace(40);
    tab.findChild<QTableWidget *>(QStringLiteral("signals"))->selectRow(1);
    bool isSaved = isRead && save(QStringLiteral("viewer-signals"));
    tab.panels().setCurrentIndex(2);
    tab.findChild<QTreeView *>(QStringLiteral("values"))->expandAll();
    isSaved = save(QStringLiteral("viewer-values")) && isSaved;
    tab.panels().setCurrentIndex(3);
    isSaved = save(QStringLiteral("viewer-databases")) && isSaved;
    tab.panels().setCurrentIndex(0);
    return isSaved;
}

/// Two names for what the capture's frames carry.
class GallerySignals : public SignalSource
{
public:
    QVector<Message> messages() const override { return {{0x100, QStringLiteral("Engine")}}; }
    QStringList signalNames() const override { return {QStringLiteral("OilPressure"), QStringLiteral("Pump")}; }
    int signalNumber(const QString &name) const override { return signalNames().indexOf(name); }
    QVector<FrameKey> carriers(int /*signal*/) const override { return {0x100}; }
    double value(int signal, const BusFrame &frame) const override
    {
        constexpr double Factor = 0.002;
        return signal == 0 ? (frame.data[0] | frame.data[1] << 8) * Factor : frame.data[5];
    }
    QString valueText(int signal, double value) const override
    {
        return signal == 0 ? QString() : value == 0 ? QStringLiteral("Off") : QStringLiteral("Running");
    }
};

bool showPlots(CaptureTab &tab)
{
    PlotPanel &plots = tab.plots();
    tab.capture().setSignalSource(std::make_shared<GallerySignals>());
    for (const char *text : {"OilPressure", "Pump", "rate 100ms of id == 0x18FF1234", "data[7] of id == 0x100"}) {
        plots.addExpression(QString::fromLatin1(text));
    }
    tab.panels().setCurrentWidget(&plots);
    const bool isFilled = QTest::qWaitFor([&plots] { return !plots.curves().isFilling(); });
    constexpr int Row = 29000;
    tab.table().setCurrentPlace(Row);
    constexpr qint64 Distance = 6000000000;
    plots.area().setSecondCursor(plots.area().cursor().value_or(0) + Distance);
    plots.moveCurve(3, -1);
    return isFilled;
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
    constexpr int UsualPoints = 9; // of the systems that have a desktop
    QFont font = QApplication::font();
    font.setPointSize(UsualPoints);
    QApplication::setFont(font);
    QApplication::setCursorFlashTime(0); // the same in each run
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
    const QTemporaryDir walk;
    bool isSaved = walkThroughCapture(walk.path(), saveOther) && save(QStringLiteral("viewer-welcome"));
    window.openFiles({QStringLiteral("drive.csv"), QStringLiteral("bench.blf")});
    CaptureTab &tab = *window.currentTab();
    const bool isLoaded = QTest::qWaitFor([&tab] { return tab.capture().overview().covered() == Frames; });
    tab.table().setCurrentPlace(40);
    tab.toggleMark();
    tab.table().setCurrentPlace(50);
    isSaved = isLoaded && isSaved && save(QStringLiteral("viewer"));
    isSaved = isSaved && saveSignals(tab, settings.path(), save);
    auto *filter = tab.findChild<FilterEdit *>(QStringLiteral("filter"));
    filter->take(QStringLiteral("data[5] == 1 and not ext"));
    isSaved = QTest::qWaitFor([&tab] { return !tab.capture().isFiltering(); }) && isSaved;
    filter->setText(QStringLiteral("data[5] == 1 and not exd"));
    isSaved = isSaved && save(QStringLiteral("viewer-filter"));
    filter->take({});
    isSaved = isSaved && showPlots(tab) && save(QStringLiteral("viewer-plots"));
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
    tab.setBookmark(58, QCoreApplication::translate("CaptureTab", "Bookmark"));
    tab.panels().setCurrentIndex(tab.panels().count() - 1);
    const auto saveDialog = [&](const QString &name) {
        QTest::qWait(100);
        auto *dialog = tab.table().findChild<QDialog *>();
        const QString path = arguments.at(1) + QLatin1Char('-') + name + suffix;
        const bool isDialogSaved = dialog->grab().save(QDir(arguments.at(2)).filePath(path));
        delete dialog;
        return isDialogSaved;
    };
    tab.look().slot_editColors(QStringLiteral("data[5] == 1 and Speed > 5"));
    isSaved = saveDialog(QStringLiteral("viewer-colors")) && isSaved;
    tab.look().slot_chooseColumns();
    isSaved = saveDialog(QStringLiteral("viewer-columns")) && isSaved;
    isSaved = isSaved && save(QStringLiteral("viewer-bookmarks"));
    filter->take(QStringLiteral("fd or error or tx"));
    QApplication::setPalette(darkPalette());
    tab.panels().setCurrentWidget(&tab.plots());
    isSaved = isSaved && save(QStringLiteral("viewer-plots-dark"));
    tab.plots().setDetached(true);
    QTest::qWait(700);
    isSaved = tab.plots().area().window()->grab().save(
                  QDir(arguments.at(2)).filePath(arguments.at(1) + QStringLiteral("-viewer-plots-window") + suffix)) &&
              isSaved;
    tab.plots().setDetached(false);
    tab.panels().setCurrentIndex(0);
    for (const auto &[shown, name] : others) {
        isSaved = isSaved && saveOther(*shown, name + QStringLiteral("-dark"));
    }
    tab.look().slot_editColors(QStringLiteral("data[5] == 1"));
    isSaved = saveDialog(QStringLiteral("viewer-colors-dark")) && isSaved;
    isSaved = isSaved && save(QStringLiteral("viewer-dark"));
    filter->take({});
    tab.panels().setCurrentIndex(1);
    tab.table().setCurrentPlace(40);
    isSaved = isSaved && save(QStringLiteral("viewer-signals-dark"));
    window.findChild<QAction *>(QStringLiteral("saveAs"))->trigger();
    auto *dialog = window.findChild<QDialog *>(QStringLiteral("saveDialog"));
    const auto saveSaving = [&](const QString &name) {
        QTest::qWait(1000); // the kind is tried out with all frames
        return dialog->grab().save(QDir(arguments.at(2)).filePath(arguments.at(1) + QLatin1Char('-') + name + suffix));
    };
    isSaved = isSaved && saveSaving(QStringLiteral("viewer-save-dark"));
    QApplication::setPalette(QApplication::style()->standardPalette());
    auto *kinds = dialog->findChild<QComboBox *>(QStringLiteral("kind"));
    kinds->setCurrentIndex(kinds->findData(QStringLiteral("can")));
    emit kinds->activated(kinds->currentIndex());
    isSaved = isSaved && saveSaving(QStringLiteral("viewer-save"));
    dialog->close();
    ViewerWindow real{ViewerSettings(settings.path())};
    real.resize(window.size() * 2 / 3);
    real.show();
    real.openFiles({settings.filePath(QStringLiteral("missing.csv"))});
    QTest::qWait(700);
    isSaved =
        isSaved &&
        real.grab().save(QDir(arguments.at(2)).filePath(arguments.at(1) + QStringLiteral("-viewer-failed") + suffix));
    return isSaved ? 0 : 1;
}
