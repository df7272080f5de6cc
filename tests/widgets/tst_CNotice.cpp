#include "resources/Resources.h"
#include "tests/support/TestProgram.h"
#include "widgets/CNotice.h"

#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
/// A parent and its notice. Time passes only when a test says so: the tests never return to the event loop, and send
/// the timers their events and the animation its time themselves.
struct Stage
{
    Stage()
    {
        window.resize(600, 500);
        window.show();
    }

    template<class T>
    T *part(const char *name) const
    {
        return notice.findChild<T *>(QLatin1String(name));
    }
    QPropertyAnimation *animation() const { return part<QPropertyAnimation>("m_pAnimation"); }
    QTimer *delay() const { return part<QTimer>("m_pDelay"); }
    QTimer *timer() const { return part<QTimer>("m_pTimer"); }
    QLabel *icon() const { return part<QLabel>("m_pIcon"); }
    QLabel *text() const { return part<QLabel>("m_pText"); }
    qreal opacity() const { return qobject_cast<QGraphicsOpacityEffect *>(notice.graphicsEffect())->opacity(); }

    static void expire(QTimer *timer)
    {
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
    }
    void fadeIn() const
    {
        animation()->setCurrentTime(animation()->duration());
        expire(delay());
    }
    /// How often the timer ticks until the notice starts to fade out.
    int ticksToFadeOut() const
    {
        int ticks = 0;
        while (timer()->isActive() && ticks < 100000) {
            expire(timer());
            ++ticks;
        }
        return ticks;
    }
    int textWidth(const QString &line) const
    {
        const QFontMetricsF metrics(text()->font());
        const qreal overhang = std::max(-metrics.rightBearing(line.back()), 0.0);
        return static_cast<int>(std::ceil(metrics.horizontalAdvance(line) + overhang));
    }

    QWidget window;
    CNotice notice{&window};
};

const QString Green = QStringLiteral("color:#242523;border-radius:8px;background-color:#f0f9ec;border-width:1px; "
                                     "border-style:solid; border-color:#418f1f;");
const QString Amber = QStringLiteral("color:#242523;border-radius:8px;background-color:#fff4ce;border-width:1px; "
                                     "border-style:solid; border-color:#B88A00;");
const QString Red = QStringLiteral("color:#242523;border-radius:8px;background-color:#fde7e9;border-width:1px; "
                                   "border-style:solid; border-color:#861b2d;");
const QString Grey = QStringLiteral("color:#242523;border-radius:8px;background-color:#f3f3f3;border-width:1px; "
                                    "border-style:solid; border-color:#242523;");
constexpr int IconSize = 18;
} // namespace

class tst_CNotice : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void hiddenAtFirst();
    static void looks_data();
    static void looks();
    static void otherTypesChangeNothing_data();
    static void otherTypesChangeNothing();
    static void size();
    static void heightByLines_data();
    static void heightByLines();
    static void eachLineIsDrawnOnOneLine();
    static void fadesInStaysAndFadesOut();
    static void timersArePrecise();
    static void ticks_data();
    static void ticks();
    static void secondNoticeWhileShowing();
    static void secondNoticeDuringFadeIn();
    static void waitOfTheFirstNoticeIsDropped();
    static void secondNoticeDuringFadeOut();
    static void centredAfterResizing();
    static void centredByPainting();
    static void textIsNeverMarkup_data();
    static void textIsNeverMarkup();
    static void wideTextStaysInside_data();
    static void wideTextStaysInside();
    static void refitsWhenTheParentShrinks();
    static void clicksReachWhatIsUnderIt();
    static void endsWithItsParent();
    static void namesForScreenReaders();
};

void tst_CNotice::hiddenAtFirst()
{
    const Stage stage;
    QVERIFY(stage.notice.isHidden());
    QCOMPARE(stage.notice.frameShape(), QFrame::Box);
    QCOMPARE(stage.notice.frameShadow(), QFrame::Plain);
    QCOMPARE(stage.opacity(), 0.1);
    QCOMPARE(stage.animation()->duration(), 1200);
    QCOMPARE(stage.animation()->easingCurve().type(), QEasingCurve::InOutCubic);
    QCOMPARE(stage.animation()->propertyName(), QByteArray("opacity"));
    QCOMPARE(stage.delay()->interval(), 1200);
    QVERIFY(stage.delay()->isSingleShot());
    QCOMPARE(stage.timer()->interval(), 10);
    QCOMPARE(stage.icon()->maximumSize(), QSize(IconSize, IconSize));
    QVERIFY(stage.icon()->hasScaledContents());
    QVERIFY(stage.text()->wordWrap());
    QCOMPARE(stage.icon()->styleSheet(), QStringLiteral("border:none;"));
    QCOMPARE(stage.text()->styleSheet(), QStringLiteral("border:none;"));
    const auto *layout = qobject_cast<QHBoxLayout *>(stage.notice.layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->spacing(), 10);
    QCOMPARE(layout->contentsMargins(), QMargins(15, 2, 15, 2));
}

void tst_CNotice::looks_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("styleSheet");
    QTest::addColumn<QString>("picture");
    QTest::newRow("done") << 0 << Green << ":/Images/MsgInfo.png";
    QTest::newRow("warning") << 1 << Amber << ":/Images/MsgWarnning.png";
    QTest::newRow("question") << 2 << Amber << ":/Images/MsgQuestion.png";
    QTest::newRow("failure") << 3 << Red << ":/Images/MsgError.png";
    QTest::newRow("about") << 4 << Grey << ":/Images/MsgAbout.png";
}

void tst_CNotice::looks()
{
    QFETCH(int, type);
    QFETCH(QString, picture);
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("text"), type, 1000);
    QVERIFY(stage.notice.isVisible());
    QCOMPARE(stage.text()->text(), QStringLiteral("text"));
    QTEST(stage.notice.styleSheet(), "styleSheet");
    const QImage shown = stage.icon()->pixmap(Qt::ReturnByValue).toImage();
    QVERIFY(!shown.isNull());
    QCOMPARE(shown, QPixmap(picture).toImage());
}

void tst_CNotice::otherTypesChangeNothing_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("7") << 7;
    QTest::newRow("first above") << 5;
    QTest::newRow("first below") << -1;
    QTest::newRow("largest") << std::numeric_limits<int>::max();
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
}

void tst_CNotice::otherTypesChangeNothing()
{
    QFETCH(int, type);
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("nothing"), type, 1000);
    QVERIFY(stage.notice.isHidden());
    QVERIFY(!stage.delay()->isActive());
    QCOMPARE(stage.opacity(), 0.1);

    stage.notice.setMesseage(QStringLiteral("first"), 3, 1000);
    stage.fadeIn();
    Stage::expire(stage.timer());
    stage.notice.setMesseage(QStringLiteral("second"), type, 50);
    QVERIFY(stage.notice.isVisible());
    QCOMPARE(stage.text()->text(), QStringLiteral("first"));
    QCOMPARE(stage.notice.accessibleName(), QStringLiteral("first"));
    QCOMPARE(stage.notice.styleSheet(), Red);
    QCOMPARE(stage.opacity(), 1.0);
    QVERIFY(!stage.delay()->isActive());
    QCOMPARE(stage.ticksToFadeOut(), 101); // the one above was the first of 102
}

void tst_CNotice::size()
{
    Stage stage;
    const QString longest = QStringLiteral("the longest line of three");
    stage.notice.setMesseage(QStringLiteral("short\n") + longest + QStringLiteral("\nmiddling"), 0, 1000);
    QCOMPARE(stage.notice.width(), stage.textWidth(longest) + 10 + IconSize + 30);
    QCOMPARE(stage.notice.pos(), QPoint((600 - stage.notice.width()) / 2, 60));
    QCOMPARE(stage.icon()->size(), QSize(IconSize, IconSize));

    stage.notice.setMesseage(QString(), 0, 1000); // at least one pixel is taken for the text
    QCOMPARE(stage.notice.width(), 1 + 10 + IconSize + 30);
}

void tst_CNotice::heightByLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("spacings");
    QTest::newRow("none") << "" << 2;
    QTest::newRow("one") << "one" << 2;
    QTest::newRow("three") << "one\ntwo\nthree" << 4;
    QTest::newRow("an empty one") << "one\n\nthree" << 4;
    QTest::newRow("last one empty") << "one\n" << 3;
    QTest::newRow("with carriage returns") << "one\r\ntwo" << 3;
}

void tst_CNotice::heightByLines()
{
    QFETCH(QString, text);
    QFETCH(int, spacings);
    Stage stage;
    stage.notice.setMesseage(text, 0, 1000);
    QCOMPARE(stage.notice.height(), spacings * QFontMetrics(stage.text()->font()).lineSpacing());
}

// The label has exactly the width of the longest line; a pixel less would wrap it.
void tst_CNotice::eachLineIsDrawnOnOneLine()
{
    Stage stage;
    for (const QString &line : {QStringLiteral("Devices is open"), QStringLiteral("No devices!!!"),
                                QStringLiteral("Device turned off"), QStringLiteral("W i W i W i")}) {
        stage.notice.setMesseage(line, 0, 1000);
        QCOMPARE(stage.text()->width(), stage.textWidth(line));
        QCOMPARE(stage.text()->heightForWidth(stage.text()->width()), stage.text()->heightForWidth(10000));
    }
}

void tst_CNotice::fadesInStaysAndFadesOut()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("text"), 0, 1000);
    QVERIFY(stage.notice.isVisible());
    QCOMPARE(stage.opacity(), 0.0);
    QCOMPARE(stage.animation()->state(), QAbstractAnimation::Running);
    QVERIFY(!stage.timer()->isActive());

    stage.animation()->setCurrentTime(300);
    QVERIFY(qAbs(stage.opacity() - 0.0625) < 1e-6); // 4 t^3 for t = 1/4
    stage.animation()->setCurrentTime(1200);
    QCOMPARE(stage.opacity(), 1.0);
    QVERIFY(stage.notice.isVisible());

    QVERIFY(!stage.timer()->isActive());
    Stage::expire(stage.delay());
    QVERIFY(stage.timer()->isActive());
    QCOMPARE(stage.ticksToFadeOut(), 102);
    QCOMPARE(stage.animation()->state(), QAbstractAnimation::Running);
    QCOMPARE(stage.opacity(), 1.0);
    stage.animation()->setCurrentTime(900);
    QVERIFY(qAbs(stage.opacity() - 0.0625) < 1e-6);
    QVERIFY(stage.notice.isVisible());
    stage.animation()->setCurrentTime(1200);
    QCOMPARE(stage.opacity(), 0.0);

    QVERIFY(stage.notice.isHidden());
    QVERIFY(!stage.timer()->isActive() && !stage.delay()->isActive());
    QCOMPARE(stage.animation()->state(), QAbstractAnimation::Stopped);
}

/// The toolkit's other timers may be early or late by a twentieth; it makes one of 10 ms precise by itself.
void tst_CNotice::timersArePrecise()
{
    const Stage stage;
    QCOMPARE(stage.delay()->interval(), 1200);
    QCOMPARE(stage.delay()->timerType(), Qt::PreciseTimer);
    QCOMPARE(stage.timer()->interval(), 10);
}

void tst_CNotice::ticks_data()
{
    QTest::addColumn<int>("delayms");
    QTest::addColumn<int>("ticks");
    QTest::newRow("1000 ms") << 1000 << 102;
    QTest::newRow("rounded down") << 1009 << 102;
    QTest::newRow("1500 ms") << 1500 << 152;
    QTest::newRow("less than a step") << 9 << 2;
    QTest::newRow("none") << 0 << 2;
    QTest::newRow("below none") << -1000 << 2;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << 2;
    QTest::newRow("largest: for as long as anyone looks") << std::numeric_limits<int>::max() << 100000;
}

void tst_CNotice::ticks()
{
    QFETCH(int, delayms);
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("text"), 0, delayms);
    stage.fadeIn();
    QTEST(stage.ticksToFadeOut(), "ticks");
}

void tst_CNotice::secondNoticeWhileShowing()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("first"), 0, 1000);
    stage.fadeIn();
    Stage::expire(stage.timer());
    stage.notice.setMesseage(QStringLiteral("the second"), 3, 500);
    QVERIFY(stage.notice.isVisible());
    QCOMPARE(stage.text()->text(), QStringLiteral("the second"));
    QCOMPARE(stage.notice.styleSheet(), Red);
    QCOMPARE(stage.opacity(), 0.0);
    QCOMPARE(stage.animation()->state(), QAbstractAnimation::Running);
    QVERIFY(!stage.timer()->isActive());
    stage.fadeIn();
    QCOMPARE(stage.opacity(), 1.0);
    QCOMPARE(stage.ticksToFadeOut(), 52);
}

void tst_CNotice::secondNoticeDuringFadeIn()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("first"), 0, 1000);
    stage.animation()->setCurrentTime(600);
    stage.notice.setMesseage(QStringLiteral("the second"), 4, 500);
    QCOMPARE(stage.text()->text(), QStringLiteral("the second"));
    QCOMPARE(stage.notice.styleSheet(), Grey);
    QCOMPARE(stage.opacity(), 0.0);
    QVERIFY(!stage.timer()->isActive());
    stage.fadeIn();
    QCOMPARE(stage.ticksToFadeOut(), 52);
}

// The only test with a running clock. What the order of the timers decides: the first notice's wait would end before
// the witness, the second one's ends after it.
void tst_CNotice::waitOfTheFirstNoticeIsDropped()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("first"), 0, 1000);
    QTimer witness;
    witness.setTimerType(Qt::PreciseTimer);
    witness.setSingleShot(true);
    QSignalSpy fired(&witness, &QTimer::timeout);
    witness.start(400);
    QVERIFY(fired.wait());

    bool isCounting = true;
    connect(&witness, &QTimer::timeout, &stage.notice, [&] { isCounting = stage.timer()->isActive(); });
    witness.start(1000);
    stage.notice.setMesseage(QStringLiteral("the second"), 0, 1000);
    QVERIFY(fired.wait());
    QVERIFY(!isCounting);
    QTRY_VERIFY(stage.timer()->isActive());
}

void tst_CNotice::secondNoticeDuringFadeOut()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("first"), 0, 0);
    stage.fadeIn();
    stage.ticksToFadeOut();
    stage.animation()->setCurrentTime(600);
    stage.notice.setMesseage(QStringLiteral("the second"), 1, 0);
    QCOMPARE(stage.opacity(), 0.0);
    stage.fadeIn(); // the end of this one must not hide it
    QCOMPARE(stage.opacity(), 1.0);
    QVERIFY(stage.notice.isVisible());
    QCOMPARE(stage.notice.styleSheet(), Amber);
}

void tst_CNotice::centredAfterResizing()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("text"), 0, 1000);
    const QSize size = stage.notice.size();
    stage.window.resize(900, 400);
    QCOMPARE(stage.notice.pos(), QPoint((900 - size.width()) / 2, 60));
    QCOMPARE(stage.notice.size(), size);
}

void tst_CNotice::centredByPainting()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("text"), 0, 1000);
    stage.fadeIn(); // what is invisible is not painted
    const QRect place = stage.notice.geometry();
    stage.notice.setFixedSize(20, 20);
    stage.notice.move(3, 4);
    stage.notice.grab();
    QCOMPARE(stage.notice.geometry(), place);
}

void tst_CNotice::textIsNeverMarkup_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("markup") << "/tmp/<b>bold</b>.can";
    QTest::newRow("ampersand") << "A & B && C";
    QTest::newRow("entity") << "&lt;&amp;";
}

void tst_CNotice::textIsNeverMarkup()
{
    QFETCH(QString, text);
    Stage stage;
    stage.notice.setMesseage(text, 0, 1000);
    QCOMPARE(stage.text()->text(), text);
    QCOMPARE(stage.text()->textFormat(), Qt::PlainText);
    QVERIFY(stage.text()->buddy() == nullptr); // with one, an ampersand would underline
    QCOMPARE(stage.notice.width(), stage.textWidth(text) + 10 + IconSize + 30);
}

void tst_CNotice::wideTextStaysInside_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("whole");
    QTest::newRow("words") << QStringLiteral("some words ").repeated(30) << true;
    QTest::newRow("path") << QStringLiteral("/folder").repeated(40) << true;
    QTest::newRow("one word") << QString(300, QLatin1Char('x')) << true;
    QTest::newRow("huge word") << QString(100000, QLatin1Char('W')) << false;
    QTest::newRow("many lines") << QStringLiteral("line\n").repeated(1000) << false;
}

void tst_CNotice::wideTextStaysInside()
{
    QFETCH(QString, text);
    QFETCH(bool, whole);
    Stage stage;
    stage.notice.setMesseage(text, 3, 1000);
    QVERIFY(stage.window.rect().contains(stage.notice.geometry()));
    QVERIFY(stage.text()->heightForWidth(stage.text()->width()) <= stage.notice.height());
    QCOMPARE(stage.text()->text().endsWith(QChar(0x2026)), !whole);
    if (whole) {
        QString shown = stage.text()->text();
        QCOMPARE(shown.remove(QLatin1Char('\n')).remove(QLatin1Char(' ')), text.remove(QLatin1Char(' ')));
    }
}

void tst_CNotice::refitsWhenTheParentShrinks()
{
    Stage stage;
    const QString text = QStringLiteral("some words ").repeated(4).trimmed();
    stage.notice.setMesseage(text, 0, 1000);
    QCOMPARE(stage.text()->text(), text);
    stage.window.resize(250, 400);
    QVERIFY(stage.window.rect().contains(stage.notice.geometry()));
    stage.window.resize(600, 400);
    QCOMPARE(stage.text()->text(), text);

    stage.window.resize(1, 1); // no room at all: nothing sensible to show, but no harm either
    stage.notice.setMesseage(QStringLiteral("again"), 0, 1000);
    QVERIFY(stage.notice.width() > 0);
}

void tst_CNotice::clicksReachWhatIsUnderIt()
{
    Stage stage;
    QPushButton button(&stage.window);
    button.setGeometry(stage.window.rect());
    button.show();
    stage.notice.setMesseage(QStringLiteral("text"), 0, 1000);
    stage.fadeIn();
    QSignalSpy clicked(&button, &QPushButton::clicked);
    QTest::mouseClick(stage.window.windowHandle(), Qt::LeftButton, {}, stage.notice.geometry().center());
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(stage.notice.focusPolicy(), Qt::NoFocus);
}

void tst_CNotice::endsWithItsParent()
{
    Stage stage;
    stage.notice.setMesseage(QStringLiteral("text"), 0, 1000);
    stage.window.close();
    QVERIFY(!stage.delay()->isActive() && !stage.timer()->isActive());
    QCOMPARE(stage.animation()->state(), QAbstractAnimation::Stopped);
    stage.window.show();
    QVERIFY(!stage.notice.isVisible());

    stage.notice.setMesseage(QStringLiteral("text"), 0, 1000);
    stage.fadeIn();
    QVERIFY(stage.notice.isVisible() && stage.timer()->isActive());
    stage.window.hide();
    QVERIFY(!stage.timer()->isActive());
    QVERIFY(stage.notice.isHidden());
}

void tst_CNotice::namesForScreenReaders()
{
    Stage stage;
    QStringList kinds;
    for (int type = 0; type < 5; ++type) {
        stage.notice.setMesseage(QStringLiteral("text %1").arg(type), type, 1000);
        QCOMPARE(stage.notice.accessibleName(), QStringLiteral("text %1").arg(type));
        kinds.append(stage.icon()->accessibleName());
    }
    QCOMPARE(kinds.removeDuplicates(), 0);
    QVERIFY(!kinds.contains(QString()));
}

X9_GUI_TEST(tst_CNotice)
#include "tst_CNotice.moc"
