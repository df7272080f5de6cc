#include "tests/support/TestProgram.h"
#include "widgets/CMaskWidget.h"
#include "widgets/ModalMasks.h"

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QTimer>
#include <QToolTip>
#include <QtTest>

#include <stdexcept>

namespace {
int masksOn(const QWidget &window)
{
    return window.findChildren<CMaskWidget *>(QString(), Qt::FindDirectChildrenOnly).size();
}

/// Runs once the dialog's own event loop does.
template<class Action>
void onceOpen(QObject *context, Action action)
{
    QTimer::singleShot(0, context, action);
}
} // namespace

class tst_ModalMasks : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase();
    static void goneOnAccept();
    static void goneOnReject();
    static void goneOnDelete();
    static void goneOnException();
    static void goneWhenTheWindowGoes();
    static void followsTheSize();
    static void oneMaskWithTwoDialogs();
    static void newWindowIsMasked();
    static void windowBecomesAPart();
    static void everyWindowIsMasked();
    static void fileDialog();
    static void systemFileDialog();
    static void staticFileDialog();
    static void nonModalDialogMasksNothing();
    static void menusAreNotMasked();
    static void focusComesBack();
};

void tst_ModalMasks::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    new ModalMasks(qobject_cast<QApplication *>(QCoreApplication::instance()));
}

void tst_ModalMasks::goneOnAccept()
{
    QMainWindow window;
    window.show();
    QCOMPARE(masksOn(window), 0);
    QDialog dialog(&window);
    dialog.open();
    QCOMPARE(masksOn(window), 1);
    QVERIFY(window.findChild<CMaskWidget *>()->isVisible());
    QCOMPARE(masksOn(dialog), 0);
    dialog.accept();
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::goneOnReject()
{
    QMainWindow window;
    window.show();
    QDialog dialog(&window);
    int masks = 0;
    onceOpen(&dialog, [&] {
        masks = masksOn(window);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QCOMPARE(dialog.exec(), static_cast<int>(QDialog::Rejected));
    QCOMPARE(masks, 1);
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::goneOnDelete()
{
    QMainWindow window;
    window.show();
    auto *dialog = new QDialog(&window);
    dialog->open();
    QCOMPARE(masksOn(window), 1);
    delete dialog;
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::goneOnException()
{
    QMainWindow window;
    window.show();
    try {
        QDialog dialog(&window);
        dialog.setModal(true);
        dialog.show();
        QCOMPARE(masksOn(window), 1);
        throw std::runtime_error("while the dialog is open");
    } catch (const std::runtime_error &) {
        QCOMPARE(masksOn(window), 0);
    }
}

void tst_ModalMasks::goneWhenTheWindowGoes()
{
    QWidget other;
    other.show();
    {
        QMainWindow window;
        window.show();
        auto *dialog = new QDialog(&window);
        dialog->setModal(true);
        dialog->show();
        QCOMPARE(masksOn(other), 1);
    }
    QCOMPARE(masksOn(other), 0);
}

void tst_ModalMasks::followsTheSize()
{
    QMainWindow window;
    window.resize(400, 300);
    window.show();
    QDialog dialog(&window);
    dialog.open();
    window.resize(700, 500);
    QCOMPARE(window.findChild<CMaskWidget *>()->geometry(), QRect(0, 0, 700, 500));
}

// Each window is dimmed once, however many dialogs lie over it.
void tst_ModalMasks::oneMaskWithTwoDialogs()
{
    QMainWindow window;
    window.show();
    QDialog first(&window);
    first.open();
    QDialog second(&first);
    second.open();
    QCOMPARE(masksOn(window), 1);
    QCOMPARE(masksOn(first), 1);
    QCOMPARE(masksOn(second), 0);
    second.reject();
    QCOMPARE(masksOn(window), 1);
    QCOMPARE(masksOn(first), 0);
    QEvent again(QEvent::WindowBlocked);
    QCoreApplication::sendEvent(&window, &again);
    QCOMPARE(masksOn(window), 1);
    QDialog beside(&window);
    beside.open();
    first.reject();
    QCOMPARE(masksOn(window), 1);
    beside.reject();
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::newWindowIsMasked()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QWidget window;
    window.show();
    QCOMPARE(masksOn(window), 1);
    dialog.reject();
    QCOMPARE(masksOn(window), 0);
}

// A window that is no window any more when the dialog closes would never hear of it.
void tst_ModalMasks::windowBecomesAPart()
{
    QWidget host;
    host.show();
    QWidget window;
    window.show();
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QCOMPARE(masksOn(window), 1);
    window.setParent(&host);
    window.show();
    QCOMPARE(masksOn(window), 0);
    window.setParent(nullptr);
    window.show();
    QCOMPARE(masksOn(window), 1);
    dialog.reject();
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::everyWindowIsMasked()
{
    QMainWindow window;
    window.show();
    QDialog tool(&window);
    tool.show();
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QCOMPARE(masksOn(window), 1);
    QCOMPARE(masksOn(tool), 1);
    dialog.reject();
    QCOMPARE(masksOn(window), 0);
    QCOMPARE(masksOn(tool), 0);
}

void tst_ModalMasks::fileDialog()
{
    QMainWindow window;
    window.show();
    QFileDialog dialog(&window);
    dialog.open();
    QCOMPARE(masksOn(window), 1);
    dialog.reject();
    QCOMPARE(masksOn(window), 0);
}

// Qt keeps its own dialog off the screen and lets the system show another.
void tst_ModalMasks::systemFileDialog()
{
    QMainWindow window;
    window.show();
    QDialog dialog(&window);
    dialog.setAttribute(Qt::WA_DontShowOnScreen);
    dialog.open();
    QCOMPARE(masksOn(window), 1);
    dialog.reject();
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::staticFileDialog()
{
    QMainWindow window;
    window.show();
    int masks = 0;
    onceOpen(&window, [&] {
        masks = masksOn(window);
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        dialog->reject();
    });
    QVERIFY(QFileDialog::getSaveFileName(&window).isEmpty());
    QCOMPARE(masks, 1);
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::nonModalDialogMasksNothing()
{
    QMainWindow window;
    window.show();
    QDialog dialog(&window);
    dialog.show();
    QCOMPARE(masksOn(window), 0);
}

void tst_ModalMasks::menusAreNotMasked()
{
    QMainWindow window;
    window.show();
    QDialog dialog(&window);
    dialog.open();
    QMenu menu(&window);
    menu.addAction(QStringLiteral("entry"));
    menu.popup(QPoint(10, 10));
    QCOMPARE(masksOn(menu), 0);
    QToolTip::showText(QPoint(10, 10), QStringLiteral("tip"), &dialog);
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        QVERIFY(masksOn(*widget) == 0 || widget == &window);
    }
    QToolTip::hideText();
}

void tst_ModalMasks::focusComesBack()
{
    QMainWindow window;
    auto *field = new QLineEdit(&window);
    window.setCentralWidget(field);
    window.show();
    QApplication::setActiveWindow(&window);
    field->setFocus();
    QTRY_VERIFY(field->hasFocus());
    QDialog dialog(&window);
    QLineEdit inside(&dialog);
    dialog.open();
    QApplication::setActiveWindow(&dialog);
    QTRY_VERIFY(inside.hasFocus());
    dialog.reject();
    QApplication::setActiveWindow(&window);
    QTRY_VERIFY(field->hasFocus());
}

X9_GUI_TEST(tst_ModalMasks)
#include "tst_ModalMasks.moc"
