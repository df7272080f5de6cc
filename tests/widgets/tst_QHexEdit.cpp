#include "resources/Resources.h"
#include "tests/support/TestProgram.h"
#include "widgets/CHexEditView.h"
#include "widgets/QHexEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>
#include <QtTest>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {
QByteArray counting(int size)
{
    QByteArray data;
    for (int i = 0; i < size; ++i) {
        data.append(static_cast<char>(i));
    }
    return data;
}

/// An editor on screen with the keyboard, between two buttons.
class EditorUnderTest
{
public:
    explicit EditorUnderTest(const QByteArray &data)
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(before);
        layout->addWidget(editor);
        layout->addWidget(behind);
        editor->setBytesPerLine(8);
        editor->setData(data);
        window.resize(800, 400);
        window.show();
        QApplication::setActiveWindow(&window);
        editor->setFocus();
    }

    bool isReady() { return QTest::qWaitForWindowActive(&window) && editor->hasFocus(); }
    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(editor, static_cast<Qt::Key>(code), modifiers);
    }
    void type(const char *text) const { QTest::keyClicks(editor, QLatin1String(text)); }
    QPoint centre(int byte, HexArea area) const { return editor->byteRect(byte, area).center(); }
    QPoint digit(int byte, int index) const
    {
        const QRect cell = editor->byteRect(byte, HexArea::Hex);
        return {cell.left() + (1 + 2 * index) * cell.width() / 4, cell.center().y()};
    }
    void click(QPoint position, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mouseClick(editor->viewport(), Qt::LeftButton, modifiers, position);
    }
    void drag(QPoint from, QPoint to) const
    {
        QTest::mousePress(editor->viewport(), Qt::LeftButton, Qt::NoModifier, from);
        QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(editor->viewport(), &move);
        QTest::mouseRelease(editor->viewport(), Qt::LeftButton, Qt::NoModifier, to);
    }
    /// Whether a byte can be seen whole.
    bool isInSight(int byte, HexArea area) const
    {
        return editor->viewport()->rect().contains(editor->byteRect(byte, area));
    }
    bool isSelected(int first, int end) const
    {
        return editor->selection().first == first && editor->selection().end == end;
    }
    static QString clipboard() { return QApplication::clipboard()->text(); }
    static void setClipboard(const QString &text) { QApplication::clipboard()->setText(text); }
    QImage picture() const { return editor->viewport()->grab().toImage(); }

    QWidget window;
    QPushButton *before = new QPushButton;
    QHexEdit *editor = new QHexEdit;
    QPushButton *behind = new QPushButton;
};

/// Whether a colour is anywhere in a part of a picture.
bool has(const QImage &picture, const QRect &part, const QColor &colour)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (picture.pixelColor(x, y).rgb() == colour.rgb()) {
                return true;
            }
        }
    }
    return false;
}

const QByteArray Four("\x11\x22\x33\x44");

/// The dialog "Edit data" around the editor.
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

class tst_QHexEdit : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void typesInBothAreas();
    static void ignoresOtherCharacters();
    static void typesNothingPastTheEnd();
    static void deletes();
    static void movesByKeys();
    static void movesByPages();
    static void selectsByKeys();
    static void tabSwitchesTheAreaAndLeaves();
    static void clickSetsTheCursor_data();
    static void clickSetsTheCursor();
    static void clickBesideTheBytes();
    static void dragSelects();
    static void shiftClickSelects();
    static void doubleClickSelectsAByte();
    static void copies();
    static void cuts();
    static void pastes_data();
    static void pastes();
    static void pastesPastTheEnd();
    static void refusesOtherText();
    static void undoesAndRedoes();
    static void clearIsOneStep();
    static void readOnlyIsReadOnly();
    static void signalsWhatChanged();
    static void emptyDataIsPainted();
    static void keepsTheCursorInSight();
    static void scrollsByWheel();
    static void paintsNothingOfLinesAbove();
    static void paintsTheSelection();
    static void paintsTheFocus();
    static void takesTheColoursOfThePalette();
    static void leavesEnterAndEscapeToTheWindow();
    static void buttonsFollowTheHistory();
    static void clearIsOneStepAmongOthers();
    static void dialogGrowsWithTheLine();
};

void tst_QHexEdit::typesInBothAreas()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    user.type("aBc");
    QCOMPARE(user.editor->data(), QByteArray("\xAB\xC1\x02\x03", 4));
    QCOMPARE(user.editor->cursor().nibble, 3);
    user.key(Qt::Key_Tab);
    QCOMPARE(user.editor->cursor().nibble, 2);
    user.type("a ");
    QCOMPARE(user.editor->data(), QByteArray("\xAB"
                                             "a \x03"));
}

void tst_QHexEdit::ignoresOtherCharacters()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    user.type("gxyzG:@` -.,");
    user.key(Qt::Key_A, Qt::AltModifier);
    user.key(Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(user.editor->data(), counting(4));
    user.key(Qt::Key_Tab);
    QKeyEvent umlaut(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(0xFC)));
    QApplication::sendEvent(user.editor, &umlaut);
    QKeyEvent chinese(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(0x4E41)));
    QApplication::sendEvent(user.editor, &chinese);
    QCOMPARE(user.editor->data(), counting(4));
}

void tst_QHexEdit::typesNothingPastTheEnd()
{
    EditorUnderTest user(counting(2));
    QVERIFY(user.isReady());
    user.type("1122334455");
    QCOMPARE(user.editor->data(), QByteArray("\x11\x22"));
    QCOMPARE(user.editor->cursor().nibble, 4);
}

void tst_QHexEdit::deletes()
{
    EditorUnderTest user(QByteArray("\x11\x22\x33\x44"));
    QVERIFY(user.isReady());
    user.key(Qt::Key_Delete);
    QCOMPARE(user.editor->data(), QByteArray("\0\x22\x33\x44", 4));
    user.key(Qt::Key_End);
    user.key(Qt::Key_Backspace);
    QCOMPARE(user.editor->data(), QByteArray("\0\x22\x33\0", 4));
    user.key(Qt::Key_A, Qt::ControlModifier);
    user.key(Qt::Key_Backspace);
    QCOMPARE(user.editor->data(), QByteArray(4, '\0'));
}

void tst_QHexEdit::movesByKeys()
{
    EditorUnderTest user(counting(22));
    QVERIFY(user.isReady());
    const struct
    {
        int key;
        Qt::KeyboardModifiers modifiers;
        int nibble;
    } steps[] = {{Qt::Key_Right, Qt::NoModifier, 1},     {Qt::Key_Down, Qt::NoModifier, 17},
                 {Qt::Key_Left, Qt::NoModifier, 16},     {Qt::Key_End, Qt::NoModifier, 30},
                 {Qt::Key_Up, Qt::NoModifier, 14},       {Qt::Key_Home, Qt::NoModifier, 0},
                 {Qt::Key_End, Qt::ControlModifier, 44}, {Qt::Key_Right, Qt::NoModifier, 44},
                 {Qt::Key_Home, Qt::ControlModifier, 0}, {Qt::Key_Left, Qt::NoModifier, 0},
                 {Qt::Key_PageDown, Qt::NoModifier, 32}, {Qt::Key_PageUp, Qt::NoModifier, 0}};
    for (const auto &step : steps) {
        user.key(step.key, step.modifiers);
        QCOMPARE(user.editor->cursor().nibble, step.nibble);
        QVERIFY(user.editor->selection().isEmpty());
    }
    user.key(Qt::Key_Tab);
    user.key(Qt::Key_Right);
    QCOMPARE(user.editor->cursor().nibble, 2); // by bytes among characters
}

void tst_QHexEdit::movesByPages()
{
    EditorUnderTest user(counting(2000));
    QVERIFY(user.isReady());
    const int page = user.editor->verticalScrollBar()->pageStep();
    QVERIFY(page > 2 && page < 250);
    user.key(Qt::Key_PageDown);
    QCOMPARE(user.editor->cursor().nibble, 2 * 8 * page);
    user.key(Qt::Key_PageDown);
    user.key(Qt::Key_PageUp);
    QCOMPARE(user.editor->cursor().nibble, 2 * 8 * page);
}

void tst_QHexEdit::selectsByKeys()
{
    EditorUnderTest user(counting(22));
    QVERIFY(user.isReady());
    user.key(Qt::Key_Right, Qt::ShiftModifier);
    user.key(Qt::Key_Right, Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 2));
    user.key(Qt::Key_Down, Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 10));
    user.key(Qt::Key_Left, Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 9));
    user.key(Qt::Key_End, Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 16));
    user.key(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 22));
    user.key(Qt::Key_Right);
    QVERIFY(user.editor->selection().isEmpty());
    user.key(Qt::Key_Home, Qt::ShiftModifier);
    QVERIFY(user.isSelected(16, 22));
    user.key(Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 22));
    user.key(Qt::Key_Left);
    user.key(Qt::Key_PageDown, Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 16));
    user.key(Qt::Key_PageUp, Qt::ShiftModifier);
    QVERIFY(user.editor->selection().isEmpty());
    user.key(Qt::Key_A, Qt::ControlModifier);
    QVERIFY(user.isSelected(0, 22));
}

void tst_QHexEdit::tabSwitchesTheAreaAndLeaves()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    QVERIFY(user.editor->cursor().area == HexArea::Hex);
    user.key(Qt::Key_Tab);
    QVERIFY(user.editor->hasFocus());
    QVERIFY(user.editor->cursor().area == HexArea::Ascii);
    user.key(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(user.editor->hasFocus());
    QVERIFY(user.editor->cursor().area == HexArea::Hex);
    user.key(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(user.before->hasFocus());
    QTest::keyClick(user.before, Qt::Key_Tab);
    QVERIFY(user.editor->cursor().area == HexArea::Hex);
    user.key(Qt::Key_Tab);
    user.key(Qt::Key_Tab);
    QVERIFY(user.behind->hasFocus());
    QTest::keyClick(user.behind, Qt::Key_Tab); // around to the other side
    QTest::keyClick(user.before, Qt::Key_Tab);
    QVERIFY(user.editor->hasFocus());
    QVERIFY(user.editor->cursor().area == HexArea::Hex);
    user.behind->setFocus();
    QTest::keyClick(user.behind, Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(user.editor->hasFocus());
    QVERIFY(user.editor->cursor().area == HexArea::Ascii);
}

void tst_QHexEdit::clickSetsTheCursor_data()
{
    QTest::addColumn<int>("bytesPerLine");
    for (int count = 1; count <= 16; ++count) {
        QTest::newRow(qPrintable(QString::number(count))) << count;
    }
}

void tst_QHexEdit::clickSetsTheCursor()
{
    QFETCH(int, bytesPerLine);
    EditorUnderTest user(counting(64));
    user.editor->setBytesPerLine(bytesPerLine);
    QVERIFY(user.isReady());
    int seen = 0;
    for (int byte = 0; byte < 64; ++byte) {
        if (!user.isInSight(byte, HexArea::Hex)) {
            break;
        }
        ++seen;
        user.click(user.digit(byte, 0));
        QCOMPARE(user.editor->cursor().nibble, 2 * byte);
        QVERIFY(user.editor->cursor().area == HexArea::Hex);
        user.click(user.digit(byte, 1));
        QCOMPARE(user.editor->cursor().nibble, 2 * byte + 1);
        user.click(user.centre(byte, HexArea::Ascii));
        QCOMPARE(user.editor->cursor().nibble, 2 * byte);
        QVERIFY(user.editor->cursor().area == HexArea::Ascii);
    }
    QVERIFY(seen >= 8 && seen >= bytesPerLine);
}

void tst_QHexEdit::clickBesideTheBytes()
{
    EditorUnderTest user(counting(11));
    QVERIFY(user.isReady());
    const QRect all = user.editor->viewport()->rect();
    user.click(QPoint(1, user.centre(8, HexArea::Hex).y()));
    QCOMPARE(user.editor->cursor().nibble, 16);
    user.click(all.bottomRight() - QPoint(2, 2));
    QCOMPARE(user.editor->cursor().nibble, 22);
    user.click(QPoint(all.right() - 2, user.centre(0, HexArea::Hex).y()));
    QCOMPARE(user.editor->cursor().nibble, 14);
    QTest::mouseClick(user.editor->viewport(), Qt::RightButton, Qt::NoModifier, user.digit(3, 0));
    QCOMPARE(user.editor->cursor().nibble, 14);
}

void tst_QHexEdit::dragSelects()
{
    EditorUnderTest user(counting(22));
    QVERIFY(user.isReady());
    user.drag(user.centre(3, HexArea::Hex), user.centre(9, HexArea::Hex));
    QVERIFY(user.isSelected(3, 10));
    user.drag(user.centre(9, HexArea::Ascii), user.centre(3, HexArea::Ascii));
    QVERIFY(user.isSelected(3, 10));
    user.drag(user.digit(3, 0), user.digit(3, 1)); // within one byte: a click with a trembling hand
    QVERIFY(user.editor->selection().isEmpty());
    user.drag(user.centre(20, HexArea::Hex), QPoint(-50, -50));
    QVERIFY(user.isSelected(0, 21));
}

void tst_QHexEdit::shiftClickSelects()
{
    EditorUnderTest user(counting(22));
    QVERIFY(user.isReady());
    user.click(user.digit(2, 0));
    user.click(user.digit(7, 0), Qt::ShiftModifier);
    QVERIFY(user.isSelected(2, 7));
    user.click(user.digit(0, 0), Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 2));
}

void tst_QHexEdit::doubleClickSelectsAByte()
{
    EditorUnderTest user(counting(22));
    QVERIFY(user.isReady());
    QTest::mouseDClick(user.editor->viewport(), Qt::LeftButton, Qt::NoModifier, user.digit(5, 1));
    QVERIFY(user.isSelected(5, 6));
}

void tst_QHexEdit::copies()
{
    EditorUnderTest user(QByteArray("\x0A\xBC\x00\x7F", 4));
    QVERIFY(user.isReady());
    EditorUnderTest::setClipboard(QStringLiteral("before"));
    user.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(EditorUnderTest::clipboard(), QStringLiteral("before"));
    user.key(Qt::Key_A, Qt::ControlModifier);
    user.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(EditorUnderTest::clipboard(), QStringLiteral("0A BC 00 7F"));
    user.key(Qt::Key_Tab); // as text of digits from the characters, too
    user.key(Qt::Key_Right, Qt::ShiftModifier);
    QVERIFY(user.isSelected(0, 4));
    user.key(Qt::Key_Home);
    user.key(Qt::Key_Right, Qt::ShiftModifier);
    user.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(EditorUnderTest::clipboard(), QStringLiteral("0A"));
}

void tst_QHexEdit::cuts()
{
    EditorUnderTest user(QByteArray("\x11\x22\x33"));
    QVERIFY(user.isReady());
    user.key(Qt::Key_X, Qt::ControlModifier); // nothing selected
    QCOMPARE(user.editor->data(), QByteArray("\x11\x22\x33"));
    user.key(Qt::Key_Right, Qt::ShiftModifier);
    user.key(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(user.editor->data(), QByteArray("\0\x22\x33", 3));
    QCOMPARE(EditorUnderTest::clipboard(), QStringLiteral("11"));
}

void tst_QHexEdit::pastes_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("blanks") << "aa BB";
    QTest::newRow("none") << "AABB";
    QTest::newRow("0x") << "0xAA 0xbb";
}

void tst_QHexEdit::pastes()
{
    QFETCH(QString, text);
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    EditorUnderTest::setClipboard(text);
    user.key(Qt::Key_Right);
    user.key(Qt::Key_Right);
    user.key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(user.editor->data(), QByteArray("\x00\xAA\xBB\x03", 4));
    QCOMPARE(user.editor->cursor().nibble, 6);
}

void tst_QHexEdit::pastesPastTheEnd()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    EditorUnderTest::setClipboard(QStringLiteral("77 ").repeated(1000));
    user.key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(user.editor->data(), QByteArray(4, '\x77'));
}

void tst_QHexEdit::refusesOtherText()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    QSignalSpy changes(user.editor, &QHexEdit::dataChanged);
    for (const char *text : {"", "hello", "11 22 zz", "123"}) {
        EditorUnderTest::setClipboard(QLatin1String(text));
        user.key(Qt::Key_A, Qt::ControlModifier);
        user.key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(user.editor->data(), counting(4));
        QVERIFY(user.isSelected(0, 4));
    }
    QCOMPARE(changes.count(), 0);
}

void tst_QHexEdit::undoesAndRedoes()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    QVERIFY(!user.editor->canUndo());
    user.type("FFEE");
    QVERIFY(user.editor->canUndo() && !user.editor->canRedo());
    user.key(Qt::Key_Z, Qt::ControlModifier);
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.editor->data(), QByteArray("\xFF\x01\x02\x03"));
    QVERIFY(user.editor->canRedo());
    user.editor->redo();
    QCOMPARE(user.editor->data(), QByteArray("\xFF\xE1\x02\x03"));
    QTest::keySequence(user.editor, QKeySequence::Redo);
    QCOMPARE(user.editor->data(), QByteArray("\xFF\xEE\x02\x03"));
    user.editor->redo();
    for (int i = 0; i < 9; ++i) {
        user.editor->undo();
    }
    QCOMPARE(user.editor->data(), counting(4));
    user.editor->redo();
    QCOMPARE(user.editor->data(), QByteArray("\xF0\x01\x02\x03"));
    user.editor->setData(counting(4));
    QVERIFY(!user.editor->canUndo() && !user.editor->canRedo());
}

void tst_QHexEdit::clearIsOneStep()
{
    EditorUnderTest user(counting(4));
    user.editor->clear();
    QCOMPARE(user.editor->data(), QByteArray(4, '\0'));
    user.editor->undo();
    QCOMPARE(user.editor->data(), counting(4));
    QVERIFY(!user.editor->canUndo());
}

void tst_QHexEdit::readOnlyIsReadOnly()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    user.type("FF");
    user.editor->setReadOnly(true);
    const QByteArray data = user.editor->data();
    EditorUnderTest::setClipboard(QStringLiteral("77"));
    user.type("AA");
    user.key(Qt::Key_Delete);
    user.key(Qt::Key_Backspace);
    user.key(Qt::Key_V, Qt::ControlModifier);
    user.key(Qt::Key_Z, Qt::ControlModifier);
    user.key(Qt::Key_A, Qt::ControlModifier);
    user.key(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(user.editor->data(), data);
    QVERIFY(!user.editor->canUndo());
    user.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(EditorUnderTest::clipboard(), QStringLiteral("FF 01 02 03"));
    user.editor->setReadOnly(false);
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(user.editor->data() != data);
}

void tst_QHexEdit::signalsWhatChanged()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    QSignalSpy changes(user.editor, &QHexEdit::dataChanged);
    user.type("1");
    QCOMPARE(changes.count(), 1);
    user.type("0"); // as it was
    QCOMPARE(changes.count(), 1);
    user.editor->undo();
    QCOMPARE(changes.count(), 2);
    user.editor->redo();
    QCOMPARE(changes.count(), 3);
    user.editor->redo();
    user.key(Qt::Key_Right);
    QCOMPARE(changes.count(), 3);
}

void tst_QHexEdit::emptyDataIsPainted()
{
    EditorUnderTest user{QByteArray()};
    QVERIFY(user.isReady());
    QVERIFY(!user.picture().isNull());
    for (int code : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_PageDown, Qt::Key_Right, Qt::Key_Delete,
                     Qt::Key_Backspace, Qt::Key_1}) {
        user.key(code);
        QCOMPARE(user.editor->cursor().nibble, 0);
    }
    user.click(user.editor->viewport()->rect().center());
    QCOMPARE(user.editor->cursor().nibble, 0);
    QVERIFY(user.isInSight(0, HexArea::Hex));
}

void tst_QHexEdit::keepsTheCursorInSight()
{
    EditorUnderTest user(counting(5000));
    user.editor->setBytesPerLine(16);
    user.window.resize(260, 260); // too narrow for a line
    QVERIFY(user.isReady());
    QVERIFY(user.editor->horizontalScrollBar()->maximum() > 0);
    const auto isInSight = [&user] {
        const HexPlace cursor = user.editor->cursor();
        return user.isInSight(cursor.nibble / 2, cursor.area);
    };
    for (int code : {Qt::Key_End, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_Down, Qt::Key_Tab, Qt::Key_End}) {
        user.key(code);
        QVERIFY2(isInSight(), qPrintable(QString::number(code, 16)));
    }
    user.key(Qt::Key_End, Qt::ControlModifier);
    QVERIFY(isInSight());
    QCOMPARE(user.editor->verticalScrollBar()->value(), user.editor->verticalScrollBar()->maximum());
    user.key(Qt::Key_Home, Qt::ControlModifier);
    QVERIFY(isInSight());
    QCOMPARE(user.editor->verticalScrollBar()->value(), 0);
}

void tst_QHexEdit::scrollsByWheel()
{
    EditorUnderTest user(counting(5000));
    QVERIFY(user.isReady());
    const QPoint centre = user.editor->viewport()->rect().center();
    QWheelEvent event(centre, user.editor->viewport()->mapToGlobal(centre), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(user.editor->viewport(), &event);
    QVERIFY(user.editor->verticalScrollBar()->value() > 0);
    QCOMPARE(user.editor->cursor().nibble, 0);
    QVERIFY(!user.isInSight(0, HexArea::Hex));
}

// There is room for a frame above the first line.
void tst_QHexEdit::paintsNothingOfLinesAbove()
{
    EditorUnderTest user(counting(64));
    user.editor->setBytesPerLine(1);
    QVERIFY(user.isReady());
    user.key(Qt::Key_A, Qt::ControlModifier);
    QVERIFY(user.editor->verticalScrollBar()->value() > 0);
    const QRect lastByte = user.editor->byteRect(63, HexArea::Hex);
    const QColor marked = user.editor->palette().color(QPalette::Highlight);
    QVERIFY(has(user.picture(), lastByte, marked));
    QVERIFY(!has(user.picture(), QRect(lastByte.left(), 1, lastByte.width(), 2), marked));
}

void tst_QHexEdit::paintsTheSelection()
{
    EditorUnderTest user(counting(16));
    QVERIFY(user.isReady());
    const QColor marked = user.editor->palette().color(QPalette::Highlight);
    QVERIFY(!has(user.picture(), user.editor->byteRect(3, HexArea::Hex), marked));
    user.drag(user.centre(2, HexArea::Hex), user.centre(4, HexArea::Hex));
    for (HexArea area : {HexArea::Hex, HexArea::Ascii}) {
        QVERIFY(!has(user.picture(), user.editor->byteRect(1, area), marked));
        QVERIFY(has(user.picture(), user.editor->byteRect(3, area), marked));
        QVERIFY(!has(user.picture(), user.editor->byteRect(6, area), marked));
    }
}

void tst_QHexEdit::paintsTheFocus()
{
    EditorUnderTest user(counting(16));
    QVERIFY(user.isReady());
    const QColor frame = user.editor->palette().color(QPalette::Highlight);
    QCOMPARE(user.picture().pixelColor(0, 0).rgb(), frame.rgb());
    user.behind->setFocus();
    QVERIFY(user.picture().pixelColor(0, 0).rgb() != frame.rgb());
    QVERIFY(has(user.picture(), user.editor->byteRect(0, HexArea::Hex), user.editor->palette().color(QPalette::Text)));
}

void tst_QHexEdit::takesTheColoursOfThePalette()
{
    EditorUnderTest user(counting(16));
    QPalette contrast;
    contrast.setColor(QPalette::Base, Qt::black);
    contrast.setColor(QPalette::AlternateBase, Qt::black);
    contrast.setColor(QPalette::Text, Qt::yellow);
    contrast.setColor(QPalette::Highlight, Qt::cyan);
    contrast.setColor(QPalette::HighlightedText, Qt::black);
    user.editor->setPalette(contrast);
    QVERIFY(user.isReady());
    const QImage picture = user.picture();
    QVERIFY(has(picture, user.editor->byteRect(5, HexArea::Hex), Qt::black));
    QVERIFY(!has(picture, picture.rect(), Qt::white));
    QVERIFY(has(picture, user.editor->byteRect(0, HexArea::Hex), Qt::yellow));
    QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::cyan));
}

void tst_QHexEdit::leavesEnterAndEscapeToTheWindow()
{
    EditorUnderTest user(counting(4));
    QVERIFY(user.isReady());
    for (int code : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_F1}) {
        QKeyEvent event(QEvent::KeyPress, code, Qt::NoModifier);
        QApplication::sendEvent(user.editor, &event);
        QVERIFY(!event.isAccepted());
    }
    QCOMPARE(user.editor->data(), counting(4));
}

void tst_QHexEdit::buttonsFollowTheHistory()
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

void tst_QHexEdit::clearIsOneStepAmongOthers()
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

void tst_QHexEdit::dialogGrowsWithTheLine()
{
    DialogUnderTest user;
    QVERIFY(user.isReady());
    auto *combo = user.dialog.findChild<QComboBox *>(QStringLiteral("pComboBox"));
    combo->setCurrentIndex(15);
    QVERIFY(user.editor->width() >= user.editor->sizeHint().width());
    const int width = user.dialog.width();
    combo->setCurrentIndex(0);
    QCOMPARE(user.dialog.width(), width);
}

X9_GUI_TEST(tst_QHexEdit)
#include "tst_QHexEdit.moc"
