#include "resources/Resources.h"
#include "tests/support/TestProgram.h"
#include "widgets/CHexEditView.h"
#include "widgets/QHexEdit.h"

#include <QApplication>
#include <QComboBox>
#include <QToolButton>
#include <QtTest>

namespace {
const QByteArray Four("\x11\x22\x33\x44");

class DialogUnderTest
{
public:
    DialogUnderTest()
        : dialog(Four)
        , editor(dialog.findChild<QHexEdit *>())
        , clear(dialog.findChild<QToolButton *>(QStringLiteral("m_pBtnClear")))
        , undo(dialog.findChild<QToolButton *>(QStringLiteral("m_pBtnUndo")))
        , redo(dialog.findChild<QToolButton *>(QStringLiteral("m_pBtnRedo")))
    {
        dialog.show();
        QApplication::setActiveWindow(&dialog);
    }

    bool isReady() { return QTest::qWaitForWindowActive(&dialog) && editor->hasFocus(); }
    static void click(QToolButton *button) { QTest::mouseClick(button, Qt::LeftButton); }

    CHexEditView dialog;
    QHexEdit *editor;
    QToolButton *clear;
    QToolButton *undo;
    QToolButton *redo;
};
} // namespace

/// What the dialog "Edit data" can do with the project's own editor beyond what any editor offers.
class tst_HexEditHistory : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void buttonsFollowTheHistory();
    static void clearIsOneStepAmongOthers();
    static void lengthComesBackFromAnEditorThatChangesIt();
    static void growsWithTheLine();
};

void tst_HexEditHistory::buttonsFollowTheHistory()
{
    DialogUnderTest user;
    QVERIFY(user.isReady());
    QVERIFY(!user.undo->isEnabled() && !user.redo->isEnabled());
    QTest::keyClicks(user.editor, QStringLiteral("F"));
    QVERIFY(user.undo->isEnabled() && !user.redo->isEnabled());
    DialogUnderTest::click(user.undo);
    QVERIFY(!user.undo->isEnabled() && user.redo->isEnabled());
    DialogUnderTest::click(user.redo);
    QVERIFY(user.undo->isEnabled() && !user.redo->isEnabled());
    QTest::keyClick(user.editor, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!user.undo->isEnabled() && user.redo->isEnabled());
    DialogUnderTest::click(user.clear);
    QVERIFY(user.undo->isEnabled() && !user.redo->isEnabled());
}

void tst_HexEditHistory::clearIsOneStepAmongOthers()
{
    DialogUnderTest user;
    QVERIFY(user.isReady());
    QTest::keyClicks(user.editor, QStringLiteral("FF"));
    DialogUnderTest::click(user.clear);
    QTest::keyClicks(user.editor, QStringLiteral("A"));
    const QVector<QByteArray> states{QByteArray("\xA0\0\0\0", 4), QByteArray(4, '\0'), QByteArray("\xFF\x22\x33\x44"),
                                     QByteArray("\xF1\x22\x33\x44"), Four};
    for (int i = 1; i < states.size(); ++i) {
        QVERIFY(user.undo->isEnabled());
        DialogUnderTest::click(user.undo);
        QCOMPARE(user.dialog.data(), states.at(i));
    }
    for (int i = states.size() - 2; i >= 0; --i) {
        QVERIFY(user.redo->isEnabled());
        DialogUnderTest::click(user.redo);
        QCOMPARE(user.dialog.data(), states.at(i));
    }
}

// The library's editor may lengthen or shorten, whatever its mode.
void tst_HexEditHistory::lengthComesBackFromAnEditorThatChangesIt()
{
    DialogUnderTest user;
    QVERIFY(user.isReady());
    user.editor->setOverwriteMode(false);
    QTest::keyClicks(user.editor, QStringLiteral("AB"));
    QCOMPARE(user.editor->data().size(), 5);
    QCOMPARE(user.dialog.data(), QByteArray("\xAB\x11\x22\x33"));
    QTRY_COMPARE(user.editor->data(), QByteArray("\xAB\x11\x22\x33"));
    QTest::keyClick(user.editor, Qt::Key_Delete);
    QCOMPARE(user.dialog.data(), QByteArray("\x11\x22\x33\0", 4));
    QTRY_COMPARE(user.editor->data(), QByteArray("\x11\x22\x33\0", 4));
}

void tst_HexEditHistory::growsWithTheLine()
{
    DialogUnderTest user;
    QVERIFY(user.isReady());
    auto *combo = user.dialog.findChild<QComboBox *>(QStringLiteral("pComboBox"));
    combo->setCurrentIndex(15);
    QVERIFY(user.editor->width() >= user.editor->sizeHint().width());
    QCOMPARE(user.editor->bytesPerLine(), 16);
    const int width = user.dialog.width();
    combo->setCurrentIndex(0);
    QCOMPARE(user.dialog.width(), width);
}

X9_GUI_TEST(tst_HexEditHistory)
#include "tst_HexEditHistory.moc"
