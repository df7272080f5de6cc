// x9_viewer_gallery LANGUAGE FOLDER   Takes pictures of the viewer with a made-up capture (LANGUAGE zh or en):
// FOLDER/<LANGUAGE>-viewer.png, ...-viewer-filter.png, ...-viewer-plots.png and ...-viewer-dark.png, for a
// QT_SCALE_FACTOR of 2 ...@2x.png.

#include "tests/viewer/SyntheticCapture.h"
#include "viewer/CaptureTab.h"
#include "viewer/PlotArea.h"
#include "viewer/PlotPanel.h"
#include "viewer/ViewerApplication.h"
#include "viewer/ViewerWindow.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

namespace {

constexpr qint64 Frames = 200000;

/// As a system with light letters on dark windows hands it to programs.
QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53), QColor(35, 35, 35));
    palette.setColor(QPalette::AlternateBase, QColor(44, 44, 44));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    return palette;
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
    ViewerTranslators translators;
    installViewerLanguage(translators,
                          arguments.at(1) == QLatin1String("en") ? QStringLiteral("EN") : QStringLiteral("CN"));
    const QTemporaryDir settings;
    ViewerWindow window(ViewerSettings(settings.path()),
                        [](const QString & /*path*/) { return syntheticCapture(Frames); });
    window.show();
    const QString suffix = application.devicePixelRatio() > 1.5 ? QStringLiteral("@2x.png") : QStringLiteral(".png");
    const auto save = [&](const QString &name) {
        QTest::qWait(700); // the overview is brought up to date twice a second
        return window.grab().save(QDir(arguments.at(2)).filePath(arguments.at(1) + QLatin1Char('-') + name + suffix));
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
    isSaved = isSaved && showPlots(tab) && save(QStringLiteral("viewer-plots"));
    filter->take(QStringLiteral("fd or error"));
    QApplication::setPalette(darkPalette());
    isSaved = isSaved && save(QStringLiteral("viewer-plots-dark"));
    tab.plots().setDetached(true);
    QTest::qWait(700);
    isSaved = tab.plots().area().window()->grab().save(
                  QDir(arguments.at(2)).filePath(arguments.at(1) + QStringLiteral("-viewer-plots-window") + suffix)) &&
              isSaved;
    tab.plots().setDetached(false);
    tab.panels().setCurrentIndex(0);
    isSaved = isSaved && save(QStringLiteral("viewer-dark"));
    return isSaved ? 0 : 1;
}
