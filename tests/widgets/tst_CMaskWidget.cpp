#include "tests/support/TestProgram.h"
#include "widgets/CMaskWidget.h"

#include <QLineEdit>
#include <QtTest>

class tst_CMaskWidget : public QObject
{
    Q_OBJECT

private slots:
    static void covers();
    static void darkens();
    static void leavesFocusAndClicks();
};

void tst_CMaskWidget::covers()
{
    QWidget window;
    window.resize(300, 200);
    window.show();
    QWidget content(&window);
    content.show();
    const CMaskWidget mask(&window);
    QVERIFY(mask.isVisible());
    QCOMPARE(mask.geometry(), QRect(0, 0, 300, 200));
    QCOMPARE(window.children().last(), static_cast<const QObject *>(&mask)); // on top of the rest
    window.resize(500, 100);
    QCOMPARE(mask.geometry(), QRect(0, 0, 500, 100));
}

void tst_CMaskWidget::darkens()
{
    QWidget window;
    window.resize(100, 100);
    window.setStyleSheet(QStringLiteral("background: white"));
    const CMaskWidget mask(&window);
    const QColor colour = window.grab().toImage().pixelColor(50, 50);
    QCOMPARE(colour, QColor(153, 153, 153)); // 60 % of white shines through
}

void tst_CMaskWidget::leavesFocusAndClicks()
{
    QWidget window;
    window.resize(300, 200);
    QLineEdit field(&window);
    window.show();
    QApplication::setActiveWindow(&window);
    field.setFocus();
    QVERIFY(field.hasFocus());
    const CMaskWidget mask(&window);
    QCOMPARE(mask.focusPolicy(), Qt::NoFocus);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(200, 150));
    QVERIFY(field.hasFocus());
}

X9_GUI_TEST(tst_CMaskWidget)
#include "tst_CMaskWidget.moc"
