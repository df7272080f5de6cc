#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/CaptureTab.h"
#include "viewer/ViewerWindow.h"

#include <QAction>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

class tst_ViewerWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void settings();
    void damagedSettings();
    void opensEachFileOnce();
    void takesDroppedFiles();
    void actionsNeedATab();
    void overviewCanBeHidden();
    void stopsFollowing();
    void tellsWhatCannotBeOpened();
    void keepsTheLanguage();

private:
    QTabWidget &tabs() { return *m_window->findChild<QTabWidget *>(QStringLiteral("tabs")); }
    QAction *action(const char *text) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ViewerWindow> m_window;
};

void tst_ViewerWindow::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<ViewerWindow>(ViewerSettings(m_folder->path()),
                                              [](const QString & /*path*/) { return syntheticCapture(5000); });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_ViewerWindow::cleanup()
{
    m_window.reset();
}

QAction *tst_ViewerWindow::action(const char *text) const
{
    const QList<QAction *> actions = m_window->findChildren<QAction *>();
    for (QAction *found : actions) {
        if (found->text() == QLatin1String(text)) {
            return found;
        }
    }
    return nullptr;
}

void tst_ViewerWindow::settings()
{
    const ViewerSettings settings(m_folder->filePath(QStringLiteral("own")));
    QVERIFY(settings.recentFiles().isEmpty());
    for (int i = 0; i < 12; ++i) {
        settings.addRecentFile(QStringLiteral("/a/%1").arg(i));
    }
    settings.addRecentFile(QStringLiteral("/a/5"));
    QCOMPARE(settings.recentFiles().size(), int(ViewerSettings::MaxRecent));
    QVERIFY(settings.recentFiles().at(0).endsWith(QLatin1String("/a/5")));
    QVERIFY(settings.recentFiles().at(1).endsWith(QLatin1String("/a/11")));
    settings.setLanguage(QStringLiteral("EN"));
    QCOMPARE(settings.language(), QStringLiteral("EN"));
    settings.setLanguage(QStringLiteral("XX"));
    QVERIFY(settings.language() == QLatin1String("CN") || settings.language() == QLatin1String("EN"));
}

void tst_ViewerWindow::damagedSettings()
{
    const QString folder = m_folder->filePath(QStringLiteral("damaged"));
    QVERIFY(QDir().mkpath(folder));
    QFile file(folder + QStringLiteral("/X9Viewer.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("\x00\xff[[[geometry=@ByteArray(xx\nrecent=@Invalid()\nlanguage=", 55));
    file.close();
    ViewerWindow window{ViewerSettings(folder)};
    window.show();
    QVERIFY(window.width() > 100);
}

void tst_ViewerWindow::opensEachFileOnce()
{
    m_window->openFiles({QStringLiteral("a.csv"), QStringLiteral("b.csv"), QStringLiteral("a.csv")});
    QCOMPARE(tabs().count(), 2);
    QCOMPARE(tabs().currentIndex(), 0);
    QVERIFY(m_window->windowTitle().startsWith(QLatin1String("a.csv")));
    QCOMPARE(ViewerSettings(m_folder->path()).recentFiles().size(), 2);
    emit tabs().tabCloseRequested(0);
    QCOMPARE(tabs().count(), 1);
    QVERIFY(m_window->windowTitle().startsWith(QLatin1String("b.csv")));
    emit tabs().tabCloseRequested(0);
    QVERIFY(m_window->currentTab() == nullptr);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("X9Viewer"));
}

void tst_ViewerWindow::takesDroppedFiles()
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(m_folder->filePath(QStringLiteral("a.csv"))),
                  QUrl(QStringLiteral("https://www.example.com/b.csv"))});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_window.get(), &event);
    QCOMPARE(tabs().count(), 1);
    QTRY_COMPARE(m_window->currentTab()->capture().rowCount(), 5000);
}

void tst_ViewerWindow::actionsNeedATab()
{
    QAction *go = action("Go &to...");
    QVERIFY(go != nullptr && !go->isEnabled());
    m_window->openFiles({QStringLiteral("a.csv")});
    QVERIFY(go->isEnabled());
    action("&Filter")->trigger();
    QCOMPARE(m_window->focusWidget()->objectName(), QStringLiteral("filter"));
    action("F&ind")->trigger();
    QCOMPARE(m_window->focusWidget()->objectName(), QStringLiteral("find"));
    action("&Close")->trigger();
    QVERIFY(!go->isEnabled());
}

void tst_ViewerWindow::overviewCanBeHidden()
{
    m_window->openFiles({QStringLiteral("a.csv")});
    auto *overview = m_window->findChild<QWidget *>(QStringLiteral("overview"));
    QVERIFY(overview->isVisible());
    action("&Panels below the frames")->trigger();
    QVERIFY(!overview->isVisible());
}

void tst_ViewerWindow::stopsFollowing()
{
    m_window->openFiles({QStringLiteral("a.csv")});
    auto *cancel = m_window->findChild<QPushButton *>(QStringLiteral("cancel"));
    QTRY_COMPARE(cancel->text(), QStringLiteral("Stop following"));
    QTest::mouseClick(cancel, Qt::LeftButton);
    QTRY_VERIFY(!cancel->isVisible());
}

void tst_ViewerWindow::tellsWhatCannotBeOpened()
{
    ViewerWindow window{ViewerSettings(m_folder->path())};
    window.openFiles({m_folder->filePath(QStringLiteral("missing.csv"))});
    auto *state = window.findChild<QLabel *>(QStringLiteral("state"));
    QTRY_VERIFY(state->text().contains(QStringLiteral("cannot be opened")));
}

void tst_ViewerWindow::keepsTheLanguage()
{
    action("Chinese")->trigger();
    QCOMPARE(ViewerSettings(m_folder->path()).language(), QStringLiteral("CN"));
    action("English")->trigger();
    QCOMPARE(ViewerSettings(m_folder->path()).language(), QStringLiteral("EN"));
}

X9_GUI_TEST(tst_ViewerWindow)
#include "tst_ViewerWindow.moc"
