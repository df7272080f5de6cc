#include "can/CanIdEntry.h"
#include "can/GUI_CanFilterTool.h"
#include "tests/support/TestProgram.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {
using Ranges = QVector<CanIdRange>;

/// A tool on screen, its widgets by name.
class ToolUnderTest
{
public:
    explicit ToolUnderTest(const Ranges &ids = {})
        : tool(ids)
    {
        tool.show();
        tool.activateWindow();
        m_isActive = QTest::qWaitForWindowActive(&tool);
    }

    bool isActive() const { return m_isActive; }
    template<typename Widget>
    Widget *find(const char *name) const
    {
        return tool.findChild<Widget *>(QLatin1String(name));
    }
    QString text(const char *name) const { return find<QLabel>(name)->text(); }
    QString field(const char *name) const { return find<QLineEdit>(name)->text(); }
    QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    void click(const char *name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void type(const char *name, const char *text) const
    {
        auto *line = find<QLineEdit>(name);
        line->setFocus();
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        QTest::keyClicks(line, QLatin1String(text));
    }
    void choose(const char *name, int data) const
    {
        auto *combo = find<QComboBox>(name);
        combo->setCurrentIndex(combo->findData(data));
    }
    void typeRange(const char *first, const char *last, bool extended = false) const
    {
        choose("cbx_idType", extended ? 1 : 0);
        type("lbx_idFrom", first);
        type("lbx_idTo", last);
    }
    void add(const char *first, const char *last = "", bool extended = false) const
    {
        typeRange(first, last, extended);
        click("btn_add");
    }
    QTableWidget *table() const { return find<QTableWidget>("table_ids"); }
    QString row(int index) const
    {
        QStringList cells;
        for (int column = 0; column < table()->columnCount(); ++column) {
            cells.append(table()->item(index, column)->text());
        }
        return cells.join(QLatin1Char(' '));
    }
    QString filterText() const { return field("lbx_accCode") + QLatin1Char(' ') + field("lbx_accMask"); }
    QString verdict(const char *id, bool extended) const
    {
        choose("cbx_testType", extended ? 1 : 0);
        type("lbx_testID", id);
        return text("lbl_testResult");
    }

    GUI_CanFilterTool tool;

private:
    bool m_isActive = false;
};
} // namespace

class tst_GUI_CanFilterTool : public QObject
{
    Q_OBJECT

private slots:
    static void startsEmpty();
    static void listsIdentifiersAndRanges();
    static void showsTheFilter();
    static void countsTheOthers();
    static void removesTheSelectedRows();
    static void deleteKeyRemoves();
    static void clears();
    static void saysWhatIsWrong_data();
    static void saysWhatIsWrong();
    static void saysWhenTheListIsFull();
    static void theProblemGoesAway();
    static void typesHexadecimalOnly();
    static void testsAnIdentifier();
    static void theVerdictFollowsTheList();
    static void enterAdds();
    static void enterInEmptyFieldsAccepts();
    static void okAddsWhatIsTyped();
    static void okStaysWhenWhatIsTypedIsWrong();
    static void escCancels();
    static void startsWithAnEarlierList();
    static void looks();
};

void tst_GUI_CanFilterTool::startsEmpty()
{
    const ToolUnderTest test;
    QCOMPARE(test.table()->rowCount(), 0);
    QCOMPARE(test.filterText(), QStringLiteral("0x00000000 0xFFFFFFFF"));
    QCOMPARE(test.text("lbl_otherIds"), QStringLiteral("Standard: 2,048, extended: 536,870,912"));
    QCOMPARE(test.text("lbl_note"), QStringLiteral("An empty list lets everything pass."));
    QVERIFY(!test.button("btn_remove")->isEnabled());
    QVERIFY(!test.button("btn_clear")->isEnabled());
    QVERIFY(test.button("btn_ok")->isEnabled());
    QVERIFY(test.text("lbl_problem").isEmpty());
    QVERIFY(test.text("lbl_testResult").isEmpty());
    QCOMPARE(test.tool.filter().mask, 0xFFFFFFFFU);
}

void tst_GUI_CanFilterTool::listsIdentifiersAndRanges()
{
    const ToolUnderTest test;
    test.add("12");
    test.add("100", "1FF");
    test.add("0x12", "", true);
    test.add("18ff0000", "18FF00FF", true);
    QCOMPARE(test.table()->rowCount(), 4);
    QCOMPARE(test.row(0), QStringLiteral("Standard 012 012"));
    QCOMPARE(test.row(1), QStringLiteral("Standard 100 1FF"));
    QCOMPARE(test.row(2), QStringLiteral("Extend 00000012 00000012"));
    QCOMPARE(test.row(3), QStringLiteral("Extend 18FF0000 18FF00FF"));
    const Ranges expected{
        {0x12, 0x12, false}, {0x100, 0x1FF, false}, {0x12, 0x12, true}, {0x18FF0000, 0x18FF00FF, true}};
    QVERIFY(test.tool.ids() == expected);
    QVERIFY(test.field("lbx_idFrom").isEmpty());
    QVERIFY(test.field("lbx_idTo").isEmpty());
    QVERIFY(test.find<QLineEdit>("lbx_idFrom")->hasFocus());
}

void tst_GUI_CanFilterTool::showsTheFilter()
{
    const ToolUnderTest test;
    test.add("123");
    QCOMPARE(test.filterText(), QStringLiteral("0x24600000 0x001FFFFF"));
    QCOMPARE(test.tool.filter().code, 0x24600000U);
    QCOMPARE(test.tool.filter().mask, 0x001FFFFFU);
    test.add("122");
    QCOMPARE(test.filterText(), QStringLiteral("0x24400000 0x003FFFFF"));
}

void tst_GUI_CanFilterTool::countsTheOthers()
{
    const ToolUnderTest test;
    test.add("100");
    QCOMPARE(test.text("lbl_otherIds"), QStringLiteral("Standard: 0, extended: 262,144"));
    test.add("103");
    QCOMPARE(test.text("lbl_otherIds"), QStringLiteral("Standard: 2, extended: 1,048,576"));
    test.add("100", "102"); // overlaps
    QCOMPARE(test.text("lbl_otherIds"), QStringLiteral("Standard: 0, extended: 1,048,576"));
    QVERIFY(test.text("lbl_note").isEmpty());
    test.click("btn_clear");
    test.add("18FF0000", "18FF00FF", true);
    QCOMPARE(test.text("lbl_otherIds"), QStringLiteral("Standard: 1, extended: 0"));
    QVERIFY(!test.text("lbl_note").isEmpty());
    test.add("0", "7FF");
    test.add("0", "1FFFFFFF", true);
    QCOMPARE(test.text("lbl_otherIds"), QStringLiteral("Standard: 0, extended: 0"));
}

void tst_GUI_CanFilterTool::removesTheSelectedRows()
{
    const ToolUnderTest test;
    for (const char *id : {"10", "11", "12", "13"}) {
        test.add(id);
    }
    const QTableWidget *table = test.table();
    const auto click = [table](int row, Qt::KeyboardModifiers modifiers) {
        const QRect cell = table->visualItemRect(table->item(row, 1));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, cell.center());
    };
    QVERIFY(!test.button("btn_remove")->isEnabled());
    click(0, Qt::NoModifier);
    click(2, Qt::ControlModifier);
    QVERIFY(test.button("btn_remove")->isEnabled());
    test.click("btn_remove");
    QCOMPARE(table->rowCount(), 2);
    QCOMPARE(test.row(0), QStringLiteral("Standard 011 011"));
    QCOMPARE(test.row(1), QStringLiteral("Standard 013 013"));
    QVERIFY(test.tool.ids() == Ranges({{0x11, 0x11, false}, {0x13, 0x13, false}}));
    QCOMPARE(test.filterText(), QStringLiteral("0x02200000 0x005FFFFF"));
}

void tst_GUI_CanFilterTool::deleteKeyRemoves()
{
    const ToolUnderTest test;
    QVERIFY(test.isActive());
    test.add("10");
    test.add("11");
    test.table()->setFocus();
    test.table()->selectRow(1);
    QTest::keyClick(test.table(), Qt::Key_Delete);
    QCOMPARE(test.table()->rowCount(), 1);
    QVERIFY(test.tool.ids() == Ranges({{0x10, 0x10, false}}));
}

void tst_GUI_CanFilterTool::clears()
{
    const ToolUnderTest test;
    test.add("10");
    test.add("11", "1F", true);
    test.click("btn_clear");
    QCOMPARE(test.table()->rowCount(), 0);
    QVERIFY(test.tool.ids().isEmpty());
    QCOMPARE(test.filterText(), QStringLiteral("0x00000000 0xFFFFFFFF"));
    QVERIFY(!test.button("btn_clear")->isEnabled());
}

void tst_GUI_CanFilterTool::saysWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("last");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QByteArray>("focus");
    const QString standard = QStringLiteral("Standard identifiers: 0 to 7FF, hexadecimal");
    const QString extended = QStringLiteral("Extended identifiers: 0 to 1FFFFFFF, hexadecimal");
    const QByteArray from("lbx_idFrom");
    const QByteArray to("lbx_idTo");
    QTest::newRow("nothing") << QByteArray() << QByteArray() << false << standard << from;
    QTest::newRow("no beginning") << QByteArray() << QByteArray("5") << false << standard << from;
    QTest::newRow("above standard") << QByteArray("800") << QByteArray() << false << standard << from;
    QTest::newRow("end above standard") << QByteArray("0") << QByteArray("800") << false << standard << to;
    QTest::newRow("above extended") << QByteArray("20000000") << QByteArray() << true << extended << from;
    QTest::newRow("end above extended") << QByteArray("0") << QByteArray("20000000") << true << extended << to;
    QTest::newRow("order") << QByteArray("2") << QByteArray("1") << true
                           << QStringLiteral("The first identifier of the range is above the last one") << from;
    QTest::newRow("twice") << QByteArray("321") << QByteArray() << false << QStringLiteral("Already in the list")
                           << from;
}

void tst_GUI_CanFilterTool::saysWhatIsWrong()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, last);
    QFETCH(bool, extended);
    QFETCH(QByteArray, focus);
    const ToolUnderTest test(Ranges{{0x321, 0x321, false}});
    QVERIFY(test.isActive());
    test.add(first.constData(), last.constData(), extended);
    QTEST(test.text("lbl_problem"), "problem");
    QVERIFY(test.find<QLabel>("lbl_problem")->isVisible());
    QCOMPARE(test.table()->rowCount(), 1);
    QCOMPARE(test.field("lbx_idFrom"), QString::fromLatin1(first));
    QCOMPARE(test.field("lbx_idTo"), QString::fromLatin1(last));
    QVERIFY(test.find<QLineEdit>(focus.constData())->hasFocus());
}

void tst_GUI_CanFilterTool::saysWhenTheListIsFull()
{
    Ranges many;
    for (quint32 id = 0; id < CanIdEntriesMax; ++id) {
        many.append({id, id, true});
    }
    const ToolUnderTest test(many);
    QCOMPARE(test.table()->rowCount(), CanIdEntriesMax);
    test.add("7FF");
    QCOMPARE(test.text("lbl_problem"), QStringLiteral("The list is full: 1000 entries"));
    QCOMPARE(test.table()->rowCount(), CanIdEntriesMax);
}

void tst_GUI_CanFilterTool::theProblemGoesAway()
{
    const ToolUnderTest test;
    test.add("800");
    QVERIFY(!test.text("lbl_problem").isEmpty());
    test.add("7FF");
    QVERIFY(test.text("lbl_problem").isEmpty());
    test.add("800");
    test.click("btn_clear");
    QVERIFY(test.text("lbl_problem").isEmpty());
}

void tst_GUI_CanFilterTool::typesHexadecimalOnly()
{
    const ToolUnderTest test;
    for (const char *name : {"lbx_idFrom", "lbx_idTo", "lbx_testID"}) {
        test.type(name, "-g0x12 z.3");
        QCOMPARE(test.field(name), QStringLiteral("0x123"));
        test.type(name, "123456789012345678901234567890123456789000");
        QCOMPARE(test.field(name), QStringLiteral("12345678"));
    }
}

void tst_GUI_CanFilterTool::testsAnIdentifier()
{
    const ToolUnderTest test;
    test.add("100");
    test.add("103");
    QCOMPARE(test.verdict("100", false), QStringLiteral("Passes"));
    QCOMPARE(test.verdict("101", false), QStringLiteral("Passes"));
    QCOMPARE(test.verdict("104", false), QStringLiteral("Does not pass"));
    QCOMPARE(test.verdict("100", true), QStringLiteral("Does not pass"));
    QCOMPARE(test.verdict("04000000", true), QStringLiteral("Passes"));
    QCOMPARE(test.verdict("800", false), QStringLiteral("Standard identifiers: 0 to 7FF, hexadecimal"));
    QCOMPARE(test.verdict("20000000", true), QStringLiteral("Extended identifiers: 0 to 1FFFFFFF, hexadecimal"));
    QCOMPARE(test.verdict("", true), QString());
}

void tst_GUI_CanFilterTool::theVerdictFollowsTheList()
{
    const ToolUnderTest test;
    QCOMPARE(test.verdict("63F", false), QStringLiteral("Passes"));
    test.add("18FF1234", "", true);
    QCOMPARE(test.text("lbl_testResult"), QStringLiteral("Passes or not, depending on its data"));
    test.add("7FF");
    QCOMPARE(test.text("lbl_testResult"), QStringLiteral("Passes"));
    test.click("btn_clear");
    test.add("18EF1234", "", true);
    QCOMPARE(test.text("lbl_testResult"), QStringLiteral("Does not pass"));
    test.choose("cbx_testType", 1);
    QCOMPARE(test.text("lbl_testResult"), QStringLiteral("Does not pass"));
}

void tst_GUI_CanFilterTool::enterAdds()
{
    const ToolUnderTest test;
    QVERIFY(test.isActive());
    test.type("lbx_idFrom", "10");
    QTest::keyClick(test.find<QLineEdit>("lbx_idFrom"), Qt::Key_Return);
    test.type("lbx_idFrom", "20");
    test.type("lbx_idTo", "2F");
    QTest::keyClick(test.find<QLineEdit>("lbx_idTo"), Qt::Key_Enter);
    QVERIFY(test.tool.isVisible());
    QVERIFY(test.tool.ids() == Ranges({{0x10, 0x10, false}, {0x20, 0x2F, false}}));
}

void tst_GUI_CanFilterTool::enterInEmptyFieldsAccepts()
{
    const ToolUnderTest test;
    QVERIFY(test.isActive());
    test.add("10");
    QTest::keyClick(test.find<QLineEdit>("lbx_idFrom"), Qt::Key_Return);
    QVERIFY(!test.tool.isVisible());
    QCOMPARE(test.tool.result(), int(QDialog::Accepted));
}

void tst_GUI_CanFilterTool::okAddsWhatIsTyped()
{
    const ToolUnderTest test;
    test.typeRange("123", "");
    test.click("btn_ok");
    QVERIFY(!test.tool.isVisible());
    QCOMPARE(test.tool.result(), int(QDialog::Accepted));
    QCOMPARE(test.tool.filter().code, 0x24600000U);
    QVERIFY(test.tool.ids() == Ranges({{0x123, 0x123, false}}));
}

void tst_GUI_CanFilterTool::okStaysWhenWhatIsTypedIsWrong()
{
    const ToolUnderTest test;
    test.typeRange("800", "");
    test.click("btn_ok");
    QVERIFY(test.tool.isVisible());
    QVERIFY(!test.text("lbl_problem").isEmpty());
}

void tst_GUI_CanFilterTool::escCancels()
{
    const ToolUnderTest test;
    test.add("10");
    QTest::keyClick(test.find<QLineEdit>("lbx_idFrom"), Qt::Key_Escape);
    QVERIFY(!test.tool.isVisible());
    QCOMPARE(test.tool.result(), int(QDialog::Rejected));
}

void tst_GUI_CanFilterTool::startsWithAnEarlierList()
{
    const Ranges ids{{0x100, 0x1FF, false}, {0x5, 0x5, true}};
    const ToolUnderTest test(ids);
    QCOMPARE(test.row(0), QStringLiteral("Standard 100 1FF"));
    QCOMPARE(test.row(1), QStringLiteral("Extend 00000005 00000005"));
    QVERIFY(test.tool.ids() == ids);
    QCOMPARE(test.tool.filter().mask, narrowestFilter(ids).mask);
    QVERIFY(test.button("btn_clear")->isEnabled());
}

void tst_GUI_CanFilterTool::looks()
{
    const ToolUnderTest test;
    QCOMPARE(test.tool.windowTitle(), QStringLiteral("Filter configuration tool"));
    QCOMPARE(test.button("btn_ok")->property("nav").toString(), QStringLiteral("tBtnStyle_1"));
    QCOMPARE(test.button("btn_cancel")->property("nav").toString(), QStringLiteral("tBtnStyle_4"));
    QVERIFY(test.find<QLineEdit>("lbx_accCode")->isReadOnly());
    QVERIFY(test.find<QLineEdit>("lbx_accMask")->isReadOnly());
}

X9_GUI_TEST(tst_GUI_CanFilterTool)
#include "tst_GUI_CanFilterTool.moc"
