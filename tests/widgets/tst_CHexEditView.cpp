#include "resources/Resources.h"
#include "tests/support/TestProgram.h"
#include "widgets/CHexEditView.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

namespace {
const QByteArray Eight("\x11\x22\x33\x44\x55\x66\x77\x88");

/// The dialog on screen, its widgets by name.
class DialogUnderTest
{
public:
    explicit DialogUnderTest(const QByteArray &payload)
        : dialog(payload)
        , accepted(&dialog, &QDialog::accepted)
        , rejected(&dialog, &QDialog::rejected)
        , editor(find<QWidget>("hexEdit"))
    {
        dialog.open();
        QApplication::setActiveWindow(&dialog);
    }

    bool isReady() { return QTest::qWaitForWindowActive(&dialog); }
    template<typename Widget>
    Widget *find(const char *name) const
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *name) const { QTest::mouseClick(find<QToolButton>(name), Qt::LeftButton); }
    void clickBox(QDialogButtonBox::StandardButton which) const
    {
        QTest::mouseClick(find<QDialogButtonBox>("buttonBox")->button(which), Qt::LeftButton);
    }
    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(editor, static_cast<Qt::Key>(code), modifiers);
    }
    void type(const char *text) const { QTest::keyClicks(editor, QLatin1String(text)); }

    CHexEditView dialog;
    QSignalSpy accepted;
    QSignalSpy rejected;
    QWidget *editor;
};

QImage imageOf(const QIcon &icon)
{
    return icon.pixmap(32, 32).toImage();
}
} // namespace

class tst_CHexEditView : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void looksAsItShould();
    static void startsInTheEditor();
    static void typesAndAccepts();
    static void cancels();
    static void keepsTheLength();
    static void overwritesAlways();
    static void cutsALongPaste();
    static void clears();
    static void bytesPerLine();
    static void undoKeysWorkFromEverywhere();
    static void enterAcceptsAndEscapeRejects();
    static void emptyPayload();
    static void ownerMayGoWhileItRuns();
};

void tst_CHexEditView::looksAsItShould()
{
    const DialogUnderTest user(Eight);
    QCOMPARE(user.dialog.windowTitle(), QStringLiteral("Edit data"));
    QVERIFY(user.dialog.isModal());
    const struct
    {
        const char *name;
        const char *toolTip;
        const char *picture;
    } buttons[] = {{"m_pBtnClear", "Clear", ":/32x32/Images/32x32/Clear.png"},
                   {"m_pBtnUndo", "Undo (Ctrl+Z)", ":/32x32/Images/32x32/Undo.png"},
                   {"m_pBtnRedo", "Redo (Ctrl+Y)", ":/32x32/Images/32x32/Redo.png"}};
    for (const auto &expected : buttons) {
        const auto *button = user.find<QToolButton>(expected.name);
        QVERIFY(button != nullptr);
        QCOMPARE(button->toolTip(), QLatin1String(expected.toolTip));
        QVERIFY(!button->accessibleName().isEmpty());
        QVERIFY(!button->icon().isNull());
        QCOMPARE(imageOf(button->icon()), imageOf(QIcon(QLatin1String(expected.picture))));
    }
    QCOMPARE(user.find<QLabel>("m_pLabel")->text(), QStringLiteral("8 Byte"));
    QCOMPARE(user.find<QLabel>("lbl_bytesPerLine")->text(), QStringLiteral("Bytes per line"));
    QVERIFY(!user.editor->accessibleName().isEmpty());
    const auto *box = user.find<QDialogButtonBox>("buttonBox");
    QCOMPARE(imageOf(box->button(QDialogButtonBox::Ok)->icon()),
             imageOf(QIcon(QStringLiteral(":/128x128/Images/128x128/Success.png"))));
    QCOMPARE(imageOf(box->button(QDialogButtonBox::Cancel)->icon()),
             imageOf(QIcon(QStringLiteral(":/128x128/Images/128x128/Error.png"))));
    QVERIFY(box->button(QDialogButtonBox::Ok)->isDefault());
}

void tst_CHexEditView::startsInTheEditor()
{
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    QVERIFY(user.editor->hasFocus());
}

void tst_CHexEditView::typesAndAccepts()
{
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    user.type("aBCd");
    user.clickBox(QDialogButtonBox::Ok);
    QCOMPARE(user.accepted.count(), 1);
    QCOMPARE(user.dialog.data(), QByteArray("\xAB\xCD\x33\x44\x55\x66\x77\x88"));
}

void tst_CHexEditView::cancels()
{
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    user.type("aBCd");
    user.clickBox(QDialogButtonBox::Cancel);
    QCOMPARE(user.rejected.count(), 1);
    QCOMPARE(user.accepted.count(), 0);
}

void tst_CHexEditView::keepsTheLength()
{
    DialogUnderTest user(QByteArray("\x11\x22"));
    QVERIFY(user.isReady());
    user.type("AABBCCDD"); // past the end
    QCOMPARE(user.dialog.data(), QByteArray("\xAA\xBB"));
    user.key(Qt::Key_A, Qt::ControlModifier);
    user.key(Qt::Key_Delete);
    QTRY_COMPARE(user.dialog.data(), QByteArray(2, '\0'));
    user.key(Qt::Key_Backspace);
    QCOMPARE(user.dialog.data().size(), 2);
}

void tst_CHexEditView::overwritesAlways()
{
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    user.key(Qt::Key_Insert);
    user.type("AB");
    QCOMPARE(user.dialog.data(), QByteArray("\xAB\x22\x33\x44\x55\x66\x77\x88"));
}

void tst_CHexEditView::cutsALongPaste()
{
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    QApplication::clipboard()->setText(QStringLiteral("99 ").repeated(100));
    user.key(Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE(user.dialog.data(), QByteArray(8, '\x99'));
}

void tst_CHexEditView::clears()
{
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    user.click("m_pBtnClear");
    QCOMPARE(user.dialog.data(), QByteArray(8, '\0'));
    QVERIFY(user.editor->hasFocus());
    user.click("m_pBtnUndo");
    QCOMPARE(user.dialog.data(), Eight);
    user.click("m_pBtnClear");
    user.clickBox(QDialogButtonBox::Ok);
    QCOMPARE(user.dialog.data(), QByteArray(8, '\0'));
}

void tst_CHexEditView::bytesPerLine()
{
    DialogUnderTest user(QByteArray(64, '\x11'));
    QVERIFY(user.isReady());
    auto *combo = user.find<QComboBox>("pComboBox");
    QCOMPARE(combo->count(), 16);
    QCOMPARE(combo->itemText(0), QStringLiteral("1"));
    QCOMPARE(combo->itemText(15), QStringLiteral("16"));
    QCOMPARE(combo->currentIndex(), 7);
    QCOMPARE(user.editor->metaObject()->className(), "QHexEdit");
    // A line down is as many bytes further as the line has.
    for (int index : {7, 15, 0, 2}) {
        combo->setCurrentIndex(index);
        user.key(Qt::Key_Home, Qt::ControlModifier);
        user.key(Qt::Key_Down);
        user.type("22");
        QCOMPARE(user.dialog.data().indexOf('\x22'), index + 1);
        user.key(Qt::Key_Z, Qt::ControlModifier);
        user.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(user.dialog.data(), QByteArray(64, '\x11'));
    }
    const int width = user.dialog.width();
    QTest::keyClick(combo, Qt::Key_End);
    QCOMPARE(combo->currentIndex(), 15);
    QVERIFY(user.dialog.width() >= width);
}

void tst_CHexEditView::undoKeysWorkFromEverywhere()
{
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    user.type("F");
    QCOMPARE(user.dialog.data().at(0), '\xF1');
    auto *combo = user.find<QComboBox>("pComboBox");
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.dialog.data(), Eight);
    QTest::keyClick(combo, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(user.dialog.data().at(0), '\xF1');
    user.click("m_pBtnUndo");
    QCOMPARE(user.dialog.data(), Eight);
    user.click("m_pBtnRedo");
    QCOMPARE(user.dialog.data().at(0), '\xF1');
    user.key(Qt::Key_Z, Qt::ControlModifier);
    user.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(user.dialog.data().at(0), '\xF1');
}

void tst_CHexEditView::enterAcceptsAndEscapeRejects()
{
    for (int code : {Qt::Key_Return, Qt::Key_Enter}) {
        DialogUnderTest user(Eight);
        QVERIFY(user.isReady());
        user.type("AB");
        user.key(code);
        QCOMPARE(user.accepted.count(), 1);
        QCOMPARE(user.dialog.data().at(0), '\xAB');
    }
    DialogUnderTest user(Eight);
    QVERIFY(user.isReady());
    user.key(Qt::Key_Escape);
    QCOMPARE(user.rejected.count(), 1);
}

void tst_CHexEditView::emptyPayload()
{
    DialogUnderTest user{QByteArray()};
    QVERIFY(user.isReady());
    QCOMPARE(user.find<QLabel>("m_pLabel")->text(), QStringLiteral("0 Byte"));
    user.type("11");
    user.click("m_pBtnClear");
    QCOMPARE(user.dialog.data(), QByteArray());
    QVERIFY(!user.dialog.grab().isNull());
}

void tst_CHexEditView::ownerMayGoWhileItRuns()
{
    auto *owner = new QWidget;
    owner->show();
    auto *dialog = new CHexEditView(Eight, owner);
    const QPointer<CHexEditView> guard(dialog);
    QTimer::singleShot(0, owner, [owner] { delete owner; });
    QCOMPARE(dialog->exec(), int(QDialog::Rejected));
    QVERIFY(guard == nullptr);
}

X9_GUI_TEST(tst_CHexEditView)
#include "tst_CHexEditView.moc"
