#include "capture/WidgetDelegateCAN.h"
#include "tests/support/TestProgram.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>
#include <QtTest>

#include <memory>

namespace {
using Column = WidgetDelegateCAN::Column;

/// One row of the list without its table, and the editors of its cells.
class Row
{
public:
    Row()
        : m_model(1, WidgetDelegateCAN::ColumnCount)
    {
    }

    void set(Column column, const QString &text, const QVariant &value)
    {
        m_model.setItemData(cell(column), {{Qt::DisplayRole, text}, {Qt::UserRole, value}});
    }
    QModelIndex cell(Column column) { return m_model.index(0, column); }
    QString text(Column column) { return cell(column).data().toString(); }
    QVariant value(Column column) { return cell(column).data(Qt::UserRole); }

    /// Null when the cell cannot be edited.
    template<typename Editor>
    std::unique_ptr<Editor> edit(Column column)
    {
        QWidget *widget = m_delegate.createEditor(nullptr, {}, cell(column));
        auto *editor = qobject_cast<Editor *>(widget);
        if (editor == nullptr) {
            delete widget;
            return nullptr;
        }
        m_delegate.setEditorData(editor, cell(column));
        return std::unique_ptr<Editor>(editor);
    }
    void accept(QWidget *editor, Column column) { m_delegate.setModelData(editor, &m_model, cell(column)); }
    /// What the line edit of the data leaves behind after typing.
    void type(const QString &data)
    {
        const auto editor = edit<QLineEdit>(Column::Data);
        editor->clear();
        QTest::keyClicks(editor.get(), data);
        accept(editor.get(), Column::Data);
    }
    QRect place(QWidget *editor, Column column, const QRect &cellRect)
    {
        QStyleOptionViewItem option;
        option.rect = cellRect;
        m_delegate.updateEditorGeometry(editor, option, cell(column));
        return editor->geometry();
    }
    QStandardItemModel &model() { return m_model; }

private:
    QStandardItemModel m_model;
    WidgetDelegateCAN m_delegate;
};
} // namespace

Q_DECLARE_METATYPE(WidgetDelegateCAN::Column)

class tst_WidgetDelegateCAN : public QObject
{
    Q_OBJECT

private slots:
    static void notEditable();
    static void identifier_data();
    static void identifier();
    static void typedIdentifier_data();
    static void typedIdentifier();
    static void type();
    static void numbers_data();
    static void numbers();
    static void data_data();
    static void data();
    static void dataTakesHexadecimalOnly();
    static void takesPastedNumbers_data();
    static void takesPastedNumbers();
    static void oneChangeIsToldOnce();
    static void editorsAreNotCutOff();
};

void tst_WidgetDelegateCAN::notEditable()
{
    Row row;
    QVERIFY(!row.edit<QWidget>(Column::Tick));
    QVERIFY(!row.edit<QWidget>(Column::Number));
}

void tst_WidgetDelegateCAN::identifier_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("maximum");
    QTest::newRow("standard") << int(WidgetDelegateCAN::Standard) << 0x7FF;
    QTest::newRow("extended") << int(WidgetDelegateCAN::Extended) << 0x1FFFFFFF;
}

void tst_WidgetDelegateCAN::identifier()
{
    QFETCH(int, type);
    QFETCH(int, maximum);
    Row row;
    row.set(Column::Type, {}, type);
    row.set(Column::Id, QStringLiteral("1ab"), 0x1AB);
    const auto editor = row.edit<QSpinBox>(Column::Id);
    QVERIFY(editor);
    QCOMPARE(editor->displayIntegerBase(), 16);
    QCOMPARE(editor->minimum(), 0);
    QCOMPARE(editor->maximum(), maximum);
    QCOMPARE(editor->text(), QStringLiteral("1ab"));
    editor->setValue(maximum);
    row.accept(editor.get(), Column::Id);
    QCOMPARE(row.value(Column::Id).toInt(), maximum);
    QCOMPARE(row.text(Column::Id), QString::number(maximum, 16)); // lower-case
}

void tst_WidgetDelegateCAN::typedIdentifier_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("value");
    QTest::newRow("lower-case") << QStringLiteral("1abcdef") << 0x1ABCDEF;
    QTest::newRow("upper-case") << QStringLiteral("1ABCDEF") << 0x1ABCDEF;
    QTest::newRow("highest") << QStringLiteral("1FfFfFfF") << 0x1FFFFFFF;
    QTest::newRow("what is too high is not taken") << QStringLiteral("20000000") << 0x2000000;
    QTest::newRow("no hexadecimal digits") << QStringLiteral("1g2z") << 0x12;
}

void tst_WidgetDelegateCAN::typedIdentifier()
{
    QFETCH(QString, keys);
    QFETCH(int, value);
    Row row;
    row.set(Column::Type, {}, WidgetDelegateCAN::Extended);
    const auto editor = row.edit<QSpinBox>(Column::Id);
    editor->selectAll();
    QTest::keyClicks(editor.get(), keys);
    row.accept(editor.get(), Column::Id);
    QCOMPARE(row.value(Column::Id).toInt(), value);
    QCOMPARE(row.text(Column::Id), QString::number(value, 16));
}

void tst_WidgetDelegateCAN::type()
{
    Row row;
    row.set(Column::Type, QStringLiteral("Extend"), WidgetDelegateCAN::Extended);
    const auto editor = row.edit<QComboBox>(Column::Type);
    QVERIFY(editor);
    QCOMPARE(editor->count(), 2);
    QCOMPARE(editor->itemText(0), QStringLiteral("Standard"));
    QCOMPARE(editor->itemData(0).toInt(), 0);
    QCOMPARE(editor->itemText(1), QStringLiteral("Extend"));
    QCOMPARE(editor->itemData(1).toInt(), 1);
    QCOMPARE(editor->currentIndex(), 1);
    QTest::keyClick(editor.get(), Qt::Key_Up);
    row.accept(editor.get(), Column::Type);
    QCOMPARE(row.text(Column::Type), QStringLiteral("Standard"));
    QCOMPARE(row.value(Column::Type).toInt(), 0);
}

void tst_WidgetDelegateCAN::numbers_data()
{
    QTest::addColumn<Column>("column");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::newRow("length") << Column::Length << 0 << 8;
    QTest::newRow("frame count") << Column::FrameCount << 1 << 65535;
    QTest::newRow("send count") << Column::SendCount << 1 << 65535;
    QTest::newRow("interval") << Column::Interval << 1 << 65535;
}

void tst_WidgetDelegateCAN::numbers()
{
    QFETCH(Column, column);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    Row row;
    row.set(column, QStringLiteral("3"), 3);
    const auto editor = row.edit<QSpinBox>(column);
    QVERIFY(editor);
    QCOMPARE(editor->displayIntegerBase(), 10);
    QCOMPARE(editor->minimum(), minimum);
    QCOMPARE(editor->maximum(), maximum);
    QCOMPARE(editor->value(), 3);
    editor->selectAll();
    QTest::keyClicks(editor.get(), QString::number(maximum));
    row.accept(editor.get(), column);
    QCOMPARE(row.text(column), QString::number(maximum));
    QCOMPARE(row.value(column).toInt(), maximum);

    editor->clear(); // no number at all: the one before stays
    row.accept(editor.get(), column);
    QCOMPARE(row.value(column).toInt(), maximum);
}

void tst_WidgetDelegateCAN::data_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    const auto add = [](const char *name, const char *typed, const char *text, const char *value) {
        QTest::newRow(name) << QString::fromLatin1(typed) << QString::fromLatin1(text) << QString::fromLatin1(value);
    };
    add("none", "", "", "");
    add("bytes", "01 A2 FF", "01 A2 FF", "01A2FF");
    add("digits", "01a2ff", "01 A2 FF", "01A2FF");
    add("any white space", " 0 1a2  ff ", "01 A2 FF", "01A2FF");
    add("an odd number of digits", "ABC", "AB 0C", "AB0C");
    add("nine bytes", "112233445566778899", "11 22 33 44 55 66 77 88", "1122334455667788");
}

void tst_WidgetDelegateCAN::data()
{
    QFETCH(QString, typed);
    QFETCH(QString, text);
    QFETCH(QString, value);
    Row row;
    row.set(Column::Data, QStringLiteral("EE"), QStringLiteral("EE"));
    row.type(typed);
    QCOMPARE(row.text(Column::Data), text);
    QCOMPARE(row.value(Column::Data).toString(), value);
    QCOMPARE(row.edit<QLineEdit>(Column::Data)->text(), text);
}

void tst_WidgetDelegateCAN::dataTakesHexadecimalOnly()
{
    Row row;
    const auto editor = row.edit<QLineEdit>(Column::Data);
    QTest::keyClicks(editor.get(), QStringLiteral("0x1g-2,A"));
    QCOMPARE(editor->text(), QStringLiteral("12A"));
}

void tst_WidgetDelegateCAN::takesPastedNumbers_data()
{
    QTest::addColumn<WidgetDelegateCAN::Column>("column");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cell");
    QTest::newRow("id") << Column::Id << " 0x7 1\n"
                        << "71";
    QTest::newRow("length") << Column::Length << "0 5 \n"
                            << "5";
    QTest::newRow("data") << Column::Data << "0x11 0x2 0xAB\n"
                          << "11 02 AB";
    QTest::newRow("interval") << Column::Interval << "1 000\r\n"
                              << "1000";
}

void tst_WidgetDelegateCAN::takesPastedNumbers()
{
    QFETCH(WidgetDelegateCAN::Column, column);
    QFETCH(QString, text);
    Row row;
    row.set(column, {}, 0);
    const auto editor = row.edit<QWidget>(column);
    QVERIFY(editor);
    auto *field = qobject_cast<QLineEdit *>(editor.get());
    if (field == nullptr) {
        field = editor->findChild<QLineEdit *>();
    }
    field->selectAll();
    field->insert(text); // as from the clipboard
    row.accept(editor.get(), column);
    QTEST(row.text(column), "cell");
}

void tst_WidgetDelegateCAN::oneChangeIsToldOnce()
{
    Row row;
    row.set(Column::Length, QStringLiteral("3"), 3);
    const QSignalSpy changes(&row.model(), &QStandardItemModel::dataChanged);
    const auto editor = row.edit<QSpinBox>(Column::Length);
    editor->setValue(4);
    row.accept(editor.get(), Column::Length);
    QCOMPARE(changes.count(), 1);
}

void tst_WidgetDelegateCAN::editorsAreNotCutOff()
{
    Row row;
    row.set(Column::Type, {}, WidgetDelegateCAN::Extended);
    const QRect narrow(10, 20, 30, 25);
    const QRect wide(10, 20, 500, 25);
    for (const Column column : {Column::Id, Column::Type, Column::Interval}) {
        const auto editor = row.edit<QWidget>(column);
        const QRect place = row.place(editor.get(), column, narrow);
        QCOMPARE(place.topLeft(), narrow.topLeft());
        QCOMPARE(place.height(), narrow.height());
        QCOMPARE(place.width(), editor->sizeHint().width());
        QCOMPARE(row.place(editor.get(), column, wide), wide);
    }
    const auto data = row.edit<QLineEdit>(Column::Data);
    QCOMPARE(row.place(data.get(), Column::Data, narrow), narrow); // scrolls by itself
}

X9_GUI_TEST(tst_WidgetDelegateCAN)
#include "tst_WidgetDelegateCAN.moc"
