#include "resources/Resources.h"
#include "tests/support/TestProgram.h"
#include "widgets/CHexEditView.h"
#include "widgets/CHexLineEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QRandomGenerator>
#include <QtTest>
#include <QVBoxLayout>

namespace {
QByteArray counting(int size)
{
    QByteArray data;
    for (int i = 0; i < size; ++i) {
        data.append(static_cast<char>(i + 1));
    }
    return data;
}

/// A field on screen with the keyboard in its line.
class FieldUnderTest
{
public:
    explicit FieldUnderTest(int length)
    {
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(field);
        layout->addWidget(other);
        window.show();
        QApplication::setActiveWindow(&window);
        field->setLength(length);
        line = field->findChild<QLineEdit *>();
        button = field->findChild<QPushButton *>();
        field->setFocus();
        line->selectAll();
    }

    bool isReady() { return QTest::qWaitForWindowActive(&window) && line->hasFocus(); }
    /// Empties the line first, as a user who types a new payload.
    void enter(const QString &text) const
    {
        line->selectAll();
        key(Qt::Key_Delete);
        type(text);
    }
    void type(const QString &text) const { QTest::keyClicks(line, text); }
    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(line, static_cast<Qt::Key>(code), modifiers);
    }
    void paste(const QString &text) const
    {
        QApplication::clipboard()->setText(text);
        key(Qt::Key_V, Qt::ControlModifier);
    }
    QString text() const { return line->text(); }
    CHexEditView *dialog() const { return field->findChild<CHexEditView *>(); }

    QWidget window;
    CHexLineEdit *field = new CHexLineEdit;
    QPushButton *other = new QPushButton;
    QLineEdit *line = nullptr;
    QPushButton *button = nullptr;
};
} // namespace

class tst_CHexLineEdit : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void looksAsItShould();
    static void hasNoBytesAtFirst();
    static void typesThreeDigits();
    static void cutsWhatIsTooMuch();
    static void showsEightOfMany();
    static void enlarges();
    static void shrinks();
    static void lengthHasBounds();
    static void payloadHasBounds();
    static void keepsTheCaseUntilEditingIsFinished();
    static void finishingShowsTheWholePayload();
    static void finishingAloneChangesNothing();
    static void editingTheLineOfALongPayload();
    static void aBlankIsNoEdit();
    static void insertsInTheMiddle();
    static void deletesInTheMiddle();
    static void backspaceIsNeverStuck();
    static void deleteIsNeverStuck();
    static void deletesASelectedBlank();
    static void pastes_data();
    static void pastes();
    static void typesPrefixes();
    static void refusesOtherText_data();
    static void refusesOtherText();
    static void undoesAndRedoes();
    static void undoBringsHiddenBytesBack();
    static void ownerEndsTheHistory();
    static void contextMenuUndoes();
    static void typesAsTheRulesSay_data();
    static void typesAsTheRulesSay();
    static void dialogEditsAllBytes();
    static void cancelledDialogChangesNothing();
    static void dialogKeepsALengthSetMeanwhile();
    static void opensOneDialog();
    static void dialogGoesWithItsField();
    static void isDisabledAsOne();
    static void isReachedByKeys();
};

void tst_CHexLineEdit::looksAsItShould()
{
    const FieldUnderTest user(8);
    auto *layout = user.field->findChild<QHBoxLayout *>(QStringLiteral("pHLayout"));
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->contentsMargins(), QMargins(0, 0, 5, 0));
    QCOMPARE(layout->stretch(0), 1);
    QCOMPARE(user.line->minimumWidth(), 20);
    QCOMPARE(user.button->text(), QStringLiteral("..."));
    QCOMPARE(user.button->toolTip(), QStringLiteral("Edit data"));
    QVERIFY(!user.button->accessibleName().isEmpty());
    QVERIFY(!user.line->accessibleName().isEmpty());
    QVERIFY(user.button->geometry().left() >= user.line->geometry().right());
    QCOMPARE(user.line->height(), user.line->sizeHint().height());
    QCOMPARE(user.button->height(), user.line->height());
}

void tst_CHexLineEdit::hasNoBytesAtFirst()
{
    const CHexLineEdit field;
    QCOMPARE(field.length(), 0);
    QCOMPARE(field.payload(), QByteArray());
}

void tst_CHexLineEdit::typesThreeDigits()
{
    FieldUnderTest user(8);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("1"));
    QCOMPARE(user.text(), QStringLiteral("1"));
    QCOMPARE(user.field->payload(), QByteArray("\x01\0\0\0\0\0\0\0", 8));
    user.type(QStringLiteral("2"));
    QCOMPARE(user.text(), QStringLiteral("12 "));
    QCOMPARE(user.field->payload(), QByteArray("\x12\0\0\0\0\0\0\0", 8));
    user.type(QStringLiteral("3"));
    QCOMPARE(user.text(), QStringLiteral("12 3"));
    QCOMPARE(user.field->payload(), QByteArray("\x12\x03\0\0\0\0\0\0", 8));
}

void tst_CHexLineEdit::cutsWhatIsTooMuch()
{
    FieldUnderTest user(2);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("123456"));
    QCOMPARE(user.text(), QStringLiteral("12 34 "));
    QCOMPARE(user.field->payload(), QByteArray("\x12\x34"));
    user.field->setLength(0);
    user.type(QStringLiteral("12"));
    QCOMPARE(user.text(), QString());
    QCOMPARE(user.field->payload(), QByteArray());
}

void tst_CHexLineEdit::showsEightOfMany()
{
    FieldUnderTest user(8);
    user.field->setPayload(counting(64));
    QCOMPARE(user.text(), QStringLiteral("01 02 03 04 05 06 07 08 "));
    QCOMPARE(user.field->payload(), counting(64));
    QCOMPARE(user.field->length(), 64);
}

void tst_CHexLineEdit::enlarges()
{
    FieldUnderTest user(8);
    user.field->setPayload(counting(8));
    user.field->setLength(12);
    QCOMPARE(user.field->payload(), counting(8) + QByteArray(4, '\0'));
    QCOMPARE(user.text(), QStringLiteral("01 02 03 04 05 06 07 08 "));
    user.field->setPayload(QByteArray("\x0A"));
    user.field->setLength(3);
    QCOMPARE(user.text(), QStringLiteral("0A 00 00 "));
}

void tst_CHexLineEdit::shrinks()
{
    FieldUnderTest user(8);
    user.field->setPayload(counting(8));
    user.field->setLength(3);
    QCOMPARE(user.field->payload(), counting(3));
    QCOMPARE(user.text(), QStringLiteral("01 02 03 "));
    user.field->setLength(8); // what was cut does not come back
    QCOMPARE(user.field->payload(), counting(3) + QByteArray(5, '\0'));
}

void tst_CHexLineEdit::lengthHasBounds()
{
    FieldUnderTest user(8);
    user.field->setLength(65);
    QCOMPARE(user.field->length(), 64);
    user.field->setLength(std::numeric_limits<int>::max());
    QCOMPARE(user.field->length(), 64);
    user.field->setLength(-1);
    QCOMPARE(user.field->length(), 0);
    user.field->setLength(std::numeric_limits<int>::min());
    QCOMPARE(user.field->payload(), QByteArray());
    QCOMPARE(user.text(), QString());
}

void tst_CHexLineEdit::payloadHasBounds()
{
    FieldUnderTest user(8);
    user.field->setPayload(counting(65));
    QCOMPARE(user.field->payload(), counting(64));
}

void tst_CHexLineEdit::keepsTheCaseUntilEditingIsFinished()
{
    FieldUnderTest user(3);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("aBcD"));
    QCOMPARE(user.text(), QStringLiteral("aB cD "));
    user.key(Qt::Key_Return);
    QCOMPARE(user.text(), QStringLiteral("AB CD 00 "));
    QCOMPARE(user.field->payload(), QByteArray("\xAB\xCD\0", 3));
}

void tst_CHexLineEdit::finishingShowsTheWholePayload()
{
    FieldUnderTest user(64);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("ab").repeated(12));
    QCOMPARE(user.text(), QStringLiteral("ab ").repeated(12)); // more than eight while typing
    user.other->setFocus();
    QCOMPARE(user.text(), QStringLiteral("AB ").repeated(8));
    QCOMPARE(user.field->payload(), QByteArray(12, '\xAB') + QByteArray(52, '\0'));
    user.line->setFocus();
    user.enter(QStringLiteral("123"));
    user.other->setFocus();
    QCOMPARE(user.text(), QStringLiteral("12 03 00 00 00 00 00 00 "));
}

void tst_CHexLineEdit::finishingAloneChangesNothing()
{
    FieldUnderTest user(64);
    QVERIFY(user.isReady());
    user.field->setPayload(counting(64));
    user.key(Qt::Key_Return);
    user.other->setFocus();
    user.line->setFocus();
    user.key(Qt::Key_Right);
    user.other->setFocus();
    QCOMPARE(user.field->payload(), counting(64));
}

// An edit sets the whole payload: what the line does not hold is zero.
void tst_CHexLineEdit::editingTheLineOfALongPayload()
{
    FieldUnderTest user(8);
    QVERIFY(user.isReady());
    user.field->setPayload(counting(64));
    user.key(Qt::Key_End);
    user.type(QStringLiteral("9"));
    QCOMPARE(user.text(), QStringLiteral("01 02 03 04 05 06 07 08 9"));
    QCOMPARE(user.field->payload(), counting(9) + QByteArray(55, '\0'));
}

void tst_CHexLineEdit::aBlankIsNoEdit()
{
    FieldUnderTest user(8);
    QVERIFY(user.isReady());
    user.field->setPayload(counting(64));
    user.key(Qt::Key_Home);
    user.type(QStringLiteral(" "));
    user.paste(QStringLiteral("  "));
    QCOMPARE(user.text(), QStringLiteral("01 02 03 04 05 06 07 08 "));
    QCOMPARE(user.field->payload(), counting(64));
}

void tst_CHexLineEdit::insertsInTheMiddle()
{
    FieldUnderTest user(4);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("112233"));
    user.line->setCursorPosition(2);
    user.type(QStringLiteral("A"));
    QCOMPARE(user.text(), QStringLiteral("11 A2 23 3"));
    QCOMPARE(user.line->cursorPosition(), 4);
    user.type(QStringLiteral("B"));
    QCOMPARE(user.text(), QStringLiteral("11 AB 22 33 "));
    QCOMPARE(user.line->cursorPosition(), 6);
    user.type(QStringLiteral("C")); // pushes the last digit out
    QCOMPARE(user.text(), QStringLiteral("11 AB C2 23 "));
    QCOMPARE(user.line->cursorPosition(), 7);
}

void tst_CHexLineEdit::deletesInTheMiddle()
{
    FieldUnderTest user(4);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("12345678"));
    user.line->setCursorPosition(5); // behind the 4
    user.key(Qt::Key_Backspace);
    QCOMPARE(user.text(), QStringLiteral("12 35 67 8"));
    QCOMPARE(user.line->cursorPosition(), 4);
    user.key(Qt::Key_Delete);
    QCOMPARE(user.text(), QStringLiteral("12 36 78 "));
    QCOMPARE(user.field->payload(), QByteArray("\x12\x36\x78\0", 4));
    user.line->setSelection(1, 4);
    user.type(QStringLiteral("F"));
    QCOMPARE(user.text(), QStringLiteral("1F 78 "));
    user.type(QStringLiteral("E"));
    QCOMPARE(user.text(), QStringLiteral("1F E7 8"));
}

void tst_CHexLineEdit::backspaceIsNeverStuck()
{
    FieldUnderTest user(4);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("12345678"));
    QString digits = QStringLiteral("12345678");
    while (!digits.isEmpty()) {
        user.key(Qt::Key_Backspace);
        digits.chop(1);
        QCOMPARE(user.text().remove(QLatin1Char(' ')), digits);
    }
    user.key(Qt::Key_Backspace);
    QCOMPARE(user.text(), QString());
}

void tst_CHexLineEdit::deleteIsNeverStuck()
{
    FieldUnderTest user(4);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("12345678"));
    user.line->setCursorPosition(2); // before a blank
    for (const char *digits : {"1245678", "125678", "12678", "1278", "128", "12", "12"}) {
        user.key(Qt::Key_Delete);
        QCOMPARE(user.text().remove(QLatin1Char(' ')), QLatin1String(digits));
    }
}

void tst_CHexLineEdit::deletesASelectedBlank()
{
    FieldUnderTest user(4);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("1234"));
    user.line->setSelection(2, 1);
    user.key(Qt::Key_Backspace);
    QCOMPARE(user.text(), QStringLiteral("12 34 "));
    QCOMPARE(user.line->cursorPosition(), 2);
    user.key(Qt::Key_Backspace);
    QCOMPARE(user.text(), QStringLiteral("13 4"));
}

void tst_CHexLineEdit::pastes_data()
{
    QTest::addColumn<QString>("pasted");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("digits") << "1122"
                            << "11 22 " << QByteArray("\x11\x22\0", 3);
    QTest::newRow("blanks anywhere") << " 1 12\t2\n3 "
                                     << "11 22 3" << QByteArray("\x11\x22\x03", 3);
    QTest::newRow("0x") << "0x11 0X2\n0x33"
                        << "11 02 33 " << QByteArray("\x11\x02\x33", 3);
    QTest::newRow("too much") << "11 22 33 44 55"
                              << "11 22 33 " << QByteArray("\x11\x22\x33", 3);
    QTest::newRow("far too much") << QString(100000, QLatin1Char('7')) << "77 77 77 " << QByteArray(R"(www)", 3);
}

void tst_CHexLineEdit::pastes()
{
    QFETCH(QString, pasted);
    FieldUnderTest user(3);
    QVERIFY(user.isReady());
    user.enter(QString());
    user.paste(pasted);
    QTEST(user.text(), "text");
    QTEST(user.field->payload(), "payload");
}

void tst_CHexLineEdit::typesPrefixes()
{
    FieldUnderTest user(3);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("0x1a0x2B"));
    QCOMPARE(user.text(), QStringLiteral("1a 2B "));
    QCOMPARE(user.field->payload(), QByteArray("\x1A\x2B\0", 3));
}

void tst_CHexLineEdit::refusesOtherText_data()
{
    QTest::addColumn<QString>("pasted");
    QTest::newRow("x alone") << "x11 22";
    QTest::newRow("words") << "hello";
    QTest::newRow("comma") << "11,22";
    QTest::newRow("full width digits") << QString::fromUtf8("１１");
}

void tst_CHexLineEdit::refusesOtherText()
{
    QFETCH(QString, pasted);
    FieldUnderTest user(3);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("AB"));
    user.paste(pasted);
    QCOMPARE(user.text(), QStringLiteral("AB "));
    user.type(QStringLiteral("xyz-g"));
    QCOMPARE(user.text(), QStringLiteral("AB "));
    QCOMPARE(user.field->payload(), QByteArray("\xAB\0\0", 3));
}

void tst_CHexLineEdit::undoesAndRedoes()
{
    FieldUnderTest user(3);
    QVERIFY(user.isReady());
    user.enter(QString());
    user.type(QStringLiteral("12ab"));
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.text(), QStringLiteral("12 a"));
    QCOMPARE(user.field->payload(), QByteArray("\x12\x0A\0", 3));
    QCOMPARE(user.line->cursorPosition(), 4);
    user.key(Qt::Key_Z, Qt::ControlModifier);
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.text(), QStringLiteral("1"));
    user.key(Qt::Key_Y, Qt::ControlModifier);
    user.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(user.text(), QStringLiteral("12 a"));
    QCOMPARE(user.field->payload(), QByteArray("\x12\x0A\0", 3));
    user.type(QStringLiteral("F"));
    user.key(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(user.text(), QStringLiteral("12 aF "));
    for (int i = 0; i < 20; ++i) {
        user.key(Qt::Key_Z, Qt::ControlModifier);
    }
    QCOMPARE(user.text(), QStringLiteral("00 00 00 "));
    QCOMPARE(user.field->payload(), QByteArray(3, '\0'));
}

void tst_CHexLineEdit::undoBringsHiddenBytesBack()
{
    FieldUnderTest user(8);
    QVERIFY(user.isReady());
    user.field->setPayload(counting(64));
    user.line->setCursorPosition(1);
    user.type(QStringLiteral("F"));
    QCOMPARE(user.field->payload().right(50), QByteArray(50, '\0'));
    user.other->setFocus();
    user.line->setFocus();
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.field->payload(), counting(64));
    QCOMPARE(user.text(), QStringLiteral("01 02 03 04 05 06 07 08 "));
    QCOMPARE(user.line->cursorPosition(), 1);
}

void tst_CHexLineEdit::ownerEndsTheHistory()
{
    FieldUnderTest user(3);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("112233"));
    user.field->setLength(2);
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.field->payload(), QByteArray("\x11\x22"));
    user.enter(QStringLiteral("44"));
    user.field->setPayload(QByteArray(R"(U)"));
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.field->payload(), QByteArray("\x55"));
}

void tst_CHexLineEdit::contextMenuUndoes()
{
    FieldUnderTest user(3);
    QVERIFY(user.isReady());
    user.enter(QStringLiteral("12"));
    const auto trigger = [&user](int index) {
        const QPoint centre = user.line->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, centre, user.line->mapToGlobal(centre));
        QApplication::sendEvent(user.line, &event);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (menu == nullptr || !menu->actions().at(index)->isEnabled()) {
            return false;
        }
        menu->actions().at(index)->trigger();
        menu->close();
        return true;
    };
    QVERIFY(!trigger(1)); // nothing to redo
    QApplication::activePopupWidget()->close();
    QVERIFY(trigger(0));
    QCOMPARE(user.text(), QStringLiteral("1"));
    QVERIFY(trigger(1));
    QCOMPARE(user.text(), QStringLiteral("12 "));
}

void tst_CHexLineEdit::typesAsTheRulesSay_data()
{
    QTest::addColumn<int>("size");
    for (int size : {0, 1, 2, 3, 8, 12, 64}) {
        QTest::newRow(qPrintable(QString::number(size))) << size;
    }
}

namespace {
/// The rules, told once more: what line and payload are for the digits typed so far.
struct Model
{
    explicit Model(int bytes)
        : size(bytes)
        , payload(bytes, '\0')
        , digits(QString(2 * std::min(bytes, 8), QLatin1Char('0')))
    {
    }

    QString text() const
    {
        QString shown;
        for (int i = 0; i < digits.size(); ++i) {
            shown += digits.at(i);
            shown += i % 2 == 1 ? QStringLiteral(" ") : QString();
        }
        return shown;
    }
    void setDigits(const QString &edited)
    {
        if (edited.left(2 * size) == digits) {
            return;
        }
        digits = edited.left(2 * size);
        payload = QByteArray(size, '\0');
        for (int i = 0; i < digits.size(); i += 2) {
            payload[i / 2] = static_cast<char>(digits.mid(i, 2).toInt(nullptr, 16));
        }
    }

    int size;
    QByteArray payload;
    QString digits;
};

int digitsIn(const QString &text)
{
    return text.size() - text.count(QLatin1Char(' '));
}
} // namespace

void tst_CHexLineEdit::typesAsTheRulesSay()
{
    QFETCH(int, size);
    FieldUnderTest user(size);
    QVERIFY(user.isReady());
    user.key(Qt::Key_End);
    Model model(size);
    QRandomGenerator random(static_cast<quint32>(size) + 1);
    const QString characters = QStringLiteral("0123456789abcdefABCDEF");
    for (int i = 0; i < 300; ++i) {
        const bool isSelecting = random.bounded(6) == 0;
        if (isSelecting) {
            const int from = random.bounded(user.text().size() + 1);
            user.line->setSelection(from, random.bounded(6));
        } else if (random.bounded(4) == 0) {
            user.line->setCursorPosition(random.bounded(user.text().size() + 1));
        }
        const bool hasSelection = user.line->hasSelectedText();
        const int start = hasSelection ? user.line->selectionStart() : user.line->cursorPosition();
        const int first = digitsIn(user.text().left(start));
        const int removed = hasSelection ? digitsIn(user.line->selectedText()) : 0;
        QString digits = model.digits;
        int cursor = first;
        digits.remove(first, removed);
        const int action = random.bounded(10);
        if (action < 6) {
            const QChar digit = characters.at(random.bounded(characters.size()));
            digits.insert(first, digit);
            cursor = std::min(first + 1, 2 * size);
            user.type(QString(digit));
        } else if (action == 6) {
            const int at = hasSelection ? first : first - 1;
            digits.remove(std::max(0, at), hasSelection || first == 0 ? 0 : 1);
            cursor = std::max(0, at);
            user.key(Qt::Key_Backspace);
        } else if (action == 7) {
            digits.remove(first, hasSelection ? 0 : 1);
            user.key(Qt::Key_Delete);
        } else if (action == 8) {
            user.type(QStringLiteral(" "));
        } else {
            digits.insert(first, QStringLiteral("1f2E3"));
            cursor = std::min(first + 5, 2 * size);
            user.paste(QStringLiteral(" 1f2 E\t3"));
        }
        model.setDigits(digits);
        QCOMPARE(user.text(), model.text());
        QCOMPARE(user.field->payload(), model.payload);
        QCOMPARE(digitsIn(user.text().left(user.line->cursorPosition())), cursor);
    }
    user.key(Qt::Key_Return);
    QCOMPARE(user.field->payload(), model.payload);
}

void tst_CHexLineEdit::dialogEditsAllBytes()
{
    FieldUnderTest user(8);
    QVERIFY(user.isReady());
    user.field->setPayload(counting(64));
    QTest::mouseClick(user.button, Qt::LeftButton);
    QVERIFY(user.dialog() != nullptr);
    QVERIFY(user.dialog()->isModal());
    auto *editor = user.dialog()->findChild<QWidget *>(QStringLiteral("hexEdit"));
    QTest::keyClicks(editor, QStringLiteral("FF"));
    QTest::keyClick(editor, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Backspace);
    QCOMPARE(user.field->payload(), counting(64)); // not yet
    auto *box = user.dialog()->findChild<QDialogButtonBox *>();
    QTest::mouseClick(box->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QByteArray expected = counting(64);
    expected[0] = '\xFF';
    expected[63] = '\0';
    QCOMPARE(user.field->payload(), expected);
    QCOMPARE(user.text(), QStringLiteral("FF 02 03 04 05 06 07 08 "));
    QTRY_VERIFY(user.dialog() == nullptr);
    QApplication::setActiveWindow(&user.window);
    user.field->setFocus();
    QVERIFY(user.isReady());
    user.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(user.field->payload(), counting(64));
}

void tst_CHexLineEdit::cancelledDialogChangesNothing()
{
    FieldUnderTest user(8);
    QVERIFY(user.isReady());
    user.field->setPayload(counting(8));
    for (bool byKey : {false, true}) {
        QTest::mouseClick(user.button, Qt::LeftButton);
        auto *editor = user.dialog()->findChild<QWidget *>(QStringLiteral("hexEdit"));
        QTest::keyClicks(editor, QStringLiteral("FFFF"));
        if (byKey) {
            QTest::keyClick(editor, Qt::Key_Escape);
        } else {
            auto *box = user.dialog()->findChild<QDialogButtonBox *>();
            QTest::mouseClick(box->button(QDialogButtonBox::Cancel), Qt::LeftButton);
        }
        QTRY_VERIFY(user.dialog() == nullptr);
        QCOMPARE(user.field->payload(), counting(8));
    }
}

void tst_CHexLineEdit::dialogKeepsALengthSetMeanwhile()
{
    FieldUnderTest user(4);
    for (int length : {2, 8}) {
        user.field->setPayload(counting(4));
        QTest::mouseClick(user.button, Qt::LeftButton);
        user.field->setLength(length);
        user.dialog()->accept();
        QCOMPARE(user.field->payload(), (counting(4) + QByteArray(4, '\0')).left(length));
        QTRY_VERIFY(user.dialog() == nullptr);
    }
}

void tst_CHexLineEdit::opensOneDialog()
{
    FieldUnderTest user(4);
    user.button->click();
    user.button->click();
    QCOMPARE(user.field->findChildren<CHexEditView *>().size(), 1);
}

void tst_CHexLineEdit::dialogGoesWithItsField()
{
    FieldUnderTest user(4);
    QVERIFY(user.isReady());
    QTest::mouseClick(user.button, Qt::LeftButton);
    const QPointer<CHexEditView> dialog = user.dialog();
    QVERIFY(dialog != nullptr);
    delete user.field;
    QVERIFY(dialog == nullptr);
    QVERIFY(user.window.isEnabled());
    QTest::mouseClick(user.other, Qt::LeftButton);
    QVERIFY(user.other->hasFocus());
}

void tst_CHexLineEdit::isDisabledAsOne()
{
    FieldUnderTest user(4);
    user.field->setEnabled(false);
    QVERIFY(!user.line->isEnabled());
    QVERIFY(!user.button->isEnabled());
    QTest::mouseClick(user.button, Qt::LeftButton);
    QTest::keyClicks(user.line, QStringLiteral("11"));
    QVERIFY(user.dialog() == nullptr);
    QCOMPARE(user.field->payload(), QByteArray(4, '\0'));
}

void tst_CHexLineEdit::isReachedByKeys()
{
    FieldUnderTest user(4);
    QVERIFY(user.isReady());
    user.key(Qt::Key_Tab);
    QVERIFY(user.button->hasFocus());
    QTest::keyClick(user.button, Qt::Key_Space);
    QVERIFY(user.dialog() != nullptr);
}

X9_GUI_TEST(tst_CHexLineEdit)
#include "tst_CHexLineEdit.moc"
