#include "app/Application.h"
#include "app/PopupWidget.h"
#include "tests/app/WindowWidgets.h"
#include "tests/support/TestProgram.h"
#include "tests/support/WindowCatalog.h"
#include "widgets/CMessageBox.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>
#include <QWindow>

#include <algorithm>

namespace {
/// The button that Enter presses, for dialogs that have one.
struct DefaultButton
{
    const char *window;
    const char *button;
};
constexpr DefaultButton DefaultButtons[] = {
    {"open", "btn_ok"},
    {"open-lin", "btn_setup"}, // has just been pressed and has the focus
    {"open-no-adapter", "btn_ok"},
    {"open-all-open", "btn_ok"},
    {"filter-tool", "btn_ok"},
    {"filter-tool-refusing", "btn_ok"},
    {"scan-before", "btn_start"},
    {"scan", "btn_apply"},
    {"gateway-filter", "btn_apply"},
    {"send-file-idle", "btn_send"},
    {"send-file", "btn_send"},
    {"software-information", "btn_update"},
    {"software-information-checking", "btn_update"},
    {"device-information", "btn_update"},
    {"device-information-updating", "btn_update"}, // disabled: Enter does nothing
    {"migration", "btn_migration"},
};

bool isFocusable(const QWidget &widget)
{
    return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus) != 0 &&
           widget.focusProxy() == nullptr && !isFolded(widget);
}

/// Side by side: more than half of the lower one is beside the other.
bool isSameRow(const QRect &one, const QRect &other)
{
    const int common = std::min(one.bottom(), other.bottom()) - std::max(one.top(), other.top()) + 1;
    return 2 * common > std::min(one.height(), other.height());
}

/// The children as they are read: rows from top to bottom, each from left to right.
QVector<QWidget *> inReadingOrder(const QWidget &parent)
{
    QVector<QWidget *> left;
    for (QObject *child : parent.children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        if (widget != nullptr && !widget->isWindow() && widget->isVisible()) {
            left.append(widget);
        }
    }
    QVector<QWidget *> ordered;
    while (!left.isEmpty()) {
        const QWidget *top = *std::min_element(left.begin(), left.end(), [](const QWidget *one, const QWidget *other) {
            return one->y() + one->height() / 2 < other->y() + other->height() / 2;
        });
        QVector<QWidget *> row;
        const QRect place = top->geometry();
        for (QWidget *widget : qAsConst(left)) {
            if (widget == top || isSameRow(place, widget->geometry())) {
                row.append(widget);
            }
        }
        std::sort(row.begin(), row.end(),
                  [](const QWidget *one, const QWidget *other) { return one->x() < other->x(); });
        for (QWidget *widget : qAsConst(row)) {
            left.removeOne(widget);
            ordered.append(widget);
        }
    }
    return ordered;
}

/// Of buttons of which one is always chosen Tab reaches one, and the arrow keys the others: the first one here.
QWidget *representative(QWidget *control)
{
    const auto *button = qobject_cast<const QAbstractButton *>(control);
    if (button == nullptr) {
        return control;
    }
    const bool isInGroup = button->group() != nullptr && button->group()->exclusive();
    if (isInGroup) {
        return button->group()->buttons().first();
    }
    return button->autoExclusive() ? button->parentWidget()->findChild<QRadioButton *>() : control;
}

/// The controls that Tab is to reach, in reading order; a group is read as a whole.
void appendControls(const QWidget &parent, QVector<QWidget *> &controls)
{
    for (QWidget *widget : inReadingOrder(parent)) {
        if (isFocusable(*widget) && !controls.contains(representative(widget))) {
            controls.append(representative(widget));
        }
        if (qobject_cast<QAbstractSpinBox *>(widget) == nullptr && qobject_cast<QComboBox *>(widget) == nullptr &&
            qobject_cast<QAbstractItemView *>(widget) == nullptr) {
            appendControls(*widget, controls);
        }
    }
}

QString names(const QVector<QWidget *> &widgets)
{
    QStringList names;
    for (const QWidget *widget : widgets) {
        names.append(widget->objectName().isEmpty() ? nameOf(*widget) : widget->objectName());
    }
    return names.join(QLatin1Char(' '));
}

/// Presses Tab, or with Shift, until the focus is in another control. The editor of bytes has two parts, a text may
/// hold a link, and the send list keeps Tab for its cells and is left with Ctrl.
QWidget *nextControl(QWidget *control, bool isForward)
{
    const Qt::KeyboardModifiers shift = isForward ? Qt::NoModifier : Qt::ShiftModifier;
    const Qt::Key key = isForward ? Qt::Key_Tab : Qt::Key_Backtab;
    QTest::keyClick(control, key, shift);
    const bool hasParts =
        control->inherits("QHexEdit") || control->inherits("QLabel") || control->inherits("QTextBrowser");
    if (QApplication::focusWidget() == control && hasParts) {
        QTest::keyClick(control, key, shift);
    }
    if (QApplication::focusWidget() == control && control->inherits("SendListTable")) {
        QTest::keyClick(control, key, shift | Qt::ControlModifier);
    }
    return QApplication::focusWidget();
}

/// The controls that the keys reach from the first one until they are back at it.
QVector<QWidget *> visitedControls(QWidget *first, int count, bool isForward)
{
    QVector<QWidget *> visited;
    QWidget *control = first;
    do {
        visited.append(representative(control));
        control = nextControl(control, isForward);
    } while (control != nullptr && control != first && visited.size() <= count);
    return visited;
}

QChar mnemonicOf(const QString &caption)
{
    const QKeySequence sequence = QKeySequence::mnemonic(caption);
    return sequence.isEmpty() ? QChar() : QChar(static_cast<ushort>(sequence[0] & 0xFFFF));
}

/// Letter and control, for each letter that Alt goes with in the window.
QVector<QPair<QChar, QWidget *>> mnemonicsOf(const QWidget &window)
{
    QVector<QPair<QChar, QWidget *>> mnemonics;
    for (QWidget *widget : widgetsOf(window)) {
        const auto *button = qobject_cast<QAbstractButton *>(widget);
        const auto *label = qobject_cast<QLabel *>(widget);
        QString caption;
        if (button != nullptr) {
            caption = button->text();
        } else if (label != nullptr && label->buddy() != nullptr) {
            caption = label->text();
        }
        const QChar letter = mnemonicOf(caption);
        if (!letter.isNull() && widget->isVisible()) {
            mnemonics.append({letter, widget});
        }
    }
    return mnemonics;
}

/// Whether Alt and the letter do what the control is for: open its menu, press it or go to its field.
bool mnemonicWorks(QWidget &window, QChar letter, QWidget *control)
{
    bool isDone = false;
    QObject guard;
    if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        const auto *tool = qobject_cast<QToolButton *>(button);
        QMenu *menu = tool != nullptr ? tool->menu() : nullptr;
        if (menu != nullptr) {
            QObject::connect(menu, &QMenu::aboutToShow, &guard, [&isDone, menu] {
                isDone = true;
                QTimer::singleShot(0, menu, &QMenu::close); // the button waits for its menu
            });
        }
        QObject::connect(button, &QAbstractButton::pressed, &guard, [&isDone] { isDone = true; });
    }
    QTest::keyClick(window.windowHandle(), static_cast<Qt::Key>(letter.toUpper().unicode()), Qt::AltModifier);
    const auto *label = qobject_cast<QLabel *>(control);
    const bool works = QTest::qWaitFor(
        [&] { return isDone || (label != nullptr && QApplication::focusWidget() == label->buddy()); }, 2000);
    return works;
}
} // namespace

class tst_Keyboard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    static void tabOrder_data() { addWindows(); }
    static void tabOrder();
    static void escape_data() { addWindows(); }
    static void escape();
    static void closingWithFocusInAField_data();
    static void closingWithFocusInAField();
    static void pastedNumbers_data();
    static void pastedNumbers();
    static void mnemonics_data() { addWindows(); }
    static void mnemonics();
    static void defaultButton_data() { addWindows(); }
    static void defaultButton();

private:
    static void addWindows();
    /// Shows the window of the data row.
    static void show(const CatalogWindow::Visitor &visit);

    Translators m_translators;
};

void tst_Keyboard::initTestCase()
{
    applyApplicationLook(*qApp);
    QVERIFY(installLanguage(m_translators, 1));
}

void tst_Keyboard::addWindows()
{
    QTest::addColumn<int>("index");
    const std::vector<CatalogWindow> catalog = windowCatalog();
    for (int index = 0; index < static_cast<int>(catalog.size()); ++index) {
        QTest::newRow(qPrintable(catalog.at(static_cast<std::size_t>(index)).name)) << index;
    }
}

void tst_Keyboard::show(const CatalogWindow::Visitor &visit)
{
    QFETCH(int, index);
    int visits = 0;
    windowCatalog().at(static_cast<std::size_t>(index)).show([&](QWidget &window) {
        ++visits;
        visit(window);
    });
    QCOMPARE(visits, 1);
}

/// Tab goes through all controls as they are read, wherever it starts, and Shift+Tab the same way back.
void tst_Keyboard::tabOrder()
{
    show([](QWidget &window) {
        if (qobject_cast<QMenu *>(&window) != nullptr || qobject_cast<QFileDialog *>(&window) != nullptr) {
            return; // the toolkit's own
        }
        QVector<QWidget *> expected;
        appendControls(window, expected);
        if (expected.isEmpty()) {
            return; // the main window at first
        }
        QApplication::setActiveWindow(&window);
        expected.first()->setFocus();
        QCOMPARE(names(visitedControls(expected.first(), expected.size(), true)), names(expected));
        expected.first()->setFocus();
        QVector<QWidget *> backwards{expected.first()};
        for (int index = expected.size() - 1; index > 0; --index) {
            backwards.append(expected.at(index));
        }
        QCOMPARE(names(visitedControls(expected.first(), expected.size(), false)), names(backwards));
    });
}

/// Esc closes every dialog and menu as "Cancel" does, a frame inside a dialog first, and does nothing to the main
/// window.
void tst_Keyboard::escape()
{
    show([](QWidget &window) {
        const QPointer<QWidget> shown(&window);
        const QPointer<QDialog> dialog(qobject_cast<QDialog *>(&window));
        const bool isMain = qobject_cast<QMainWindow *>(&window) != nullptr;
        int result = -1;
        QObject guard;
        int expected = QDialog::Rejected;
        if (dialog) {
            QObject::connect(dialog, &QDialog::finished, &guard, [&result](int code) { result = code; });
        }
        if (const auto *box = qobject_cast<CMessageBox *>(&window)) {
            expected = box->escapeButton();
        }
        if (const QPointer<PopupWidget> frame = window.findChild<PopupWidget *>()) {
            QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
            QTRY_VERIFY(!frame);
            QVERIFY(window.isVisible());
        }
        QWidget *focus = window.focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &window, Qt::Key_Escape);
        const bool isOpen = !shown.isNull() && window.isVisible();
        QCOMPARE(isOpen, isMain);
        if (!isMain && result != -1) {
            QCOMPARE(result, expected);
        }
    });
}

void tst_Keyboard::closingWithFocusInAField_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("field");
    const std::vector<QPair<QString, QStringList>> fields = {
        {QStringLiteral("open"), {QStringLiteral("lbx_accCode")}},
        {QStringLiteral("filter-tool"), {QStringLiteral("lbx_idFrom")}},
        {QStringLiteral("can"),
         {QStringLiteral("m_pLineEdit"), QStringLiteral("lbx_cache"), QStringLiteral("lbx_frameID"),
          QStringLiteral("lbx_setFilter"), QStringLiteral("cbx_length")}},
        {QStringLiteral("send-list"), {QStringLiteral("tableWidget"), QStringLiteral("cbxMode")}},
        {QStringLiteral("send-file-idle"), {QStringLiteral("lbx_fileName"), QStringLiteral("sbx_count")}},
        {QStringLiteral("gateway-filter"), {QStringLiteral("lbx_id")}},
        {QStringLiteral("lin-list"), {QStringLiteral("spx_baudrate"), QStringLiteral("lbx_count")}},
        {QStringLiteral("lin-developer"), {QStringLiteral("lbx_data"), QStringLiteral("sbx_interval")}},
    };
    const std::vector<CatalogWindow> catalog = windowCatalog();
    for (const auto &window : fields) {
        const auto found = std::find_if(catalog.begin(), catalog.end(),
                                        [&](const CatalogWindow &entry) { return entry.name == window.first; });
        QVERIFY2(found != catalog.end(), qPrintable(window.first));
        for (const QString &field : window.second) {
            QTest::addRow("%s %s", qPrintable(window.first), qPrintable(field))
                << static_cast<int>(std::distance(catalog.begin(), found)) << field;
        }
    }
}

/// A field that goes while it has the focus tells its window, which must not work on what is gone already.
void tst_Keyboard::closingWithFocusInAField()
{
    QFETCH(QString, field);
    show([&field](QWidget &window) {
        QApplication::setActiveWindow(&window);
        const QList<QWidget *> found = window.findChildren<QWidget *>(field);
        const auto visible =
            std::find_if(found.begin(), found.end(), [](const QWidget *one) { return one->isVisible(); });
        QVERIFY(visible != found.end());
        (*visible)->setFocus();
        QVERIFY((*visible)->hasFocus());
    });
}

/// The windows with entry fields, which have those of their hidden pages, too.
void tst_Keyboard::pastedNumbers_data()
{
    const QStringList windows{
        QStringLiteral("open"),      QStringLiteral("filter-tool"),    QStringLiteral("can"),
        QStringLiteral("send-list"), QStringLiteral("send-file-idle"), QStringLiteral("gateway-filter"),
        QStringLiteral("lin-list")};
    QTest::addColumn<int>("index");
    const std::vector<CatalogWindow> catalog = windowCatalog();
    for (std::size_t index = 0; index < catalog.size(); ++index) {
        if (windows.contains(catalog.at(index).name)) {
            QTest::newRow(qPrintable(catalog.at(index).name)) << static_cast<int>(index);
        }
    }
}

/// Every entry field takes a number as it comes from the clipboard, but for those that are not for numbers.
void tst_Keyboard::pastedNumbers()
{
    show([](QWidget &window) {
        int fields = 0;
        for (QLineEdit *field : window.findChildren<QLineEdit *>()) {
            if (field->isReadOnly() || field->objectName() == QLatin1String("lbx_fileName")) {
                continue;
            }
            const QString name = field->objectName() + QLatin1Char(' ') + field->parentWidget()->objectName();
            QVERIFY2(field->validator() != nullptr, qPrintable(name));
            QString number = QStringLiteral(" 0 3\n");
            int position = number.size();
            QVERIFY2(field->validator()->validate(number, position) != QValidator::Invalid, qPrintable(name));
            QVERIFY2(!number.contains(QLatin1Char('\n')), qPrintable(name));
            ++fields;
        }
        QVERIFY(fields > 0);
    });
}

/// No letter twice, and each one works.
void tst_Keyboard::mnemonics()
{
    show([](QWidget &window) {
        if (qobject_cast<QFileDialog *>(&window) != nullptr) {
            return; // the toolkit's own
        }
        QSet<QChar> letters;
        for (const auto &mnemonic : mnemonicsOf(window)) {
            QVERIFY2(!letters.contains(mnemonic.first), qPrintable(QString(mnemonic.first)));
            letters.insert(mnemonic.first);
        }
        if (qobject_cast<QMainWindow *>(&window) == nullptr) {
            return; // only the tool bar has letters that can be tried without starting something
        }
        QVERIFY(!letters.isEmpty());
        for (const auto &mnemonic : mnemonicsOf(window)) {
            QApplication::setActiveWindow(&window); // the menu before had taken its place
            QVERIFY2(mnemonicWorks(window, mnemonic.first, mnemonic.second), qPrintable(QString(mnemonic.first)));
        }
    });
}

/// Enter presses the button that is expected; where there is none, in the send list, it presses nothing.
void tst_Keyboard::defaultButton()
{
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    show([&name](QWidget &window) {
        if (qobject_cast<QDialog *>(&window) == nullptr || qobject_cast<QFileDialog *>(&window) != nullptr) {
            return;
        }
        QString found;
        QString text;
        for (const QPushButton *button : window.findChildren<QPushButton *>()) {
            if (button->window() == &window && button->isDefault()) {
                found = button->objectName();
                text = button->text();
            }
        }
        if (const auto *box = qobject_cast<CMessageBox *>(&window)) {
            const CMessageBox::StandardButtons buttons = box->standardButtons();
            QCOMPARE(text, buttons.testFlag(CMessageBox::Cancel) ? QStringLiteral("Cancel")
                           : buttons.testFlag(CMessageBox::No)   ? QStringLiteral("No")
                                                                 : QStringLiteral("OK"));
            return;
        }
        if (name == QLatin1String("edit-data")) {
            QCOMPARE(text, QStringLiteral("OK")); // of the box of buttons
            return;
        }
        const auto *expected =
            std::find_if(std::begin(DefaultButtons), std::end(DefaultButtons),
                         [&name](const DefaultButton &button) { return name == QLatin1String(button.window); });
        QCOMPARE(found, expected == std::end(DefaultButtons) ? QString() : QString(QLatin1String(expected->button)));
    });
}

namespace {

int runInApplication(int argc, char *argv[])
{
    setApplicationAttributes();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    return runPlainTest<tst_Keyboard>(argc, argv);
}

} // namespace

X9_TEST_RUN_BY(tst_Keyboard, runInApplication)

#include "tst_Keyboard.moc"
