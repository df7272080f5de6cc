#pragma once

#include "viewer/core/StoreLoader.h"
#include "viewer/TableSettings.h"
#include "viewer/ViewerSettings.h"

#include <QMainWindow>

#include <functional>

class CaptureTab;
class QMenu;
class QTabWidget;

/// The viewer's window: captures in tabs, and the menus for them.
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// What opens the capture at a path, on another thread.
    using Opener = std::function<StoreLoader::Open(const QString &path)>;

    explicit ViewerWindow(ViewerSettings settings, Opener opener = openFile, QWidget *parent = nullptr);
    ~ViewerWindow() override;

    /// Opens each in a tab of its own, or shows the tab that has it. Databases go to the tab in front.
    void openFiles(const QStringList &paths);
    static StoreLoader::Open openFile(const QString &path);
    /// The tab in front; null where there is none.
    CaptureTab *currentTab() const;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private slots:
    void slot_open();
    void slot_saveAs();
    void slot_loadAgain();
    void slot_fillRecent();
    void slot_closeTab(int index);
    void slot_tabsChanged();
    void slot_languageChosen(QAction *action);

private:
    CaptureTab *addTab(const QString &path, int index);
    void makeFileMenu();
    void makeGoMenu();
    void makeViewMenu();
    void addDatabases(const QStringList &paths);
    static QWidget *makeWelcome();
    /// An entry for the tab in front, which is off while there is none.
    template<typename Function>
    void addTabAction(QMenu &menu, const QString &text, const QKeySequence &key, Function function);

    ViewerSettings m_settings;
    TableSettings m_tableSettings;
    Opener m_opener;
    QTabWidget *m_tabs;
    QWidget *m_welcome;
    QMenu *m_recent = nullptr;
    QAction *m_panels = nullptr;
    QList<QAction *> m_tabActions;
};
