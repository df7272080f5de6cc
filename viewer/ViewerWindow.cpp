#include "viewer/ViewerWindow.h"

#include "viewer/CaptureTab.h"
#include "viewer/core/CaptureFile.h"
#include "viewer/TableLook.h"
#include "widgets/CMessageBox.h"

#include <QActionGroup>
#include <QApplication>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QStackedWidget>
#include <QTabWidget>

#include <utility>

namespace {

constexpr int StartWidth = 1200;
constexpr int StartHeight = 760;

QStringList localFiles(const QMimeData &data)
{
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile()) {
            paths.append(url.toLocalFile());
        }
    }
    return paths;
}

} // namespace

template<typename Function>
void ViewerWindow::addTabAction(QMenu &menu, const QString &text, const QKeySequence &key, Function function)
{
    QAction *action = menu.addAction(text, this, [this, function] {
        if (CaptureTab *tab = currentTab()) {
            function(*tab);
        }
    });
    action->setShortcut(key);
    m_tabActions.append(action);
}

ViewerWindow::ViewerWindow(ViewerSettings settings, Opener opener, QWidget *parent)
    : QMainWindow(parent)
    , m_settings(std::move(settings))
    , m_tableSettings(m_settings)
    , m_opener(std::move(opener))
    , m_tabs(new QTabWidget)
    , m_welcome(makeWelcome())
{
    setWindowTitle(QStringLiteral("X9Viewer"));
    setAcceptDrops(true);
    m_tabs->setObjectName(QStringLiteral("tabs"));
    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    m_tabs->setDocumentMode(true);
    connect(m_tabs, &QTabWidget::tabCloseRequested, this, &ViewerWindow::slot_closeTab);
    connect(m_tabs, &QTabWidget::currentChanged, this, &ViewerWindow::slot_tabsChanged);
    auto *pages = new QStackedWidget;
    pages->addWidget(m_welcome);
    pages->addWidget(m_tabs);
    setCentralWidget(pages);
    makeFileMenu();
    makeGoMenu();
    makeViewMenu();
    resize(StartWidth, StartHeight);
    restoreGeometry(m_settings.windowGeometry());
    slot_tabsChanged();
}

/// The tabs use the settings, which go before the window's children do.
ViewerWindow::~ViewerWindow()
{
    const QSignalBlocker blocker(m_tabs);
    while (m_tabs->count() > 0) {
        delete m_tabs->widget(0);
    }
}

QWidget *ViewerWindow::makeWelcome()
{
    auto *label = new QLabel(tr("Drop captures here, or open them with Ctrl+O."));
    label->setAlignment(Qt::AlignCenter);
    return label;
}

void ViewerWindow::makeFileMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    menu->addAction(tr("&Open..."), this, &ViewerWindow::slot_open, QKeySequence::Open);
    m_recent = menu->addMenu(tr("Open &recent"));
    connect(m_recent, &QMenu::aboutToShow, this, &ViewerWindow::slot_fillRecent);
    menu->addSeparator();
    QAction *close = menu->addAction(
        tr("&Close"), this, [this] { slot_closeTab(m_tabs->currentIndex()); }, QKeySequence::Close);
    m_tabActions.append(close);
    menu->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence(QStringLiteral("Ctrl+Q")));
}

void ViewerWindow::makeGoMenu()
{
    QMenu &menu = *menuBar()->addMenu(tr("&Go"));
    addTabAction(menu, tr("&Filter"), QKeySequence(QStringLiteral("Ctrl+L")),
                 [](CaptureTab &tab) { tab.editFilter(); });
    addTabAction(menu, tr("F&ind"), QKeySequence::Find, [](CaptureTab &tab) { tab.editFind(); });
    addTabAction(menu, tr("Find &next"), QKeySequence(Qt::Key_F3), [](CaptureTab &tab) { tab.findNext(false); });
    addTabAction(menu, tr("Find &previous"), QKeySequence(QStringLiteral("Shift+F3")),
                 [](CaptureTab &tab) { tab.findNext(true); });
    menu.addSeparator();
    addTabAction(menu, tr("Go &to..."), QKeySequence(QStringLiteral("Ctrl+G")), [](CaptureTab &tab) { tab.goTo(); });
    addTabAction(menu, tr("Time &zero here"), QKeySequence(QStringLiteral("Ctrl+M")),
                 [](CaptureTab &tab) { tab.toggleMark(); });
    menu.addSeparator();
    addTabAction(menu, tr("&Bookmark..."), QKeySequence(QStringLiteral("Ctrl+B")),
                 [](CaptureTab &tab) { tab.editBookmark(); });
    addTabAction(menu, tr("Next boo&kmark"), QKeySequence(Qt::Key_F2),
                 [](CaptureTab &tab) { tab.goToBookmark(false); });
    addTabAction(menu, tr("Pre&vious bookmark"), QKeySequence(QStringLiteral("Shift+F2")),
                 [](CaptureTab &tab) { tab.goToBookmark(true); });
}

void ViewerWindow::makeViewMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&View"));
    m_panels = menu->addAction(tr("&Panels below the frames"));
    m_panels->setCheckable(true);
    m_panels->setChecked(true);
    m_panels->setShortcut(QKeySequence(QStringLiteral("Ctrl+I")));
    connect(m_panels, &QAction::toggled, this, &ViewerWindow::slot_tabsChanged);
    addTabAction(*menu, tr("C&olumns..."), {}, [](CaptureTab &tab) { tab.look().slot_chooseColumns(); });
    addTabAction(*menu, tr("Colour &rules..."), QKeySequence(QStringLiteral("Ctrl+Shift+K")),
                 [](CaptureTab &tab) { tab.look().slot_editColors(); });
    QMenu *languages = menu->addMenu(tr("&Language"));
    auto *group = new QActionGroup(this);
    for (const auto &[code, name] : {std::make_pair("CN", tr("Chinese")), std::make_pair("EN", tr("English"))}) {
        QAction *action = group->addAction(languages->addAction(name));
        action->setObjectName(QLatin1String(code));
        action->setCheckable(true);
        action->setChecked(m_settings.language() == QLatin1String(code));
    }
    connect(group, &QActionGroup::triggered, this, &ViewerWindow::slot_languageChosen);
}

CaptureTab *ViewerWindow::currentTab() const
{
    return qobject_cast<CaptureTab *>(m_tabs->currentWidget());
}

StoreLoader::Open ViewerWindow::openFile(const QString &path)
{
    return [path](Findings &findings, QString &error) {
        return CaptureFile::open(path, findings, error);
    };
}

void ViewerWindow::openFiles(const QStringList &paths)
{
    for (const QString &path : paths) {
        const QString absolute = QFileInfo(path).absoluteFilePath();
        int index = 0;
        while (index < m_tabs->count() && m_tabs->tabToolTip(index) != absolute) {
            ++index;
        }
        if (index == m_tabs->count()) {
            auto *tab = new CaptureTab(absolute, m_opener(absolute), m_settings.bookmarkFolder());
            tab->setSettings(m_tableSettings);
            m_tabs->addTab(tab, QFileInfo(path).fileName());
            m_tabs->setTabToolTip(index, absolute);
            m_settings.addRecentFile(absolute);
        }
        m_tabs->setCurrentIndex(index);
    }
    slot_tabsChanged();
}

void ViewerWindow::slot_open()
{
    openFiles(QFileDialog::getOpenFileNames(this, tr("Open captures")));
}

void ViewerWindow::slot_fillRecent()
{
    m_recent->clear();
    const QStringList files = m_settings.recentFiles();
    for (const QString &path : files) {
        QString name = path;
        m_recent->addAction(name.replace(QLatin1Char('&'), QStringLiteral("&&")), this,
                            [this, path] { openFiles({path}); });
    }
    m_recent->setEnabled(true);
}

void ViewerWindow::slot_closeTab(int index)
{
    delete m_tabs->widget(index);
    slot_tabsChanged();
}

void ViewerWindow::slot_tabsChanged()
{
    auto *pages = qobject_cast<QStackedWidget *>(centralWidget());
    pages->setCurrentIndex(m_tabs->count() > 0 ? 1 : 0);
    CaptureTab *tab = currentTab();
    for (QAction *action : qAsConst(m_tabActions)) {
        action->setEnabled(tab != nullptr);
    }
    setWindowTitle(tab != nullptr ? m_tabs->tabText(m_tabs->currentIndex()) + QStringLiteral(" - X9Viewer")
                                  : QStringLiteral("X9Viewer"));
    if (tab != nullptr) {
        tab->showPanels(m_panels->isChecked());
        tab->table().setFocus();
    }
}

void ViewerWindow::slot_languageChosen(QAction *action)
{
    m_settings.setLanguage(action->objectName());
    auto *box = new CMessageBox(CMessageBox::Information, tr("Language"),
                                tr("The language changes when the program is started again."), CMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void ViewerWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!localFiles(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void ViewerWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    openFiles(localFiles(*event->mimeData()));
}

void ViewerWindow::closeEvent(QCloseEvent *event)
{
    m_settings.setWindowGeometry(saveGeometry());
    QMainWindow::closeEvent(event);
}
