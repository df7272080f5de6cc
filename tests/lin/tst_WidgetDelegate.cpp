#include "lin/WidgetDelegate.h"
#include "tests/support/TestProgram.h"

#include <QComboBox>
#include <QMetaType>
#include <QStandardItemModel>
#include <QTableView>
#include <QtTest>

namespace {
const QVector<QString> Choices{QStringLiteral("Send"), QStringLiteral("Revice")};

/// One cell with choices, one without.
class Table
{
public:
    Table()
        : model(1, 2)
    {
        model.setData(choice(), QVariant::fromValue(Choices), WidgetDelegate::ChoicesRole);
        model.setData(choice(), 1, WidgetDelegate::ChosenRole);
        model.setData(choice(), Choices.at(1));
        view.setModel(&model);
        view.setItemDelegate(&delegate);
        view.show();
    }

    QModelIndex choice() const { return model.index(0, 0); }

    QStandardItemModel model;
    WidgetDelegate delegate;
    QTableView view;
};
} // namespace

class tst_WidgetDelegate : public QObject
{
    Q_OBJECT

private slots:
    static void roles();
    static void makesAnEditorForChoices();
    static void makesNoneWithoutChoices();
    static void writesTheChoice();
    static void writesNothingWithoutAChoice();
};

void tst_WidgetDelegate::roles()
{
    const WidgetDelegate delegate;
    QCOMPARE(WidgetDelegate::ChosenRole, int(Qt::UserRole));
    QCOMPARE(WidgetDelegate::ChoicesRole, Qt::UserRole + 1);
    QVERIFY(QMetaType::type("QVector<QString>") != QMetaType::UnknownType);
}

void tst_WidgetDelegate::makesAnEditorForChoices()
{
    Table table;
    table.view.edit(table.choice());
    const auto *combo = table.view.findChild<QComboBox *>();
    QVERIFY(combo != nullptr);
    QVERIFY(!combo->hasFrame());
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->itemText(0), Choices.at(0));
    QCOMPARE(combo->itemData(0).toInt(), 0);
    QCOMPARE(combo->itemText(1), Choices.at(1));
    QCOMPARE(combo->itemData(1).toInt(), 1);
    QCOMPARE(combo->currentIndex(), 1);
}

void tst_WidgetDelegate::makesNoneWithoutChoices()
{
    Table table;
    table.view.setCurrentIndex(table.model.index(0, 1));
    QTest::keyClick(&table.view, Qt::Key_F2);
    QVERIFY(table.view.findChild<QComboBox *>() == nullptr);
    QVERIFY(table.delegate.createEditor(&table.view, QStyleOptionViewItem(), table.model.index(0, 1)) == nullptr);
}

void tst_WidgetDelegate::writesTheChoice()
{
    Table table;
    table.view.edit(table.choice());
    auto *combo = table.view.findChild<QComboBox *>();
    QVERIFY(combo != nullptr);
    QTest::keyClick(combo, Qt::Key_Up);
    QTest::keyClick(combo, Qt::Key_Tab); // leaves the cell, which takes the choice over
    QCOMPARE(table.choice().data(Qt::UserRole).toInt(), 0);
    QCOMPARE(table.choice().data().toString(), Choices.at(0));
    QCOMPARE(table.choice().data(Qt::UserRole + 1).value<QVector<QString>>(), Choices);
}

/// The stored position may lie beyond the choices.
void tst_WidgetDelegate::writesNothingWithoutAChoice()
{
    Table table;
    table.model.setData(table.choice(), -1, WidgetDelegate::ChosenRole);
    const std::unique_ptr<QWidget> editor(
        table.delegate.createEditor(&table.view, QStyleOptionViewItem(), table.choice()));
    table.delegate.setEditorData(editor.get(), table.choice());
    table.delegate.setModelData(editor.get(), &table.model, table.choice());
    QCOMPARE(table.choice().data(Qt::UserRole).toInt(), -1);
    QCOMPARE(table.choice().data().toString(), Choices.at(1));
}

X9_GUI_TEST(tst_WidgetDelegate)
#include "tst_WidgetDelegate.moc"
