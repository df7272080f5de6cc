#include "exchange/ExchangeFormat.h"
#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/CaptureKinds.h"
#include "viewer/CaptureTab.h"
#include "viewer/ViewerWindow.h"

#include <QAction>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

namespace {

void write(const QString &path, const QByteArray &bytes, QIODevice::OpenMode mode = QIODevice::WriteOnly)
{
    QFile file(path);
    QVERIFY(file.open(mode));
    QCOMPARE(file.write(bytes), qint64{bytes.size()});
}

QByteArray candumpLines(int count)
{
    QByteArray lines;
    for (int i = 0; i < count; ++i) {
        lines += QStringLiteral("(%1.000000) can0 100#0102\n").arg(1700000000 + i).toLatin1();
    }
    return lines;
}

/// Ten frames every 20 ms, of a hundred thousand.
class SlowStream : public CaptureStream, private FrameReader
{
public:
    FrameReader &reader() override { return *this; }
    qint64 position() const override { return m_next; }
    qint64 size() const override { return 100000; }
    void setGrowing(bool /*growing*/) override {}
    bool isBroken() const override { return false; }

private:
    int read(BusFrame *frames, int /*room*/) override
    {
        QThread::msleep(20);
        const int count = m_next < 100000 ? 10 : 0;
        for (int i = 0; i < count; ++i) {
            frames[i].time = m_next++ * 1000;
        }
        return count;
    }

    qint64 m_next = 0;
};

} // namespace

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
    void panelsCanBeHidden();
    void stopsFollowing();
    static void tellsWhatCannotBeOpened_data();
    void tellsWhatCannotBeOpened();
    void slowFilesTellTheTimeLeft();
    void listsWhatWasSkipped();
    void loadsAgain();
    void followsAFileThatGrows();
    static void noticesWhatBecomesOfAFile_data();
    void noticesWhatBecomesOfAFile();
    void recentFiles();
    static void filtersOfTheOpenDialog();
    static void endingsOfThePackages();
    void savesAs();
    void keepsTheLanguage();

private:
    QTabWidget &tabs() { return *m_window->findChild<QTabWidget *>(QStringLiteral("tabs")); }
    QAction *action(const char *text) const;
    /// A window that opens real files, with this one.
    std::unique_ptr<ViewerWindow> windowWith(const QString &path) const;
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

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
    QTest::qFail(text, __FILE__, __LINE__);
    static QAction nothing;
    return &nothing;
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
    QVERIFY(!go->isEnabled());
    m_window->openFiles({QStringLiteral("a.csv")});
    QVERIFY(go->isEnabled());
    action("&Filter")->trigger();
    QCOMPARE(m_window->focusWidget()->objectName(), QStringLiteral("filter"));
    action("F&ind")->trigger();
    QCOMPARE(m_window->focusWidget()->objectName(), QStringLiteral("find"));
    action("&Close")->trigger();
    QVERIFY(!go->isEnabled());
}

void tst_ViewerWindow::panelsCanBeHidden()
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

std::unique_ptr<ViewerWindow> tst_ViewerWindow::windowWith(const QString &path) const
{
    auto window = std::make_unique<ViewerWindow>(ViewerSettings(m_folder->path()));
    window->show();
    window->openFiles({path});
    return window;
}

void tst_ViewerWindow::tellsWhatCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("missing") << "missing.csv"
                             << "cannot be opened";
    QTest::newRow("a folder") << "."
                              << "not a file";
    QTest::newRow("no capture") << "no.capture"
                                << "no known kind";
}

void tst_ViewerWindow::tellsWhatCannotBeOpened()
{
    QFETCH(const QString, name);
    QFETCH(const QString, text);
    write(path("no.capture"), QByteArray(1000, '\0'));
    const auto window = windowWith(m_folder->filePath(name));
    const auto *notice = window->findChild<QWidget *>(QStringLiteral("loadNotice"));
    QTRY_VERIFY(notice->isVisible());
    QVERIFY(notice->findChild<QLabel *>(QStringLiteral("loadNoticeText"))->text().contains(text));
    QVERIFY(window->findChild<QLabel *>(QStringLiteral("state"))->text().contains(text));
}

void tst_ViewerWindow::slowFilesTellTheTimeLeft()
{
    ViewerWindow window(ViewerSettings(m_folder->path()), [](const QString & /*path*/) {
        return [](Findings & /*findings*/, QString & /*error*/) {
            return std::make_unique<SlowStream>();
        };
    });
    window.show();
    window.openFiles({path("slow")});
    CaptureTab &tab = *window.currentTab();
    const auto *bar = window.findChild<QProgressBar *>();
    const auto *state = window.findChild<QLabel *>(QStringLiteral("state"));
    auto *cancel = window.findChild<QPushButton *>(QStringLiteral("cancel"));
    QVERIFY(!bar->isVisible()); // not for what may be over at once
    QTRY_VERIFY(tab.capture().rowCount() > 10);
    QTRY_VERIFY(bar->isVisible());
    QVERIFY(state->text().contains(QStringLiteral("s left")));
    QVERIFY(bar->value() < bar->maximum());
    tab.table().setCurrentPlace(5); // usable meanwhile
    QCOMPARE(tab.table().currentRow(), 5);
    QCOMPARE(cancel->text(), QStringLiteral("Stop loading"));
    QTest::mouseClick(cancel, Qt::LeftButton);
    QTRY_VERIFY(state->text().contains(QStringLiteral("stopped")));
    QVERIFY(!bar->isVisible());
    QVERIFY(tab.capture().rowCount() < 100000);
}

void tst_ViewerWindow::listsWhatWasSkipped()
{
    write(path("odd.log"), candumpLines(1) + "this is no frame\n" + candumpLines(1));
    const auto window = windowWith(path("odd.log"));
    auto *findings = window->findChild<QPushButton *>(QStringLiteral("findings"));
    QTRY_VERIFY(findings->isVisible());
    QTest::mouseClick(findings, Qt::LeftButton);
    const auto *text = window->findChild<QPlainTextEdit *>(QStringLiteral("findingLines"));
    QVERIFY(text != nullptr);
    QVERIFY2(text->toPlainText().startsWith(QStringLiteral("line 2: ")), qPrintable(text->toPlainText()));
    QTRY_COMPARE(window->currentTab()->capture().rowCount(), 2);
}

void tst_ViewerWindow::loadsAgain()
{
    const QString file = path("later.log");
    const auto window = windowWith(file);
    auto *again = window->findChild<QPushButton *>(QStringLiteral("loadAgain"));
    QTRY_VERIFY(again->isVisible());
    window->currentTab()->filterBy(QStringLiteral("id == 0x100"));
    write(file, candumpLines(10));
    QTest::mouseClick(again, Qt::LeftButton);
    QTRY_COMPARE(window->currentTab()->capture().store().size(), 10);
    QCOMPARE(window->currentTab()->filterText(), QStringLiteral("id == 0x100"));
    QTRY_COMPARE(window->findChildren<CaptureTab *>().size(), 1);
    QVERIFY(window->windowTitle().startsWith(QLatin1String("later.log")));
}

void tst_ViewerWindow::followsAFileThatGrows()
{
    const QString file = path("growing.log");
    const QByteArray lines = candumpLines(3000);
    write(file, lines.left(20));
    const auto window = windowWith(file);
    CaptureTab &tab = *window->currentTab();
    QTRY_COMPARE(tab.capture().loader().progress().state, LoadProgress::State::Following);
    QCOMPARE(tab.capture().rowCount(), 0); // the line is not whole
    auto *stay = window->findChild<QToolButton *>(QStringLiteral("stayAtEnd"));
    QTRY_VERIFY(stay->isVisible());
    QVERIFY(!stay->isChecked());
    QTest::mouseClick(stay, Qt::LeftButton);
    const int half = lines.indexOf('\n', lines.size() / 2) + 1;
    write(file, lines.mid(20, half - 20), QIODevice::Append);
    QTRY_VERIFY(tab.capture().rowCount() > 1000);
    QTRY_VERIFY(tab.table().isAtEnd());
    // Off as soon as one scrolls back, and on again at the end.
    QTest::keyClick(&tab.table(), Qt::Key_Home);
    QVERIFY(!stay->isChecked());
    write(file, lines.mid(half), QIODevice::Append);
    QTRY_COMPARE(tab.capture().rowCount(), 3000);
    QCOMPARE(tab.table().firstVisible(), 0);
    QTest::keyClick(&tab.table(), Qt::Key_End);
    QVERIFY(stay->isChecked());
    write(file, candumpLines(100), QIODevice::Append);
    QTRY_COMPARE(tab.capture().rowCount(), 3100);
    QVERIFY(tab.table().isAtEnd());
    QTest::mouseClick(stay, Qt::LeftButton);
    write(file, candumpLines(100), QIODevice::Append);
    QTRY_COMPARE(tab.capture().rowCount(), 3200);
    QVERIFY(!tab.table().isAtEnd());
}

void tst_ViewerWindow::noticesWhatBecomesOfAFile_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change : {"emptied", "cut", "deleted", "replaced"}) {
        QTest::newRow(change) << QString::fromLatin1(change);
    }
}

void tst_ViewerWindow::noticesWhatBecomesOfAFile()
{
    QFETCH(const QString, change);
    const QString file = path("followed.log");
    write(file, candumpLines(500));
    const auto window = windowWith(file);
    CaptureTab &tab = *window->currentTab();
    QTRY_COMPARE(tab.capture().loader().progress().state, LoadProgress::State::Following);
    if (change == QLatin1String("emptied") || change == QLatin1String("cut")) {
        QVERIFY(QFile::resize(file, change == QLatin1String("cut") ? 1000 : 0));
    } else {
        if (!QFile::remove(file)) { // Windows keeps a file that is open, and it is followed on
            QCOMPARE(QSysInfo::kernelType(), QStringLiteral("winnt"));
            write(file, candumpLines(1), QIODevice::Append);
            QTRY_COMPARE(tab.capture().rowCount(), 501);
            return;
        }
        if (change == QLatin1String("replaced")) {
            write(file, candumpLines(700));
        }
    }
    QTRY_COMPARE(tab.capture().loader().progress().state, LoadProgress::State::Failed);
    QTRY_VERIFY(window->findChild<QWidget *>(QStringLiteral("loadNotice"))->isVisible());
    QCOMPARE(tab.capture().rowCount(), 500); // what was read stays
}

void tst_ViewerWindow::recentFiles()
{
    m_window->openFiles({path("a&b.csv"), path("c.csv")});
    auto *menu = m_window->findChild<QMenu *>(QStringLiteral("recent"));
    emit menu->aboutToShow();
    QCOMPARE(menu->actions().size(), 2);
    QVERIFY(menu->actions().at(0)->text().endsWith(QLatin1String("c.csv")));
    QVERIFY(menu->actions().at(1)->text().endsWith(QLatin1String("a&&b.csv")));
    emit tabs().tabCloseRequested(0);
    menu->actions().at(1)->trigger();
    QCOMPARE(tabs().count(), 2);
    QVERIFY(m_window->windowTitle().startsWith(QLatin1String("a&b.csv")));
}

void tst_ViewerWindow::filtersOfTheOpenDialog()
{
    const QStringList filters = CaptureKinds::openFilters();
    QCOMPARE(filters.size(), int(exchangeFormats().size()) + 2);
    for (const ExchangeFormat &format : exchangeFormats()) {
        const QStringList endings = QString::fromLatin1(format.endings).split(QLatin1Char(' '));
        for (const QString &ending : endings) {
            QVERIFY(filters.first().contains(QLatin1Char('*') + ending));
        }
        QVERIFY(filters.contains(CaptureKinds::filter(format)));
    }
}

/// The packages offer the viewer for these.
void tst_ViewerWindow::endingsOfThePackages()
{
    const QStringList packaged = QStringLiteral(X9_CAPTURE_ENDINGS).split(QLatin1Char(' '));
    QStringList known;
    for (const ExchangeFormat &format : exchangeFormats()) {
        const QStringList endings = QString::fromLatin1(format.endings).split(QLatin1Char(' '));
        for (const QString &ending : endings) {
            known.append(ending.section(QLatin1Char('.'), -1));
        }
    }
    known.removeDuplicates();
    QCOMPARE(QSet<QString>(packaged.begin(), packaged.end()), QSet<QString>(known.begin(), known.end()));
    QCOMPARE(packaged.size(), known.size());
}

void tst_ViewerWindow::savesAs()
{
    m_window->openFiles({QStringLiteral("a.csv")});
    QTRY_COMPARE(m_window->currentTab()->capture().rowCount(), 5000);
    action("&Save as...")->trigger();
    auto *dialog = m_window->findChild<QDialog *>(QStringLiteral("saveDialog"));
    QVERIFY(dialog != nullptr && dialog->isVisible());
    QTest::keyClick(dialog, Qt::Key_Escape);
    QTRY_VERIFY(m_window->findChild<QDialog *>(QStringLiteral("saveDialog")) == nullptr);
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
