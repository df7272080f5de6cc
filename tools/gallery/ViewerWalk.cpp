#include "tools/gallery/ViewerWalk.h"

#include "tools/gallery/WalkCapture.h"
#include "viewer/CaptureSignals.h"
#include "viewer/CaptureTab.h"
#include "viewer/PlotArea.h"
#include "viewer/PlotPane.h"
#include "viewer/PlotPanel.h"
#include "viewer/ViewerWindow.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

namespace {

constexpr int OpenedMs = 24000;

/// One step after the other, each as a user does it.
class Walk
{
public:
    Walk(const QString &folder, const SavePicture &save)
        : m_folder(folder)
        , m_save(save)
        , m_window(ViewerSettings(m_folder.filePath(QStringLiteral("settings"))))
    {
        m_window.resize(1080, 700);
        m_window.show();
        m_window.activateWindow();
    }

    bool open();
    bool addDatabase();
    bool plot();
    bool goToDrop();
    bool findSent();
    bool savePlot();
    bool plotMore();
    bool compare();

private:
    QString capture() const { return m_folder.filePath(QStringLiteral("drive.csv")); }
    bool save(const char *name) { return m_save(m_window, QLatin1String(name)); }
    void makePanelsHigher() const;
    void drag(qint64 fromMs, qint64 toMs) const;

    QDir m_folder;
    const SavePicture &m_save;
    ViewerWindow m_window;
    CaptureTab *m_tab = nullptr;
};

bool Walk::open()
{
    if (!WalkCapture::append(capture(), 0, OpenedMs)) {
        return false;
    }
    m_window.openFiles({capture()});
    m_tab = m_window.currentTab();
    const OpenCapture &opened = m_tab->capture();
    const bool isFollowing = QTest::qWaitFor(
        [&] { return opened.loader().progress().state == LoadProgress::State::Following && opened.rowCount() > 0; });
    QTest::mouseClick(m_tab->findChild<QToolButton *>(QStringLiteral("stayAtEnd")), Qt::LeftButton);
    return isFollowing && save("viewer-walk-open") && WalkCapture::append(capture(), OpenedMs, WalkCapture::EndMs);
}

bool Walk::addDatabase()
{
    QFile file(m_folder.filePath(QStringLiteral("engine.dbc")));
    if (!file.open(QIODevice::WriteOnly) || file.write(WalkCapture::database()) < 0) {
        return false;
    }
    file.close();
    m_window.openFiles({file.fileName()}); // as one that is dropped
    const CaptureDatabases &databases = m_tab->captureSignals().databases();
    if (!QTest::qWaitFor([&] { return !databases.isLoading(); })) {
        return false;
    }
    m_tab->panels().setCurrentIndex(2);
    auto &panel = *m_tab->panels().currentWidget();
    panel.findChild<QLineEdit *>(QStringLiteral("search"))->setText(QStringLiteral("oil"));
    auto *tree = panel.findChild<QTreeView *>(QStringLiteral("values"));
    const QModelIndex message = tree->model()->index(0, 0);
    tree->setCurrentIndex(tree->model()->index(0, 0, message));
    return save("viewer-walk-values");
}

bool Walk::plot()
{
    m_window.findChild<QPushButton *>(QStringLiteral("plotThis"))->click();
    makePanelsHigher();
    return QTest::qWaitFor([this] { return !m_tab->plots().curves().isFilling(); }) && save("viewer-walk-plot");
}

void Walk::makePanelsHigher() const
{
    auto *splitter = qobject_cast<QSplitter *>(m_tab->panels().parentWidget());
    splitter->setSizes({1, 1});
}

/// With Shift, which chooses a section, or a click where both are the same.
void Walk::drag(qint64 fromMs, qint64 toMs) const
{
    PlotArea &area = m_tab->plots().area();
    QWidget &canvas = *area.pane(0).canvas();
    const auto point = [&](qint64 ms) {
        constexpr double Nanoseconds = 1e6;
        const double time = static_cast<double>(ms) * Nanoseconds - static_cast<double>(area.views().section().begin);
        return QPoint(qRound(time / area.perPixel()), canvas.height() / 2);
    };
    const Qt::KeyboardModifiers modifiers = fromMs == toMs ? Qt::NoModifier : Qt::ShiftModifier;
    const QPoint end = point(toMs);
    QTest::mousePress(&canvas, Qt::LeftButton, modifiers, point(fromMs));
    QMouseEvent move(QEvent::MouseMove, end, canvas.mapToGlobal(end), Qt::NoButton, Qt::LeftButton, modifiers);
    QApplication::sendEvent(&canvas, &move);
    QTest::mouseRelease(&canvas, Qt::LeftButton, modifiers, end);
    QTest::qWait(100); // drawn
}

bool Walk::goToDrop()
{
    drag(WalkCapture::DropMs - 900, WalkCapture::DropMs + 1300);
    drag(WalkCapture::DropMs + 20, WalkCapture::DropMs + 20);
    return save("viewer-walk-drop");
}

bool Walk::findSent()
{
    PlotArea &area = m_tab->plots().area();
    QTest::keyClick(&area.pane(0), Qt::Key_S);
    m_tab->editFind();
    auto *find = m_tab->findChild<QLineEdit *>(QStringLiteral("find"));
    QTest::keyClicks(find, QStringLiteral("tx"));
    m_tab->findNext(true);
    const bool isFound = QTest::qWaitFor([this] {
        const qint64 row = m_tab->table().currentRow();
        return row >= 0 && m_tab->capture().store().frame(row).direction == BusFrame::Sent;
    });
    m_tab->panels().setCurrentIndex(1);
    return isFound && save("viewer-walk-sent");
}

bool Walk::savePlot()
{
    PlotPanel &plots = m_tab->plots();
    m_tab->panels().setCurrentWidget(&plots);
    QTest::qWait(100);
    const QString path = m_folder.filePath(QStringLiteral("answer.png"));
    QSignalSpy saved(&plots, &PlotPanel::sig_exported);
    plots.exportTo(path, false);
    constexpr int SaveMs = 10000;
    return saved.wait(SaveMs) && saved.first().at(1).toString().isEmpty() && save("viewer-walk-answer");
}

/// With what else moved, over the whole time.
bool Walk::plotMore()
{
    PlotPanel &plots = m_tab->plots();
    for (const char *text : {"PumpState", "Speed", "rate of tx"}) {
        plots.addExpression(QLatin1String(text));
    }
    plots.area().showWhole();
    return QTest::qWaitFor([&] { return !plots.curves().isFilling(); }) && save("viewer-walk-plots");
}

/// Before and after the frame that was found.
bool Walk::compare()
{
    m_tab->panels().setCurrentIndex(0);
    m_window.findChild<QAction *>(QStringLiteral("compareAtMark"))->trigger();
    auto *comparison = m_window.findChild<QWidget *>(QStringLiteral("comparison"));
    return comparison != nullptr && m_save(*comparison, QStringLiteral("viewer-walk-compare"));
}

} // namespace

bool walkThroughCapture(const QString &folder, const SavePicture &save)
{
    Walk walk(folder, save);
    return walk.open() && walk.addDatabase() && walk.plot() && walk.goToDrop() && walk.findSent() && walk.savePlot() &&
           walk.plotMore() && walk.compare();
}
