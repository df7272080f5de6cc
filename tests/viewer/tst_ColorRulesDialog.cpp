#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "tests/viewer/TestSignals.h"
#include "viewer/ColorButton.h"
#include "viewer/ColorRulesDialog.h"
#include "viewer/core/OpenCapture.h"
#include "viewer/FilterEdit.h"
#include "viewer/RowColors.h"

#include <QAction>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QtTest>

namespace {

QPalette darkPalette()
{
    return {QColor(53, 53, 53), QColor(35, 35, 35)};
}

} // namespace

class tst_ColorRulesDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void addsAndEdits();
    void movesAndRemoves();
    void colorsAreChosen();
    void anyColor();
    void wrongRulesAreMarked();
    void aRuleForACell();
    void cancelChangesNothing();
    static void colorsCanBeRead_data();
    static void colorsCanBeRead();
    static void surroundings();

private:
    template<typename Widget>
    Widget &find(const char *name)
    {
        return *m_dialog->findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *button) { QTest::mouseClick(&find<QPushButton>(button), Qt::LeftButton); }
    void open(const QString &filter = {});
    /// Filters from the first rule on, those that are off in brackets.
    QString filters() const;

    std::unique_ptr<OpenCapture> m_capture;
    std::unique_ptr<ColorRulesDialog> m_dialog;
};

void tst_ColorRulesDialog::init()
{
    m_capture = std::make_unique<OpenCapture>(QStringLiteral("made-up"), syntheticCapture(10), false);
    open();
}

void tst_ColorRulesDialog::cleanup()
{
    m_dialog.reset();
    m_capture.reset();
}

void tst_ColorRulesDialog::open(const QString &filter)
{
    m_dialog = std::make_unique<ColorRulesDialog>(ColorRule::standard(), *m_capture, filter);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

QString tst_ColorRulesDialog::filters() const
{
    QStringList list;
    const QVector<ColorRule> rules = m_dialog->rules();
    for (const ColorRule &rule : rules) {
        list.append(rule.isOn ? rule.filter : QStringLiteral("(%1)").arg(rule.filter));
    }
    return list.join(QLatin1Char('|'));
}

void tst_ColorRulesDialog::addsAndEdits()
{
    QCOMPARE(filters(), QStringLiteral("error|refused|tx"));
    auto &list = find<QListWidget>("rules");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Space);
    QCOMPARE(filters(), QStringLiteral("error|(refused)|tx"));
    click("add");
    QCOMPARE(filters(), QStringLiteral("error|(refused)|tx")); // without a filter it is none
    auto &filter = find<FilterEdit>("filter");
    QCOMPARE(m_dialog->focusWidget(), &filter);
    QTest::keyClicks(&filter, QStringLiteral("id == 5"));
    QTest::keyClick(&filter, Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(filters(), QStringLiteral("error|(refused)|id == 5|tx"));
    QVector<ColorRule> taken;
    connect(m_dialog.get(), &ColorRulesDialog::sig_rulesTaken, this,
            [&taken](QVector<ColorRule> rules) { taken.swap(rules); });
    QTest::mouseClick(m_dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(taken.size(), 4);
    QCOMPARE(taken.at(2).filter, QStringLiteral("id == 5"));
    QVERIFY(!m_dialog->isVisible());
}

void tst_ColorRulesDialog::movesAndRemoves()
{
    QVERIFY(!find<QPushButton>("up").isEnabled());
    click("down");
    QCOMPARE(filters(), QStringLiteral("refused|error|tx"));
    click("down");
    QCOMPARE(filters(), QStringLiteral("refused|tx|error"));
    QVERIFY(!find<QPushButton>("down").isEnabled());
    click("up");
    click("remove");
    QCOMPARE(filters(), QStringLiteral("refused|tx"));
    click("remove");
    click("remove");
    QCOMPARE(filters(), QString());
    QVERIFY(!find<QPushButton>("remove").isEnabled());
    QVERIFY(!find<FilterEdit>("filter").isEnabled());
    click("standard");
    QCOMPARE(m_dialog->rules(), ColorRule::standard());
}

void tst_ColorRulesDialog::colorsAreChosen()
{
    const auto choose = [this](const char *button, const char *color) {
        find<ColorButton>(button).menu()->findChild<QAction *>(QLatin1String(color))->trigger();
    };
    choose("text", "Green");
    choose("background", "Violet");
    QCOMPARE(m_dialog->rules().at(0).text.value_or(0), 0x0B5D1EU);
    QCOMPARE(m_dialog->rules().at(0).background.value_or(0), 0xEBDCFBU);
    QCOMPARE(find<QLabel>("sample").palette().color(QPalette::Window), QColor(0xEBDCFB));
    choose("text", "none");
    QVERIFY(!m_dialog->rules().at(0).text);
    QCOMPARE(m_dialog->rules().at(1), ColorRule::standard().at(1));
}

void tst_ColorRulesDialog::anyColor()
{
    auto &button = find<ColorButton>("background");
    button.menu()->actions().last()->trigger();
    auto *dialog = button.findChild<QColorDialog *>();
    QVERIFY(dialog != nullptr);
    dialog->setCurrentColor(QColor(0x123456));
    QTest::mouseClick(dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(m_dialog->rules().at(0).background.value_or(0), 0x123456U);
}

void tst_ColorRulesDialog::wrongRulesAreMarked()
{
    auto &filter = find<FilterEdit>("filter");
    auto &list = find<QListWidget>("rules");
    const auto isMarked = [&list] {
        return !list.item(0)->icon().isNull() && !list.item(0)->toolTip().isEmpty();
    };
    QVERIFY(!isMarked());
    filter.setFocus();
    filter.selectAll();
    QTest::keyClicks(&filter, QStringLiteral("Speed > 1"));
    QVERIFY(isMarked());
    QVERIFY(find<QLabel>("ruleProblem").text().contains(QLatin1String("Speed")));
    QVERIFY(filters().startsWith(QLatin1String("Speed > 1|"))); // kept for captures that have it
    m_capture->setSignalSource(std::make_shared<TestSignals>());
    QVERIFY(!isMarked());
    QVERIFY(find<QLabel>("ruleProblem").text().isEmpty());
    QTest::keyClick(&filter, Qt::Key_Escape);
    QTest::keyClick(&filter, Qt::Key_Escape);
    QCOMPARE(filter.text(), QStringLiteral("error"));
}

void tst_ColorRulesDialog::aRuleForACell()
{
    open(QStringLiteral("dir == rx"));
    QCOMPARE(filters(), QStringLiteral("dir == rx|error|refused|tx"));
    QCOMPARE(find<FilterEdit>("filter").text(), QStringLiteral("dir == rx"));
    QVERIFY(m_dialog->rules().at(0).background);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(m_dialog->rules().at(0).background != ColorRule::standard().at(i).background);
    }
}

void tst_ColorRulesDialog::cancelChangesNothing()
{
    bool isTaken = false;
    connect(m_dialog.get(), &ColorRulesDialog::sig_rulesTaken, this, [&isTaken] { isTaken = true; });
    click("remove");
    QTest::mouseClick(m_dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    QVERIFY(!isTaken);
}

void tst_ColorRulesDialog::colorsCanBeRead_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << QPalette(QColor(240, 240, 240), QColor(255, 255, 255));
    QTest::newRow("dark") << darkPalette();
}

/// Whatever the user chooses.
void tst_ColorRulesDialog::colorsCanBeRead()
{
    QFETCH(const QPalette, palette);
    const std::array<ColorRule::Color, 8> colors{std::nullopt, 0x000000, 0xFFFFFF, 0xFF0000,
                                                 0xFFFF00,     0x0000FF, 0x808080, 0x7A4100};
    for (const ColorRule::Color &text : colors) {
        for (const ColorRule::Color &background : colors) {
            const RowColors shown = rowColors({true, {}, text, background}, palette);
            QCOMPARE(shown.background.isValid(), background.has_value());
            const QColor ground = shown.background.isValid() ? shown.background : palette.color(QPalette::Base);
            QVERIFY2(contrast(shown.text, ground) >= 4.4, // colours of 8 bits come close
                     qPrintable(shown.text.name() + QLatin1String(" on ") + ground.name()));
        }
    }
}

void tst_ColorRulesDialog::surroundings()
{
    const QPalette light(QColor(240, 240, 240), QColor(255, 255, 255));
    QVERIFY(isDark(darkPalette()));
    QVERIFY(!isDark(light));
    const ColorRule error = ColorRule::standard().at(0);
    QCOMPARE(rowColors(error, light).text, QColor(0x8B0000));
    QCOMPARE(rowColors(error, light).background, QColor(0xFFD0D0));
    QVERIFY(rowColors(error, darkPalette()).background.lightnessF() < 0.3);
    QVERIFY(rowColors(error, darkPalette()).text.lightnessF() > 0.6);
}

X9_GUI_TEST(tst_ColorRulesDialog)
#include "tst_ColorRulesDialog.moc"
