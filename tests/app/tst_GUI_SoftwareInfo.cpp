#include "app/GUI_SoftwareInfo.h"
#include "resources/Resources.h"
#include "tests/support/TestProgram.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

class tst_GUI_SoftwareInfo : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void nameAndVersionAreShown();
    static void supportAddress_data();
    static void supportAddress();
    static void withoutSupportAddress();
    static void updateIsAskedFor();
    static void waitsForTheAnswer();

private:
    static QLabel *label(const QWidget &dialog, const char *name)
    {
        return dialog.findChild<QLabel *>(QLatin1String(name));
    }
};

void tst_GUI_SoftwareInfo::nameAndVersionAreShown()
{
    GUI_SoftwareInfo dialog{QString()};
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QStringLiteral("About Software"));
    QCOMPARE(label(dialog, "lbl_softwareName")->text(), QStringLiteral("X9CAN"));
    QCOMPARE(label(dialog, "lbl_softwareVersion")->text(), QStringLiteral("V1.1.1"));
    QCOMPARE(label(dialog, "label_name")->text(), QStringLiteral("Software name:"));
    QCOMPARE(label(dialog, "label_version")->text(), QStringLiteral("Software version:"));
    QCOMPARE(dialog.styleSheet(), QStringLiteral("QDialog{background-color:rgb(255 , 255 , 255);}"));
    QVERIFY(!label(dialog, "lbl_icon")->pixmap(Qt::ReturnByValue).isNull());
}

void tst_GUI_SoftwareInfo::supportAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("text");
    QTest::newRow("web")
        << "https://example.org/x9?a=1&b=2"
        << "&#8203;<a href=\"https://example.org/x9?a=1&amp;b=2\">https://example.org/x9?a=1&amp;b=2</a>";
    QTest::newRow("mail") << "support@example.org"
                          << "&#8203;<a href=\"mailto:support@example.org\">support@example.org</a>";
    QTest::newRow("telephone") << "+49 30 123 <456>"
                               << "+49 30 123 <456>";
    QTest::newRow("sentence") << "mail to x@example.org"
                              << "mail to x@example.org";
}

void tst_GUI_SoftwareInfo::supportAddress()
{
    QFETCH(QString, address);
    QFETCH(QString, text);
    GUI_SoftwareInfo dialog(address);
    dialog.show();
    QVERIFY(label(dialog, "label_web")->isVisible());
    QCOMPARE(label(dialog, "label_web")->text(), QStringLiteral("Technical support:"));
    QVERIFY(label(dialog, "lbl_web")->isVisible());
    QCOMPARE(label(dialog, "lbl_web")->text(), text);
    const bool isLink = text != address;
    QCOMPARE(label(dialog, "lbl_web")->textFormat(), isLink ? Qt::RichText : Qt::PlainText);
    QCOMPARE(label(dialog, "lbl_web")->openExternalLinks(), isLink);
}

void tst_GUI_SoftwareInfo::withoutSupportAddress()
{
    GUI_SoftwareInfo dialog{QString()};
    dialog.show();
    QVERIFY(!label(dialog, "label_web")->isVisible());
    QVERIFY(!label(dialog, "lbl_web")->isVisible());
}

void tst_GUI_SoftwareInfo::updateIsAskedFor()
{
    GUI_SoftwareInfo dialog{QString()};
    dialog.show();
    QSignalSpy update(&dialog, &GUI_SoftwareInfo::sig_update);
    auto *button = dialog.findChild<QPushButton *>(QStringLiteral("btn_update"));
    QCOMPARE(button->text(), QStringLiteral("Check updates"));
    QCOMPARE(button->property("nav").toString(), QStringLiteral("tBtnStyle_1"));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(update.count(), 1);
    QVERIFY(dialog.isVisible());
}

void tst_GUI_SoftwareInfo::waitsForTheAnswer()
{
    GUI_SoftwareInfo dialog{QString()};
    dialog.show();
    QSignalSpy update(&dialog, &GUI_SoftwareInfo::sig_update);
    auto *button = dialog.findChild<QPushButton *>(QStringLiteral("btn_update"));
    dialog.setChecking(true);
    QCOMPARE(button->text(), QStringLiteral("Checking..."));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(update.count(), 0);
    dialog.setChecking(false);
    QCOMPARE(button->text(), QStringLiteral("Check updates"));
    QCOMPARE(dialog.focusWidget(), button);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(update.count(), 1);
}

X9_GUI_TEST(tst_GUI_SoftwareInfo)
#include "tst_GUI_SoftwareInfo.moc"
