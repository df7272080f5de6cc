#include "can/GatewayIdList.h"
#include "can/GUI_CanGateWay.h"
#include "resources/Resources.h"
#include "tests/support/TestProgram.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStringList>
#include <QToolButton>
#include <QTranslator>
#include <QtTest>

namespace {
const QString Full = QStringLiteral("Maximum frame count 64!");
const QString Exists = QStringLiteral("The ID already exists in the list!");
const QString Wrong =
    QStringLiteral("Frame ID error, Standard frame valid range: 0x0-0x7FF, Extend frame valid range: 0x0-0x1FFFFFFF");

using Words = QSet<quint32>;

/// Words of the identifiers 0 to count - 1, standard.
Words standardWords(int count)
{
    Words words;
    for (int i = 0; i < count; ++i) {
        words.insert(gatewayWord(static_cast<quint32>(i), GatewayStandard));
    }
    return words;
}

/// The dialog on screen, its widgets by name.
class DialogUnderTest
{
public:
    explicit DialogUnderTest(const Words &words)
        : dialog(words)
        , messages(&dialog, &GUI_CanGateWay::sig_showMessageBox)
    {
        dialog.show();
        dialog.activateWindow();
    }

    template<typename Widget>
    Widget *find(const char *name) const
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
    QListWidget *list() const { return find<QListWidget>("listWidget"); }
    QLineEdit *entry() const { return find<QLineEdit>("lbx_id"); }
    void type(const QString &text) const
    {
        entry()->clear();
        QTest::keyClicks(entry(), text);
    }
    void choose(quint8 type) const
    {
        auto *combo = find<QComboBox>("cbx_type");
        combo->setCurrentIndex(combo->findData(type));
    }
    void apply(const QString &text, quint8 type) const
    {
        this->type(text);
        choose(type);
        click("btn_apply");
    }
    template<typename Widget>
    Widget *inRow(int row, const char *name) const
    {
        return list()->itemWidget(list()->item(row))->findChild<Widget *>(QLatin1String(name));
    }
    void clickDelete(int row) const
    {
        list()->scrollToItem(list()->item(row));
        QTest::mouseClick(inRow<QToolButton>(row, "btn_delete"), Qt::LeftButton);
    }
    QString row(int row) const
    {
        return inRow<QLabel>(row, "lbl_number")->text() + QLatin1Char(' ') + inRow<QLabel>(row, "lbl_id")->text() +
               QLatin1Char(' ') + inRow<QLabel>(row, "lbl_type")->text();
    }
    QStringList rows() const
    {
        QStringList result;
        for (int i = 0; i < list()->count(); ++i) {
            result.append(row(i));
        }
        return result;
    }
    /// The texts of the messages asked for since the last time; a mode other than 4 is put before its text.
    QStringList takeMessages()
    {
        QStringList texts;
        for (const QList<QVariant> &message : qAsConst(messages)) {
            const int mode = message.at(1).toInt();
            texts.append((mode == 4 ? QString() : QString::number(mode)) + message.at(0).toString());
        }
        messages.clear();
        return texts;
    }

    GUI_CanGateWay dialog;
    QSignalSpy messages;
};
} // namespace

class tst_GUI_CanGateWay : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }

    static void looksAsItShould();
    static void speaksChinese();
    static void showsTheEntries();
    static void rowHasItsPictures();
    static void entryTakesHexadecimalOnly();
    static void appliesOrRefuses_data();
    static void appliesOrRefuses();
    static void refusesADuplicate();
    static void listsAnIdentifierOncePerType();
    static void refusesTheSixtyFifth();
    static void countComesBeforeDuplicate();
    static void newRowComesLastAndIntoView();
    static void deletesARow();
    static void deletesOneOfBothTypes();
    static void deletesRowByRow();
    static void deletingKeepsWhatIsInView();
    static void deletesWithTheKeyboard();
    static void delElsewhereDeletesNoRow();
    static void delNeedsASelectedRow();
    static void clears();
    static void oddWordsStay();
    static void moreThanItTakes();
    static void okAccepts();
    static void leavingDiscards_data();
    static void leavingDiscards();
    static void enterApplies();
    static void enterOnAButtonPressesIt();
    static void entryIsReadyForTheNextOne();
    static void tabOrder();
    static void rowsFit();
};

void tst_GUI_CanGateWay::looksAsItShould()
{
    DialogUnderTest user({});
    QCOMPARE(user.dialog.windowTitle(), QStringLiteral("Gateway filtering rule"));
    QCOMPARE(user.dialog.size(), QSize(545, 381));
    QCOMPARE(user.find<QLabel>("label")->text(), QStringLiteral("ID:  0x"));
    QCOMPARE(user.entry()->text(), QStringLiteral("1"));
    QCOMPARE(user.find<QPushButton>("btn_apply")->text(), QStringLiteral("Apply"));
    QCOMPARE(user.find<QPushButton>("btn_clear")->text(), QStringLiteral("Clear"));
    QCOMPARE(user.find<QPushButton>("btn_ok")->text(), QStringLiteral("OK"));
    QCOMPARE(user.find<QPushButton>("btn_cancel")->text(), QStringLiteral("Cancle"));
    const auto *type = user.find<QComboBox>("cbx_type");
    QCOMPARE(type->count(), 2);
    QCOMPARE(type->itemText(0), QStringLiteral("Standard"));
    QCOMPARE(type->itemData(0).toUInt(), 0U);
    QCOMPARE(type->itemText(1), QStringLiteral("Extend"));
    QCOMPARE(type->itemData(1).toUInt(), 1U);
    QCOMPARE(type->currentIndex(), 0);
    QCOMPARE(user.list()->count(), 0);
}

void tst_GUI_CanGateWay::speaksChinese()
{
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QVERIFY(QApplication::installTranslator(&translator));
    DialogUnderTest user({gatewayWord(1, GatewayStandard), gatewayWord(1, GatewayExtend)});
    QCOMPARE(user.dialog.windowTitle(), QStringLiteral("网关过滤规则"));
    QCOMPARE(user.find<QPushButton>("btn_cancel")->text(), QStringLiteral("取消"));
    QCOMPARE(user.find<QComboBox>("cbx_type")->itemText(1), QStringLiteral("扩展帧"));
    QCOMPARE(user.rows(),
             QStringList({QStringLiteral("01 0x00000001 标准帧"), QStringLiteral("02 0x00000001 扩展帧")}));
    QCOMPARE(user.inRow<QToolButton>(0, "btn_delete")->toolTip(), QStringLiteral("删除"));
    user.apply(QStringLiteral("1"), GatewayExtend);
    QCOMPARE(user.takeMessages(), QStringList(QStringLiteral("该ID已在列表中！")));
}

void tst_GUI_CanGateWay::showsTheEntries()
{
    const Words words = {gatewayWord(0x1FFFFFFF, GatewayExtend), gatewayWord(0x7AB, GatewayStandard),
                         gatewayWord(0x7AB, GatewayExtend)};
    DialogUnderTest user(words);
    QCOMPARE(user.rows(), QStringList({QStringLiteral("01 0x000007AB Standard"), QStringLiteral("02 0x000007AB Extend"),
                                       QStringLiteral("03 0x1FFFFFFF Extend")}));
    QCOMPARE(user.dialog.entries(), words);
    QCOMPARE(user.list()->item(1)->data(Qt::AccessibleTextRole).toString(), QStringLiteral("0x000007AB Extend"));
}

void tst_GUI_CanGateWay::rowHasItsPictures()
{
    DialogUnderTest user({gatewayWord(1, GatewayStandard)});
    QVERIFY(!user.inRow<QLabel>(0, "lbl_icon")->pixmap(Qt::ReturnByValue).isNull());
    const auto *button = user.inRow<QToolButton>(0, "btn_delete");
    QCOMPARE(button->styleSheet(), QStringLiteral("QToolButton { border: none; padding: 0; }"));
    QVERIFY(!button->icon().isNull());
    QCOMPARE(button->toolTip(), QStringLiteral("Delete"));
    QCOMPARE(button->accessibleName(), QStringLiteral("Delete"));
}

void tst_GUI_CanGateWay::entryTakesHexadecimalOnly()
{
    DialogUnderTest user({});
    user.type(QStringLiteral("0x1 gG-aF+."));
    QCOMPARE(user.entry()->text(), QStringLiteral("1aF"));
}

void tst_GUI_CanGateWay::appliesOrRefuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint8>("type");
    QTest::addColumn<QString>("row"); // empty: refused
    QTest::newRow("7FF standard") << "7FF" << GatewayStandard << "01 0x000007FF Standard";
    QTest::newRow("1FFF standard") << "1FFF" << GatewayStandard << "01 0x00001FFF Standard";
    QTest::newRow("2000 standard") << "2000" << GatewayStandard << "";
    QTest::newRow("2000 extended") << "2000" << GatewayExtend << "01 0x00002000 Extend";
    QTest::newRow("highest") << "1FFFFFFF" << GatewayExtend << "01 0x1FFFFFFF Extend";
    QTest::newRow("above it") << "20000000" << GatewayExtend << "";
    QTest::newRow("nine digits that would fit") << "000000001" << GatewayStandard << "";
    QTest::newRow("nine digits that would fit, extended") << "000000001" << GatewayExtend << "";
    QTest::newRow("blanks") << "1 2 3" << GatewayStandard << "01 0x00000123 Standard";
    QTest::newRow("small letters") << "abc" << GatewayExtend << "01 0x00000ABC Extend";
    QTest::newRow("zero") << "0" << GatewayStandard << "01 0x00000000 Standard";
    QTest::newRow("empty") << "" << GatewayStandard << "";
    QTest::newRow("blanks only") << "  " << GatewayExtend << "";
    QTest::newRow("forty digits") << QString(40, QLatin1Char('1')) << GatewayExtend << "";
}

void tst_GUI_CanGateWay::appliesOrRefuses()
{
    QFETCH(QString, text);
    QFETCH(quint8, type);
    QFETCH(QString, row);
    DialogUnderTest user({});
    user.apply(text, type);
    QCOMPARE(user.rows(), row.isEmpty() ? QStringList() : QStringList(row));
    QCOMPARE(user.dialog.entries().size(), row.isEmpty() ? 0 : 1);
    QCOMPARE(user.takeMessages(), row.isEmpty() ? QStringList(Wrong) : QStringList());
}

void tst_GUI_CanGateWay::refusesADuplicate()
{
    const Words words = {gatewayWord(0x10, GatewayStandard)};
    DialogUnderTest user(words);
    user.apply(QStringLiteral("010"), GatewayStandard);
    QCOMPARE(user.takeMessages(), QStringList(Exists));
    QCOMPARE(user.dialog.entries(), words);
    QCOMPARE(user.list()->count(), 1);
}

void tst_GUI_CanGateWay::listsAnIdentifierOncePerType()
{
    DialogUnderTest user({});
    user.apply(QStringLiteral("123"), GatewayStandard);
    user.apply(QStringLiteral("123"), GatewayExtend);
    QVERIFY(user.takeMessages().isEmpty());
    QCOMPARE(user.rows(),
             QStringList({QStringLiteral("01 0x00000123 Standard"), QStringLiteral("02 0x00000123 Extend")}));
    QCOMPARE(user.dialog.entries(), Words({0x919, 0x91B}));
}

void tst_GUI_CanGateWay::refusesTheSixtyFifth()
{
    DialogUnderTest user({});
    for (int i = 0; i < 64; ++i) {
        user.apply(QString::number(i, 16), GatewayStandard);
    }
    QVERIFY(user.takeMessages().isEmpty());
    QCOMPARE(user.list()->count(), 64);
    QCOMPARE(user.row(63), QStringLiteral("64 0x0000003F Standard"));
    user.apply(QStringLiteral("40"), GatewayStandard);
    QCOMPARE(user.takeMessages(), QStringList(Full));
    QCOMPARE(user.list()->count(), 64);
    QCOMPARE(user.dialog.entries(), standardWords(64));
}

void tst_GUI_CanGateWay::countComesBeforeDuplicate()
{
    DialogUnderTest user(standardWords(64));
    user.apply(QStringLiteral("1"), GatewayStandard);
    QCOMPARE(user.takeMessages(), QStringList(Full));
    user.apply(QStringLiteral("2000"), GatewayStandard); // what is no identifier is refused before anything is counted
    QCOMPARE(user.takeMessages(), QStringList(Wrong));
    QCOMPARE(user.dialog.entries(), standardWords(64));
}

void tst_GUI_CanGateWay::newRowComesLastAndIntoView()
{
    Words words = standardWords(60);
    words.remove(gatewayWord(0, GatewayStandard));
    DialogUnderTest user(words);
    const auto isInView = [&user](int row) {
        return user.list()->viewport()->rect().contains(user.list()->visualItemRect(user.list()->item(row)));
    };
    QVERIFY(isInView(0));
    QVERIFY(!isInView(58));
    user.apply(QStringLiteral("0"), GatewayStandard);
    QCOMPARE(user.row(59), QStringLiteral("60 0x00000000 Standard"));
    QVERIFY(isInView(59));
    QVERIFY(!isInView(0));
}

void tst_GUI_CanGateWay::deletesARow()
{
    DialogUnderTest user(standardWords(3));
    user.clickDelete(1);
    QCOMPARE(user.rows(),
             QStringList({QStringLiteral("01 0x00000000 Standard"), QStringLiteral("02 0x00000002 Standard")}));
    QCOMPARE(user.dialog.entries(), Words({0x01, 0x11}));
    user.apply(QStringLiteral("1"), GatewayStandard);
    QVERIFY(user.takeMessages().isEmpty());
    QCOMPARE(user.row(2), QStringLiteral("03 0x00000001 Standard"));
    QCOMPARE(user.dialog.entries(), standardWords(3));
}

void tst_GUI_CanGateWay::deletesOneOfBothTypes()
{
    DialogUnderTest user({0x919, 0x91B});
    user.clickDelete(0);
    QCOMPARE(user.rows(), QStringList(QStringLiteral("01 0x00000123 Extend")));
    QCOMPARE(user.dialog.entries(), Words({0x91B}));
}

void tst_GUI_CanGateWay::deletesRowByRow()
{
    DialogUnderTest user(standardWords(20));
    for (int left = 19; left >= 0; --left) {
        user.clickDelete(left / 2);
        QCOMPARE(user.list()->count(), left);
        QCOMPARE(user.dialog.entries().size(), left);
        if (left > 0) {
            QVERIFY(user.row(left - 1).startsWith(gatewayRowNumber(left)));
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void tst_GUI_CanGateWay::deletingKeepsWhatIsInView()
{
    DialogUnderTest user(standardWords(64));
    user.list()->setCurrentRow(30);
    user.list()->scrollToItem(user.list()->item(30), QAbstractItemView::PositionAtTop);
    const int scrolled = user.list()->verticalScrollBar()->value();
    QVERIFY(scrolled > 0);
    user.clickDelete(31);
    QCOMPARE(user.list()->verticalScrollBar()->value(), scrolled);
    QCOMPARE(user.list()->currentRow(), 30);
    user.list()->setCurrentRow(32);
    user.clickDelete(31);
    QCOMPARE(user.list()->verticalScrollBar()->value(), scrolled);
    QCOMPARE(user.list()->currentRow(), 31);
    QCOMPARE(user.row(31), QStringLiteral("32 0x00000021 Standard")); // the same as before, one row higher
}

void tst_GUI_CanGateWay::deletesWithTheKeyboard()
{
    DialogUnderTest user(standardWords(4));
    QVERIFY(QTest::qWaitForWindowActive(&user.dialog));
    user.list()->setFocus();
    QTest::keyClick(user.list(), Qt::Key_End);
    QTest::keyClick(user.list(), Qt::Key_Up);
    QTest::keyClick(user.list(), Qt::Key_Delete);
    QCOMPARE(user.dialog.entries(), Words({0x01, 0x09, 0x19}));
    QTest::keyClick(user.list(), Qt::Key_Delete); // the row that moved up
    QCOMPARE(user.dialog.entries(), Words({0x01, 0x09}));
    QTest::keyClick(user.list(), Qt::Key_Delete); // the last row is selected when the selected one was the last
    QTest::keyClick(user.list(), Qt::Key_Delete);
    QTest::keyClick(user.list(), Qt::Key_Delete);
    QCOMPARE(user.dialog.entries(), Words());
    QCOMPARE(user.list()->count(), 0);
}

void tst_GUI_CanGateWay::delElsewhereDeletesNoRow()
{
    DialogUnderTest user(standardWords(2));
    QVERIFY(QTest::qWaitForWindowActive(&user.dialog));
    user.list()->setCurrentRow(0);
    user.entry()->setFocus();
    user.entry()->setText(QStringLiteral("12"));
    user.entry()->setCursorPosition(0);
    QTest::keyClick(user.entry(), Qt::Key_Delete);
    QCOMPARE(user.entry()->text(), QStringLiteral("2"));
    for (const char *name : {"cbx_type", "btn_apply", "btn_clear", "btn_ok"}) {
        auto *widget = user.find<QWidget>(name);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Delete);
    }
    QCOMPARE(user.list()->count(), 2);
}

void tst_GUI_CanGateWay::delNeedsASelectedRow()
{
    DialogUnderTest user(standardWords(2));
    QVERIFY(QTest::qWaitForWindowActive(&user.dialog));
    user.list()->setFocus();
    QTest::keyClick(user.list(), Qt::Key_Delete);
    QCOMPARE(user.list()->count(), 2);
}

void tst_GUI_CanGateWay::clears()
{
    DialogUnderTest user(standardWords(64));
    user.click("btn_clear");
    QCOMPARE(user.list()->count(), 0);
    QCOMPARE(user.dialog.entries(), Words());
    user.apply(QStringLiteral("1"), GatewayStandard);
    QVERIFY(user.takeMessages().isEmpty());
    QCOMPARE(user.rows(), QStringList(QStringLiteral("01 0x00000001 Standard")));
}

void tst_GUI_CanGateWay::oddWordsStay()
{
    const Words odd = {0x0, 0x4, 0x918, 0x91D, 0x91F, 0xFFFFFFF9, 0xFFFFFFFF};
    DialogUnderTest user(odd);
    QCOMPARE(user.rows(),
             QStringList({QStringLiteral("01 0x00000000 Standard"), QStringLiteral("02 0x00000000 Standard"),
                          QStringLiteral("03 0x00000123 Standard"), QStringLiteral("04 0x00000123 Standard"),
                          QStringLiteral("05 0x00000123 Extend"), QStringLiteral("06 0x1FFFFFFF Standard"),
                          QStringLiteral("07 0x1FFFFFFF Extend")}));
    QCOMPARE(user.dialog.entries(), odd);
    user.apply(QStringLiteral("123"), GatewayStandard);
    user.clickDelete(7);
    QCOMPARE(user.dialog.entries(), odd);
    user.clickDelete(2);
    QCOMPARE(user.dialog.entries(), odd - Words({0x918}));
    user.click("btn_ok");
    QCOMPARE(user.dialog.entries(), odd - Words({0x918}));
}

void tst_GUI_CanGateWay::moreThanItTakes()
{
    DialogUnderTest user(standardWords(120));
    QCOMPARE(user.list()->count(), 120);
    QCOMPARE(user.row(119), QStringLiteral("120 0x00000077 Standard"));
    user.apply(QStringLiteral("7FF"), GatewayStandard);
    QCOMPARE(user.takeMessages(), QStringList(Full));
    QCOMPARE(user.dialog.entries(), standardWords(120));
    user.clickDelete(119);
    QCOMPARE(user.dialog.entries(), standardWords(119));
}

void tst_GUI_CanGateWay::okAccepts()
{
    DialogUnderTest user(standardWords(1));
    QSignalSpy finished(&user.dialog, &QDialog::finished);
    user.apply(QStringLiteral("1"), GatewayStandard);
    user.click("btn_ok");
    QCOMPARE(finished.count(), 1);
    QCOMPARE(user.dialog.result(), int{QDialog::Accepted});
    QVERIFY(!user.dialog.isVisible());
    QCOMPARE(user.dialog.entries(), standardWords(2));
}

void tst_GUI_CanGateWay::leavingDiscards_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("Cancle") << "cancel";
    QTest::newRow("Esc") << "escape";
    QTest::newRow("title bar") << "close";
}

void tst_GUI_CanGateWay::leavingDiscards()
{
    QFETCH(QString, way);
    const Words callers = standardWords(3);
    Words words = callers; // NOLINT(performance-unnecessary-copy-initialization): it could be changed, and must not be
    DialogUnderTest user(words);
    QSignalSpy accepted(&user.dialog, &QDialog::accepted);
    QSignalSpy rejected(&user.dialog, &QDialog::rejected);
    user.click("btn_clear");
    user.apply(QStringLiteral("77"), GatewayExtend);
    if (way == QLatin1String("cancel")) {
        user.click("btn_cancel");
    } else if (way == QLatin1String("escape")) {
        QTest::keyClick(user.entry(), Qt::Key_Escape);
    } else {
        QVERIFY(user.find<QWidget>("lbx_id")->window()->close());
    }
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(accepted.count(), 0);
    QVERIFY(!user.dialog.isVisible());
    QCOMPARE(words, callers);
}

void tst_GUI_CanGateWay::enterApplies()
{
    DialogUnderTest user({});
    QVERIFY(QTest::qWaitForWindowActive(&user.dialog));
    user.type(QStringLiteral("1A"));
    QTest::keyClick(user.entry(), Qt::Key_Return);
    QTest::keyClicks(user.entry(), QStringLiteral("1B")); // over the selected text
    QTest::keyClick(user.entry(), Qt::Key_Enter, Qt::KeypadModifier);
    QVERIFY(user.dialog.isVisible());
    QCOMPARE(user.rows(),
             QStringList({QStringLiteral("01 0x0000001A Standard"), QStringLiteral("02 0x0000001B Standard")}));
}

void tst_GUI_CanGateWay::enterOnAButtonPressesIt()
{
    DialogUnderTest user({});
    QVERIFY(QTest::qWaitForWindowActive(&user.dialog));
    auto *ok = user.find<QPushButton>("btn_ok");
    ok->setFocus();
    QTest::keyClick(ok, Qt::Key_Return);
    QCOMPARE(user.dialog.result(), int{QDialog::Accepted});
    QVERIFY(!user.dialog.isVisible());
    QCOMPARE(user.list()->count(), 0);
}

void tst_GUI_CanGateWay::entryIsReadyForTheNextOne()
{
    DialogUnderTest user({});
    QVERIFY(QTest::qWaitForWindowActive(&user.dialog));
    QVERIFY(user.entry()->hasFocus());
    QCOMPARE(user.entry()->selectedText(), QStringLiteral("1"));
    for (const QString &text : {QStringLiteral("12"), QStringLiteral("12"), QStringLiteral("2000")}) {
        user.type(text); // added, refused as a duplicate, refused as no identifier
        user.find<QPushButton>("btn_apply")->setFocus();
        user.click("btn_apply");
        QVERIFY(user.entry()->hasFocus());
        QCOMPARE(user.entry()->selectedText(), text);
    }
}

void tst_GUI_CanGateWay::tabOrder()
{
    DialogUnderTest user(standardWords(3));
    QVERIFY(QTest::qWaitForWindowActive(&user.dialog));
    QStringList names;
    for (int i = 0; i < 8; ++i) {
        QWidget *focus = user.dialog.focusWidget();
        names.append(focus->objectName());
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("lbx_id cbx_type btn_apply listWidget btn_clear btn_ok btn_cancel lbx_id"));
}

void tst_GUI_CanGateWay::rowsFit()
{
    DialogUnderTest user(standardWords(64));
    QVERIFY(QTest::qWaitForWindowExposed(&user.dialog));
    QTRY_VERIFY(user.list()->verticalScrollBar()->isVisible());
    const QWidget *row = user.list()->itemWidget(user.list()->item(0));
    const QSize viewport = user.list()->viewport()->size();
    QTRY_COMPARE(row->width(), viewport.width()); // not under the scroll bar
    for (const QWidget *part : row->findChildren<QWidget *>()) {
        QVERIFY2(row->rect().contains(part->geometry()), qPrintable(part->objectName()));
        QVERIFY2(part->height() >= part->sizeHint().height(), qPrintable(part->objectName()));
        QVERIFY2(part->width() >= part->sizeHint().width(), qPrintable(part->objectName()));
    }
}

X9_GUI_TEST(tst_GUI_CanGateWay)
#include "tst_GUI_CanGateWay.moc"
