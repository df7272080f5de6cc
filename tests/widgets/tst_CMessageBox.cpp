#include "resources/Resources.h"
#include "tests/support/TestProgram.h"
#include "widgets/CMessageBox.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QTimer>
#include <QtTest>

namespace {
using Buttons = CMessageBox::StandardButtons;
using Helper = CMessageBox::StandardButton (*)(QWidget *, const QString &, const QString &, Buttons);

const QString StyleSheet = QStringLiteral(
    "QDialog{background-color:rgb(255 , 255 , 255);}QPushButton{background-color:#E0E0E0;border: 1px solid "
    "#A6A6A6;border-radius:5px;}QPushButton:hover{color:white;background-color:#4188FF;border-radius:5px;border: "
    "0px}QPushButton:pressed{padding-left:3px;padding-top:3px;}");

template<class T>
T *part(const CMessageBox &box, const char *name)
{
    return box.findChild<T *>(QLatin1String(name));
}

QPushButton *buttonOf(const CMessageBox &box, CMessageBox::StandardButton button)
{
    return part<QDialogButtonBox>(box, "buttonBox")->button(static_cast<QDialogButtonBox::StandardButton>(button));
}

/// What a user does to the box that is open, once its own event loop runs. A box that is left open is closed.
template<class Action>
void onceOpen(Action action)
{
    QTimer::singleShot(0, qApp, [action] {
        auto *box = qobject_cast<CMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr);
        action(*box);
        QWidget *left = QApplication::activeModalWidget();
        if (left != nullptr) {
            left->close();
        }
    });
}

void openActive(CMessageBox &box)
{
    box.open();
    QApplication::setActiveWindow(&box);
}
} // namespace

Q_DECLARE_METATYPE(Helper)
Q_DECLARE_METATYPE(CMessageBox::Icon)
Q_DECLARE_METATYPE(CMessageBox::StandardButton)
Q_DECLARE_METATYPE(CMessageBox::StandardButtons)
Q_DECLARE_METATYPE(QDialogButtonBox::ButtonRole)

class tst_CMessageBox : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void parts();
    static void pictures_data();
    static void pictures();
    static void buttonTexts_data();
    static void buttonTexts();
    static void unknownButtonsAreIgnored();
    static void keys_data();
    static void keys();
    static void focusMovesTheDefault();
    static void withoutEscapeButton();
    static void withoutButtons();
    static void noAcceleratorClashes();
    static void helpers_data();
    static void helpers();
    static void helperClosedOtherwise_data();
    static void helperClosedOtherwise();
    static void helperDeletedWithItsParent();
    static void openReportsByFinished();
    static void boxOverABox();
    static void plainUnlessRichIsAsked();
    static void shortTextStaysOnOneLine();
    static void longTextFitsTheScreen_data();
    static void longTextFitsTheScreen();
    static void enterWhileScrolling();
    static void textChangedWhileOpen();
    static void namesForScreenReaders();
};

void tst_CMessageBox::parts()
{
    const CMessageBox box(CMessageBox::Success, QStringLiteral("title"), QStringLiteral("text"), CMessageBox::Ok);
    QCOMPARE(box.objectName(), QStringLiteral("CMessageBox"));
    QCOMPARE(box.styleSheet(), StyleSheet);
    QCOMPARE(box.windowTitle(), QStringLiteral("title"));
    QVERIFY(part<QGridLayout>(box, "gridLayout") != nullptr);
    QVERIFY(part<QLabel>(box, "iconLabel") != nullptr);
    QCOMPARE(part<QLabel>(box, "textLabel")->text(), QStringLiteral("text"));
    QCOMPARE(box.text(), QStringLiteral("text"));
    QCOMPARE(static_cast<int>(CMessageBox::NoIcon), 0);
    QCOMPARE(static_cast<int>(CMessageBox::Critical), 5);
}

void tst_CMessageBox::pictures_data()
{
    QTest::addColumn<CMessageBox::Icon>("icon");
    QTest::addColumn<QString>("picture");
    QTest::newRow("none") << CMessageBox::NoIcon << "";
    QTest::newRow("information") << CMessageBox::Information << "";
    QTest::newRow("question") << CMessageBox::Question << ":/Images/MsgQuestion.png";
    QTest::newRow("success") << CMessageBox::Success << ":/Images/MsgInfo.png";
    QTest::newRow("warning") << CMessageBox::Warning << "";
    QTest::newRow("critical") << CMessageBox::Critical << ":/Images/MsgError.png";
}

void tst_CMessageBox::pictures()
{
    QFETCH(CMessageBox::Icon, icon);
    QFETCH(QString, picture);
    CMessageBox box;
    box.setIcon(CMessageBox::Critical);
    box.setIcon(icon);
    QCOMPARE(box.icon(), icon);
    const auto *label = part<QLabel>(box, "iconLabel");
    const QPixmap shown = label->pixmap(Qt::ReturnByValue);
    QCOMPARE(shown.isNull(), picture.isEmpty());
    QCOMPARE(label->isHidden(), picture.isEmpty());
    if (!picture.isEmpty()) {
        QVERIFY(!shown.toImage().isNull());
        QCOMPARE(shown.toImage(), QPixmap(picture).toImage());
    }
}

void tst_CMessageBox::buttonTexts_data()
{
    using Box = QDialogButtonBox;
    QTest::addColumn<CMessageBox::StandardButton>("button");
    QTest::addColumn<int>("value");
    QTest::addColumn<Box::ButtonRole>("role");
    QTest::newRow("OK") << CMessageBox::Ok << 0x400 << Box::AcceptRole;
    QTest::newRow("Save") << CMessageBox::Save << 0x800 << Box::AcceptRole;
    QTest::newRow("SaveAll") << CMessageBox::SaveAll << 0x1000 << Box::AcceptRole;
    QTest::newRow("Open") << CMessageBox::Open << 0x2000 << Box::AcceptRole;
    QTest::newRow("Yes") << CMessageBox::Yes << 0x4000 << Box::YesRole;
    QTest::newRow("YesToAll") << CMessageBox::YesToAll << 0x8000 << Box::YesRole;
    QTest::newRow("No") << CMessageBox::No << 0x10000 << Box::NoRole;
    QTest::newRow("NoToAll") << CMessageBox::NoToAll << 0x20000 << Box::NoRole;
    QTest::newRow("Abort") << CMessageBox::Abort << 0x40000 << Box::RejectRole;
    QTest::newRow("Retry") << CMessageBox::Retry << 0x80000 << Box::AcceptRole;
    QTest::newRow("Ignore") << CMessageBox::Ignore << 0x100000 << Box::AcceptRole;
    QTest::newRow("Close") << CMessageBox::Close << 0x200000 << Box::RejectRole;
    QTest::newRow("Cancel") << CMessageBox::Cancel << 0x400000 << Box::RejectRole;
    QTest::newRow("Discard") << CMessageBox::Discard << 0x800000 << Box::DestructiveRole;
    QTest::newRow("Help") << CMessageBox::Help << 0x1000000 << Box::HelpRole;
    QTest::newRow("Apply") << CMessageBox::Apply << 0x2000000 << Box::ApplyRole;
    QTest::newRow("Reset") << CMessageBox::Reset << 0x4000000 << Box::ResetRole;
    QTest::newRow("RestoreDefaults") << CMessageBox::RestoreDefaults << 0x8000000 << Box::ResetRole;
}

void tst_CMessageBox::buttonTexts()
{
    QFETCH(CMessageBox::StandardButton, button);
    QFETCH(QDialogButtonBox::ButtonRole, role);
    QTEST(static_cast<int>(button), "value");
    CMessageBox box;
    box.setStandardButtons(CMessageBox::Ok | CMessageBox::Cancel);
    box.setStandardButtons(button);
    QCOMPARE(box.standardButtons(), Buttons(button));
    QCOMPARE(part<QDialogButtonBox>(box, "buttonBox")->buttons().size(), 1);
    QCOMPARE(buttonOf(box, button)->text(), QLatin1String(QTest::currentDataTag()));
    QCOMPARE(part<QDialogButtonBox>(box, "buttonBox")->buttonRole(buttonOf(box, button)), role);

    // Every button closes the box and is its result.
    QSignalSpy finished(&box, &QDialog::finished);
    box.open();
    QTest::mouseClick(buttonOf(box, button), Qt::LeftButton);
    QVERIFY(!box.isVisible());
    QCOMPARE(finished, QList<QVariantList>({QVariantList{static_cast<int>(button)}}));
}

void tst_CMessageBox::unknownButtonsAreIgnored()
{
    CMessageBox box;
    box.setStandardButtons(Buttons(0x7FFFFFFF));
    QCOMPARE(part<QDialogButtonBox>(box, "buttonBox")->buttons().size(), 18);
    QCOMPARE(static_cast<int>(box.standardButtons()), 0xFFFFC00);
    box.setStandardButtons(Buttons(0x3FF));
    QVERIFY(part<QDialogButtonBox>(box, "buttonBox")->buttons().isEmpty());
}

void tst_CMessageBox::keys_data()
{
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<CMessageBox::StandardButton>("safe"); // has the focus, is pressed by Enter
    QTest::addColumn<CMessageBox::StandardButton>("escape");
    using B = CMessageBox;
    QTest::newRow("Ok") << Buttons(B::Ok) << B::Ok << B::Ok;
    QTest::newRow("Close") << Buttons(B::Close) << B::Close << B::Close;
    QTest::newRow("Yes, No") << (B::Yes | B::No) << B::No << B::No;
    QTest::newRow("Yes, No, Cancel") << (B::Yes | B::No | B::Cancel) << B::Cancel << B::Cancel;
    QTest::newRow("Ok, Cancel") << (B::Ok | B::Cancel) << B::Cancel << B::Cancel;
    QTest::newRow("Save, Discard, Cancel") << (B::Save | B::Discard | B::Cancel) << B::Cancel << B::Cancel;
    QTest::newRow("Abort, Retry, Ignore") << (B::Abort | B::Retry | B::Ignore) << B::Abort << B::Abort;
    QTest::newRow("Retry, Close") << (B::Retry | B::Close) << B::Close << B::Close;
    QTest::newRow("YesToAll, NoToAll") << (B::YesToAll | B::NoToAll) << B::NoToAll << B::NoToAll;
    QTest::newRow("Ok, Help") << (B::Ok | B::Help) << B::Ok << B::Ok;
    QTest::newRow("Help") << Buttons(B::Help) << B::Help << B::Help;
    QTest::newRow("Save, Discard") << (B::Save | B::Discard) << B::Save << B::NoButton;
    QTest::newRow("Ok, Apply, Reset") << (B::Ok | B::Apply | B::Reset) << B::Ok << B::NoButton;
}

void tst_CMessageBox::keys()
{
    QFETCH(Buttons, buttons);
    QFETCH(CMessageBox::StandardButton, safe);
    QFETCH(CMessageBox::StandardButton, escape);
    CMessageBox box(CMessageBox::Question, QString(), QStringLiteral("text"), buttons);
    QCOMPARE(box.escapeButton(), escape);
    QSignalSpy finished(&box, &QDialog::finished);
    for (const int key : {static_cast<int>(Qt::Key_Return), static_cast<int>(Qt::Key_Enter)}) {
        finished.clear();
        openActive(box);
        QVERIFY(buttonOf(box, safe)->hasFocus());
        QVERIFY(buttonOf(box, safe)->isDefault());
        QTest::keyClick(&box, static_cast<Qt::Key>(key));
        QVERIFY(!box.isVisible());
        QCOMPARE(finished.value(0).value(0).toInt(), static_cast<int>(safe));
        box.setStandardButtons(buttons);
    }
    const bool canEscape = escape != CMessageBox::NoButton;
    finished.clear();
    openActive(box);
    QTest::keyClick(&box, Qt::Key_Escape);
    QCOMPARE(box.isVisible(), !canEscape);
    QCOMPARE(finished.value(0).value(0).toInt(), static_cast<int>(escape));

    finished.clear();
    box.open();
    QCOMPARE(box.close(), canEscape); // as the title bar's X does
    QCOMPARE(box.isVisible(), !canEscape);
    QCOMPARE(finished.value(0).value(0).toInt(), static_cast<int>(escape));
}

void tst_CMessageBox::focusMovesTheDefault()
{
    CMessageBox box(CMessageBox::Question, QString(), QStringLiteral("text"), CMessageBox::Yes | CMessageBox::No);
    QSignalSpy finished(&box, &QDialog::finished);
    openActive(box);
    QTest::keyClick(&box, Qt::Key_Tab);
    QVERIFY(buttonOf(box, CMessageBox::Yes)->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(finished.value(0).value(0).toInt(), static_cast<int>(CMessageBox::Yes));
}

void tst_CMessageBox::withoutEscapeButton()
{
    CMessageBox box(CMessageBox::Question, QString(), QStringLiteral("text"), CMessageBox::Save | CMessageBox::Discard);
    box.open();
    QTest::keyClick(&box, Qt::Key_Escape);
    box.reject();
    QVERIFY(box.isVisible());
    QSignalSpy finished(&box, &QDialog::finished);
    QTest::mouseClick(buttonOf(box, CMessageBox::Discard), Qt::LeftButton);
    QCOMPARE(finished.value(0).value(0).toInt(), static_cast<int>(CMessageBox::Discard));
}

void tst_CMessageBox::withoutButtons()
{
    CMessageBox box(CMessageBox::NoIcon, QString(), QStringLiteral("text"), CMessageBox::NoButton);
    box.open();
    QSignalSpy finished(&box, &QDialog::finished);
    QTest::keyClick(&box, Qt::Key_Escape); // or nothing could close it
    QVERIFY(!box.isVisible());
    QCOMPARE(finished.value(0).value(0).toInt(), 0);
}

void tst_CMessageBox::noAcceleratorClashes()
{
    CMessageBox box;
    box.setStandardButtons(Buttons(0xFFFFC00));
    QSet<QString> seen;
    const auto buttons = part<QDialogButtonBox>(box, "buttonBox")->buttons();
    for (const QAbstractButton *button : buttons) {
        const QString key = button->shortcut().toString();
        QVERIFY2(key.isEmpty() || !seen.contains(key), qPrintable(key));
        seen.insert(key);
    }
}

void tst_CMessageBox::helpers_data()
{
    QTest::addColumn<Helper>("helper");
    QTest::addColumn<CMessageBox::Icon>("icon");
    QTest::newRow("information") << &CMessageBox::information << CMessageBox::Information;
    QTest::newRow("question") << &CMessageBox::question << CMessageBox::Question;
    QTest::newRow("success") << &CMessageBox::success << CMessageBox::Success;
    QTest::newRow("warning") << &CMessageBox::warning << CMessageBox::Warning;
    QTest::newRow("critical") << &CMessageBox::critical << CMessageBox::Critical;
}

void tst_CMessageBox::helpers()
{
    QFETCH(Helper, helper);
    QFETCH(CMessageBox::Icon, icon);
    QWidget parent;
    parent.show();
    for (const auto pressed : {CMessageBox::Yes, CMessageBox::No}) {
        onceOpen([icon, pressed, &parent](CMessageBox &box) {
            QCOMPARE(box.icon(), icon);
            QCOMPARE(box.windowTitle(), QStringLiteral("Tips"));
            QCOMPARE(box.text(), QStringLiteral("text"));
            QCOMPARE(box.parentWidget(), &parent);
            QVERIFY(box.isModal());
            QTest::mouseClick(buttonOf(box, pressed), Qt::LeftButton);
        });
        QCOMPARE(helper(&parent, QStringLiteral("Tips"), QStringLiteral("text"), CMessageBox::Yes | CMessageBox::No),
                 pressed);
    }
    QVERIFY(parent.findChild<CMessageBox *>() == nullptr);
}

void tst_CMessageBox::helperClosedOtherwise_data()
{
    helpers_data();
}

void tst_CMessageBox::helperClosedOtherwise()
{
    QFETCH(Helper, helper);
    onceOpen([](CMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QCOMPARE(helper(nullptr, QString(), QString(), CMessageBox::Yes | CMessageBox::No), CMessageBox::No);
    onceOpen([](CMessageBox &box) { box.close(); });
    QCOMPARE(helper(nullptr, QString(), QString(), CMessageBox::Ok), CMessageBox::Ok);
}

void tst_CMessageBox::helperDeletedWithItsParent()
{
    QPointer<QWidget> parent = new QWidget;
    parent->show();
    onceOpen([&parent](CMessageBox &) { delete parent; });
    QCOMPARE(CMessageBox::information(parent, QString(), QStringLiteral("text")), CMessageBox::NoButton);
}

void tst_CMessageBox::openReportsByFinished()
{
    QPointer<CMessageBox> box =
        new CMessageBox(CMessageBox::Question, QString(), QStringLiteral("text"), CMessageBox::Yes | CMessageBox::No);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QSignalSpy finished(box.data(), &QDialog::finished);
    box->open();
    QTest::mouseClick(buttonOf(*box, CMessageBox::Yes), Qt::LeftButton);
    QCOMPARE(finished.value(0).value(0).toInt(), static_cast<int>(CMessageBox::Yes));
    QTRY_VERIFY(box.isNull());
}

void tst_CMessageBox::boxOverABox()
{
    QWidget window;
    window.show();
    CMessageBox lower(CMessageBox::Success, QString(), QStringLiteral("lower"), CMessageBox::Ok, &window);
    CMessageBox upper(CMessageBox::Critical, QString(), QStringLiteral("upper"), CMessageBox::Ok, &window);
    openActive(lower);
    openActive(upper);
    QCOMPARE(QApplication::activeModalWidget(), &upper);
    QTest::keyClick(&upper, Qt::Key_Return);
    QVERIFY(!upper.isVisible());
    QVERIFY(lower.isVisible());
    QCOMPARE(QApplication::activeModalWidget(), &lower);
    QApplication::setActiveWindow(&lower);
    QVERIFY(buttonOf(lower, CMessageBox::Ok)->hasFocus());
    QTest::keyClick(&lower, Qt::Key_Return);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void tst_CMessageBox::plainUnlessRichIsAsked()
{
    const QString text = QStringLiteral("first line<br>/tmp/<b>a</b> & b");
    CMessageBox box(CMessageBox::Information, QString(), text, CMessageBox::Ok);
    box.open();
    const auto *label = part<QLabel>(box, "textLabel");
    QCOMPARE(label->textFormat(), Qt::PlainText);
    const QSize plain = label->sizeHint();
    box.setTextFormat(Qt::RichText);
    QVERIFY(label->sizeHint().height() > plain.height());
    QVERIFY(label->sizeHint().width() < plain.width());
}

void tst_CMessageBox::shortTextStaysOnOneLine()
{
    CMessageBox box(CMessageBox::Information, QString(), QStringLiteral("Device turned off"), CMessageBox::Ok);
    box.open();
    const auto *label = part<QLabel>(box, "textLabel");
    QVERIFY(!label->wordWrap());
    QVERIFY(label->width() >= label->sizeHint().width());
    QVERIFY(label->height() >= label->sizeHint().height());
}

void tst_CMessageBox::longTextFitsTheScreen_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Qt::TextFormat>("format");
    QTest::addColumn<bool>("scrolls");
    const int large = 10000;
    QTest::newRow("a paragraph") << QStringLiteral("word ").repeated(100) << Qt::PlainText << false;
    QTest::newRow("a long path") << QStringLiteral("/folder").repeated(40) << Qt::PlainText << false;
    QTest::newRow("a long word") << QString(300, QLatin1Char('x')) << Qt::PlainText << false;
    QTest::newRow("words") << QStringLiteral("word ").repeated(large / 5) << Qt::PlainText << true;
    QTest::newRow("lines") << QStringLiteral("line\n").repeated(large / 5) << Qt::PlainText << true;
    QTest::newRow("one word") << QString(large, QLatin1Char('x')) << Qt::PlainText << true;
    QTest::newRow("far too many words") << QStringLiteral("word ").repeated(20 * large) << Qt::PlainText << true;
    QTest::newRow("far too long a word") << QString(100 * large, QLatin1Char('x')) << Qt::PlainText << true;
    QTest::newRow("markup") << QStringLiteral("word<br>").repeated(large / 8) << Qt::RichText << true;
}

void tst_CMessageBox::longTextFitsTheScreen()
{
    QFETCH(QString, text);
    QFETCH(Qt::TextFormat, format);
    QFETCH(bool, scrolls);
    CMessageBox box(CMessageBox::Critical, QString(), text, CMessageBox::Ok);
    box.setTextFormat(format);
    openActive(box);
    const QSize screen = box.screen()->availableSize();
    QVERIFY(box.width() <= screen.width());
    QVERIFY(box.height() <= screen.height());
    QVERIFY(box.rect().contains(part<QDialogButtonBox>(box, "buttonBox")->geometry()));
    const auto *label = part<QLabel>(box, "textLabel");
    QVERIFY(label->height() >= label->heightForWidth(label->width())); // nothing is cut
    if (format == Qt::PlainText) {
        const QRegularExpression blanks(QStringLiteral("\\s"));
        const QString all = text.size() > 10000 ? text.left(10000) + QChar(0x2026) : text;
        QCOMPARE(label->text().remove(blanks), QString(all).remove(blanks));
    }
    QCOMPARE(box.text(), text);

    auto *area = part<QScrollArea>(box, "textArea");
    QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
    QCOMPARE(area->verticalScrollBar()->maximum() > 0, scrolls);
    QVERIFY(buttonOf(box, CMessageBox::Ok)->hasFocus());
    QTest::keyClick(&box, Qt::Key_Tab);
    QCOMPARE(area->hasFocus(), scrolls); // the keyboard reaches what is to be scrolled
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
    QCOMPARE(area->verticalScrollBar()->value() > 0, scrolls);
    QTest::keyClick(&box, Qt::Key_Return);
    QVERIFY(!box.isVisible());
}

// Enter presses the safe button also when the focus is on none of them.
void tst_CMessageBox::enterWhileScrolling()
{
    CMessageBox box(CMessageBox::Question, QString(), QStringLiteral("line\n").repeated(500),
                    CMessageBox::Yes | CMessageBox::No);
    QSignalSpy finished(&box, &QDialog::finished);
    openActive(box);
    auto *area = part<QScrollArea>(box, "textArea");
    area->setFocus();
    QVERIFY(area->hasFocus());
    QTest::keyClick(area, Qt::Key_Return);
    QCOMPARE(finished.value(0).value(0).toInt(), static_cast<int>(CMessageBox::No));
}

void tst_CMessageBox::textChangedWhileOpen()
{
    CMessageBox box(CMessageBox::Critical, QString(), QStringLiteral("short"), CMessageBox::Ok);
    box.open();
    const QSize before = box.size();
    box.setText(QStringLiteral("a longer line than before, and\nanother one\nand one more\nand one more"));
    const auto *label = part<QLabel>(box, "textLabel");
    QTRY_VERIFY(box.height() > before.height());
    QVERIFY(label->height() >= label->sizeHint().height());
    QVERIFY(label->width() >= label->sizeHint().width());
}

void tst_CMessageBox::namesForScreenReaders()
{
    QSet<QString> kinds;
    for (const auto icon : {CMessageBox::Information, CMessageBox::Question, CMessageBox::Success, CMessageBox::Warning,
                            CMessageBox::Critical}) {
        const CMessageBox box(icon, QString(), QStringLiteral("text"), CMessageBox::Ok);
        const QString kind = part<QLabel>(box, "iconLabel")->accessibleName();
        QVERIFY(!kind.isEmpty());
        QCOMPARE(box.accessibleDescription(), kind);
        kinds.insert(kind);
    }
    QCOMPARE(kinds.size(), 5);
}

X9_GUI_TEST(tst_CMessageBox)
#include "tst_CMessageBox.moc"
