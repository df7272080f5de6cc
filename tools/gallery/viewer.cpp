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

#include <tuple>
#include <utility>

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

/// Of a window with a made-up capture.
class Gallery
{
public:
    Gallery(QString language, const QString &folder, QString suffix)
        : m_language(std::move(language))
        , m_folder(folder)
        , m_suffix(std::move(suffix))
    {
    }

    bool save(QWidget &shown, const QString &name) const
    {
        QTest::qWait(700); // windows are brought up to date twice a second
        return shown.grab().save(m_folder.filePath(QStringLiteral("%1-%2%3").arg(m_language, name, m_suffix)));
    }
    bool saveAll();

private:
    bool saveWindow(const char *name) { return save(m_window, QLatin1String(name)); }
    bool saveFilter();
    bool saveAnalyses(const QString &suffix);
    bool saveDialogs();
    bool saveDark();
    bool saveSaving();
    bool saveFailed();
    bool saveDialog(const QString &name) const;
    CaptureTab &tab() { return *m_window.currentTab(); }
    FilterEdit &filter() { return *tab().findChild<FilterEdit *>(QStringLiteral("filter")); }

    QString m_language;
    QDir m_folder;
    QString m_suffix;
    QTemporaryDir m_settings;
    ViewerWindow m_window{ViewerSettings(m_settings.path()), [](const QString & /*path*/) {
                              return syntheticCapture(Frames);
                          }};
};

bool Gallery::saveAll()
{
    m_window.show();
    bool isSaved = saveWindow("viewer-welcome");
    m_window.openFiles({QStringLiteral("drive.csv"), QStringLiteral("bench.blf")});
    isSaved = QTest::qWaitFor([this] { return tab().capture().overview().covered() == Frames; }) && isSaved;
    tab().table().setCurrentPlace(40);
    tab().toggleMark();
    tab().table().setCurrentPlace(50);
    isSaved = isSaved && saveWindow("viewer");
    isSaved =
        isSaved && saveSignals(tab(), m_settings.path(), [this](const QString &name) { return save(m_window, name); });
    isSaved = isSaved && saveFilter() && showPlots(tab()) && saveWindow("viewer-plots");
    tab().toggleMark();
    tab().table().setCurrentPlace(30001); // its switch moves there
    tab().toggleMark();
    return isSaved && saveAnalyses({}) && saveDialogs() && saveDark() && saveSaving() && saveFailed();
}

/// One that is right and one with a mistake.
bool Gallery::saveFilter()
{
    filter().take(QStringLiteral("data[5] == 1 and not ext"));
    const bool isFiltered = QTest::qWaitFor([this] { return !tab().capture().isFiltering(); });
    filter().setText(QStringLiteral("data[5] == 1 and not exd"));
    const bool isSaved = saveWindow("viewer-filter");
    filter().take({});
    return isFiltered && isSaved;
}

bool Gallery::saveAnalyses(const QString &suffix)
{
    for (const auto &[action, name, picture] : {std::make_tuple("compareAtMark", "comparison", "viewer-compare"),
                                                std::make_tuple("periods", "periods", "viewer-periods"),
                                                std::make_tuple("busLoad", "busLoad", "viewer-bus-load")}) {
        auto *shown = m_window.findChild<QWidget *>(QLatin1String(name));
        shown = shown != nullptr ? shown : openWindow(m_window, action, name);
        if (shown == nullptr || !save(*shown, QLatin1String(picture) + suffix)) {
            return false;
        }
    }
    return true;
}

bool Gallery::saveDialog(const QString &name) const
{
    auto *dialog = m_window.currentTab()->table().findChild<QDialog *>();
    const bool isSaved = dialog != nullptr && save(*dialog, name);
    delete dialog;
    return isSaved;
}

bool Gallery::saveDialogs()
{
    tab().setBookmark(58, QCoreApplication::translate("CaptureTab", "Bookmark"));
    tab().panels().setCurrentIndex(tab().panels().count() - 1);
    tab().look().slot_editColors(QStringLiteral("data[5] == 1 and Speed > 5"));
    bool isSaved = saveDialog(QStringLiteral("viewer-colors"));
    tab().look().slot_chooseColumns();
    isSaved = saveDialog(QStringLiteral("viewer-columns")) && isSaved;
    return isSaved && saveWindow("viewer-bookmarks");
}

bool Gallery::saveDark()
{
    filter().take(QStringLiteral("fd or error or tx"));
    QApplication::setPalette(darkPalette());
    tab().panels().setCurrentWidget(&tab().plots());
    bool isSaved = saveWindow("viewer-plots-dark");
    tab().plots().setDetached(true);
    isSaved = save(*tab().plots().area().window(), QStringLiteral("viewer-plots-window")) && isSaved;
    tab().plots().setDetached(false);
    tab().panels().setCurrentIndex(0);
    isSaved = saveAnalyses(QStringLiteral("-dark")) && isSaved;
    tab().look().slot_editColors(QStringLiteral("data[5] == 1"));
    isSaved = saveDialog(QStringLiteral("viewer-colors-dark")) && isSaved;
    isSaved = saveWindow("viewer-dark") && isSaved;
    filter().take({});
    tab().panels().setCurrentIndex(1);
    tab().table().setCurrentPlace(40);
    return saveWindow("viewer-signals-dark") && isSaved;
}

/// The dialog, in dark and in light surroundings.
bool Gallery::saveSaving()
{
    constexpr int TryMs = 300; // the kind is tried out with all frames
    m_window.findChild<QAction *>(QStringLiteral("saveAs"))->trigger();
    auto *dialog = m_window.findChild<QDialog *>(QStringLiteral("saveDialog"));
    QTest::qWait(TryMs);
    bool isSaved = save(*dialog, QStringLiteral("viewer-save-dark"));
    QApplication::setPalette(QApplication::style()->standardPalette());
    auto *kinds = dialog->findChild<QComboBox *>(QStringLiteral("kind"));
    kinds->setCurrentIndex(kinds->findData(QStringLiteral("can")));
    emit kinds->activated(kinds->currentIndex());
    QTest::qWait(TryMs);
    isSaved = save(*dialog, QStringLiteral("viewer-save")) && isSaved;
    dialog->close();
    return isSaved;
}

bool Gallery::saveFailed()
{
    ViewerWindow real{ViewerSettings(m_settings.path())};
    real.resize(m_window.size() * 2 / 3);
    real.show();
    real.openFiles({m_settings.filePath(QStringLiteral("missing.csv"))});
    return save(real, QStringLiteral("viewer-failed"));
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
    const bool isDense = application.devicePixelRatio() > 1.5;
    Gallery gallery(arguments.at(1), arguments.at(2), isDense ? QStringLiteral("@2x.png") : QStringLiteral(".png"));
    const QTemporaryDir walk;
    const bool isWalked =
        walkThroughCapture(walk.path(), [&](QWidget &shown, const QString &name) { return gallery.save(shown, name); });
    return isWalked && gallery.saveAll() ? 0 : 1;
}
