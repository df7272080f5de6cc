#include "resources/Resources.h"
#include "tests/support/TestProgram.h"
#include "widgets/CMessageBox.h"
#include "widgets/CNotice.h"

#include <QLabel>
#include <QtTest>

// The widgets on a screen of 200 %.
class tst_SharpPictures : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        qputenv("QT_SCALE_FACTOR", "2");
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    }

private slots:
    static void initTestCase();
    static void messageBox();
    static void notice();
};

void tst_SharpPictures::initTestCase()
{
    initResources();
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
}

void tst_SharpPictures::messageBox()
{
    const CMessageBox box(CMessageBox::Critical, QString(), QStringLiteral("text"), CMessageBox::Ok);
    const auto *label = box.findChild<QLabel *>(QStringLiteral("iconLabel"));
    const QPixmap picture = label->pixmap(Qt::ReturnByValue);
    QCOMPARE(picture.devicePixelRatio(), 2.0);
    QCOMPARE(picture.toImage().size(), QSize(64, 64));
    const QImage drawn(QStringLiteral(":/Images/MsgError@2x.png"));
    QVERIFY(!drawn.isNull());
    const QImage shown = picture.toImage();
    for (int x = 10; x < 54; ++x) { // within the disc, where nothing is translucent
        QCOMPARE(shown.pixel(x, 32), drawn.pixel(x, 32));
    }
    QCOMPARE(label->sizeHint(), QSize(32, 32));
}

void tst_SharpPictures::notice()
{
    QWidget window;
    window.resize(400, 300);
    CNotice notice(&window);
    notice.setMesseage(QStringLiteral("text"), 1, 1000);
    const auto *label = notice.findChild<QLabel *>(QStringLiteral("m_pIcon"));
    QCOMPARE(label->pixmap(Qt::ReturnByValue).toImage().size(), QSize(64, 64));
    window.show();
    QCOMPARE(label->size(), QSize(18, 18));
}

X9_GUI_TEST(tst_SharpPictures)
#include "tst_SharpPictures.moc"
