#include "app/Application.h"
#include "tests/support/TestProgram.h"
#include "widgets/CMessageBox.h"

#include <QDialog>
#include <QMenu>
#include <QStyle>
#include <QTableView>
#include <QtTest>

class tst_ApplicationSetup : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase();
    static void oneFontForAllWidgets();
    static void scalesAsTheScreenIsSet();
    static void noHelpButton();
    static void oneStyleOnAllSystems();
};

void tst_ApplicationSetup::initTestCase()
{
    QApplication::setStyle(QStringLiteral("windows"));
    applyApplicationLook(*qApp);
}

/// Windows has fonts of its own for menus and item views.
void tst_ApplicationSetup::oneFontForAllWidgets()
{
    const QFont font(QStringLiteral("Microsoft Yahei"), 9);
    QCOMPARE(QApplication::font().toString(), font.toString());
    for (const char *name : {"QAbstractItemView", "QMenu", "QMenuBar", "QMessageBox", "QStatusBar", "QTipLabel"}) {
        QCOMPARE(QApplication::font(name).toString(), font.toString());
    }
    QTableView table;
    table.ensurePolished();
    QCOMPARE(table.font().toString(), font.toString());
    QMenu menu;
    menu.ensurePolished();
    QCOMPARE(menu.font().toString(), font.toString());
}

/// Not rounded to whole factors.
void tst_ApplicationSetup::scalesAsTheScreenIsSet()
{
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
    QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
    QCOMPARE(QGuiApplication::highDpiScaleFactorRoundingPolicy(), Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

/// The title bar of dialogs on Windows has no "?": there is nothing to be said by it.
void tst_ApplicationSetup::noHelpButton()
{
    QVERIFY(!QDialog().windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QVERIFY(!CMessageBox().windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void tst_ApplicationSetup::oneStyleOnAllSystems()
{
    qApp->setStyleSheet(QString()); // which hides the style under it
    QCOMPARE(QApplication::style()->objectName(), QStringLiteral("fusion"));
}

namespace {

int runInSetUpApplication(int argc, char *argv[])
{
    setApplicationAttributes(); // before the application is made
    QApplication application(argc, argv);
    return runPlainTest<tst_ApplicationSetup>(argc, argv);
}

} // namespace

X9_TEST_RUN_BY(tst_ApplicationSetup, runInSetUpApplication)

#include "tst_ApplicationSetup.moc"
