#include "capture/FrameDelegate.h"
#include "tests/support/TestProgram.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>
#include <QTableView>
#include <QTest>

namespace {

constexpr double InchesPerMeter = 1 / 0.0254;

QFont cellFont()
{
    return QFont(QStringLiteral("Microsoft Yahei"), 9);
}

/// Paints one text with a delegate, alone on white, and looks at the ink.
class Canvas
{
public:
    explicit Canvas(const QString &text, int width = 200, qreal ratio = 1, int height = 25)
        : m_width(width)
        , m_height(height)
        , m_ratio(ratio)
    {
        m_model.appendRow(new QStandardItem(text));
        m_model.item(0)->setFont(cellFont());
        m_model.item(0)->setSizeHint(QSize(0, 25));
        m_view.setModel(&m_model);
        m_view.ensurePolished();
    }

    QStyleOptionViewItem option() const
    {
        QStyleOptionViewItem option;
        option.initFrom(&m_view);
        option.widget = &m_view;
        option.font = cellFont();
        option.fontMetrics = QFontMetrics(cellFont());
        option.displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
        option.state |= QStyle::State_Enabled | QStyle::State_Active;
        option.rect = QRect(50, 40, m_width, m_height);
        return option;
    }

    QImage paint(const QAbstractItemDelegate &delegate, const QStyleOptionViewItem &option) const
    {
        QImage image(QSize(400, 100) * m_ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(m_ratio);
        image.setDotsPerMeterX(qRound(m_dpi * InchesPerMeter));
        image.setDotsPerMeterY(qRound(m_dpi * InchesPerMeter));
        image.fill(Qt::white);
        QPainter painter(&image);
        delegate.paint(&painter, option, index());
        return image;
    }
    QImage paint(const QAbstractItemDelegate &delegate) const { return paint(delegate, option()); }
    /// Paints with the resolution of the view's screen, as the view does.
    void useScreenResolution() { m_dpi = m_view.logicalDpiY(); }
    void setText(const QString &text) { m_model.item(0)->setText(text); }
    QModelIndex index() const { return m_model.index(0, 0); }

    /// The box around everything that is not white, in device pixels.
    static QRect ink(const QImage &image)
    {
        QRect box;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != 0xFFFFFFFFU) {
                    box |= QRect(x, y, 1, 1);
                }
            }
        }
        return box;
    }

private:
    QStandardItemModel m_model;
    QTableView m_view;
    int m_width;
    int m_height;
    qreal m_ratio;
    int m_dpi = 96;
};

} // namespace

class tst_FrameDelegate : public QObject
{
    Q_OBJECT

private slots:
    static void standsWhereAStandardItemStands_data();
    static void standsWhereAStandardItemStands();
    static void longTextIsCutWithAnEllipsis_data();
    static void longTextIsCutWithAnEllipsis();
    static void narrowCellsStayClean_data();
    static void narrowCellsStayClean();
    static void emptyTextPaintsNothing();
    static void colorFollowsTheState();
    static void manyOtherTexts();
    static void sizeHintShowsTheWholeText_data();
    static void sizeHintShowsTheWholeText();
};

void tst_FrameDelegate::standsWhereAStandardItemStands_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qreal>("ratio");
    QTest::addColumn<int>("height");
    const char *texts[] = {
        "0x1FFFFFFF",       "12:34:56.789", "01 A2 FF 00 ", "Send successfully", "\u53d1\u9001\u6210\u529f",
        "CANFD\u52a0\u901f"};
    for (const char *text : texts) {
        for (const qreal ratio : {1.0, 2.0}) {
            for (const int height : {24, 25}) { // without and with the line of the grid
                QTest::addRow("%s x%g height %d", text, ratio, height) << QString::fromUtf8(text) << ratio << height;
            }
        }
    }
}

void tst_FrameDelegate::standsWhereAStandardItemStands()
{
    QFETCH(QString, text);
    QFETCH(qreal, ratio);
    QFETCH(int, height);
    const Canvas canvas(text, 200, ratio, height);
    const QRect own = Canvas::ink(canvas.paint(FrameDelegate(cellFont())));
    const QRect standard = Canvas::ink(canvas.paint(QStyledItemDelegate()));
    QVERIFY(!standard.isEmpty());
    QCOMPARE(own.top(), standard.top());
    QCOMPARE(own.bottom(), standard.bottom());
    QVERIFY2(qAbs(own.left() - standard.left()) <= 1, qPrintable(QString::number(own.left())));
    // Pairs of letters are not kerned, which may move the end by a pixel.
    QVERIFY2(qAbs(own.right() - standard.right()) <= 2 * ratio, qPrintable(QString::number(own.right())));
}

void tst_FrameDelegate::longTextIsCutWithAnEllipsis_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("ascii") << QStringLiteral("01 A2 FF ").repeated(20);
    QTest::newRow("chinese") << QStringLiteral("\u53d1\u9001\u6210\u529f").repeated(10);
}

void tst_FrameDelegate::longTextIsCutWithAnEllipsis()
{
    QFETCH(QString, text);
    const Canvas canvas(text, 100);
    const QRect own = Canvas::ink(canvas.paint(FrameDelegate(cellFont())));
    const QRect standard = Canvas::ink(canvas.paint(QStyledItemDelegate()));
    QVERIFY(canvas.option().rect.contains(own));
    QVERIFY2(qAbs(own.right() - standard.right()) <= 9, qPrintable(QString::number(own.right())));
    // What stands at the end are the dots: ink at the foot of the letters only.
    const QImage image = canvas.paint(FrameDelegate(cellFont()));
    const QRect lastColumns = Canvas::ink(image.copy(own.right() - 2, 0, 3, image.height()));
    QVERIFY2(lastColumns.height() <= 3, qPrintable(QString::number(lastColumns.height())));
}

void tst_FrameDelegate::narrowCellsStayClean_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("text");
    for (const int width : {0, 1, 5, 6, 7, 10, 14, 20, 30}) {
        QTest::addRow("ascii %d", width) << width << QStringLiteral("WWWWWWWW");
        QTest::addRow("chinese %d", width) << width << QStringLiteral("\u53d1\u9001\u6210\u529f");
    }
}

void tst_FrameDelegate::narrowCellsStayClean()
{
    QFETCH(int, width);
    QFETCH(QString, text);
    const Canvas canvas(text, width);
    const QRect ink = Canvas::ink(canvas.paint(FrameDelegate(cellFont())));
    QVERIFY(ink.isEmpty() || canvas.option().rect.contains(ink));
}

void tst_FrameDelegate::emptyTextPaintsNothing()
{
    const Canvas canvas{QString()};
    QVERIFY(Canvas::ink(canvas.paint(FrameDelegate(cellFont()))).isEmpty());
}

void tst_FrameDelegate::colorFollowsTheState()
{
    const FrameDelegate delegate(cellFont());
    for (const QString &text : {QStringLiteral("HHHH"), QStringLiteral("\u53d1\u9001")}) {
        const Canvas canvas(text);
        QStyleOptionViewItem option = canvas.option();
        option.palette.setColor(QPalette::Active, QPalette::Text, Qt::red);
        option.palette.setColor(QPalette::Disabled, QPalette::Text, Qt::white);
        const QImage red = canvas.paint(delegate, option);
        const QRect ink = Canvas::ink(red);
        QVERIFY(!ink.isEmpty());
        for (int y = ink.top(); y <= ink.bottom(); ++y) {
            for (int x = ink.left(); x <= ink.right(); ++x) {
                QCOMPARE(qRed(red.pixel(x, y)), 255);
            }
        }
        option.state &= ~QStyle::State_Enabled;
        QVERIFY(Canvas::ink(canvas.paint(delegate, option)).isEmpty());
    }
}

void tst_FrameDelegate::manyOtherTexts()
{
    const FrameDelegate delegate(cellFont());
    Canvas canvas(QStringLiteral("\u53d1"));
    const QImage first = canvas.paint(delegate);
    for (int i = 0; i < 300; ++i) { // more than are remembered
        canvas.setText(QStringLiteral("\u53d1%1").arg(i));
        QVERIFY(canvas.paint(delegate) != first);
    }
    canvas.setText(QStringLiteral("\u53d1"));
    QVERIFY(canvas.paint(delegate) == first);
}

void tst_FrameDelegate::sizeHintShowsTheWholeText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("bytes") << QStringLiteral("01 A2 FF ").repeated(4).trimmed();
    QTest::newRow("identifier") << QStringLiteral("0x1FFFFFFF");
    QTest::newRow("time") << QStringLiteral("12:34:56.789");
    QTest::newRow("word") << QStringLiteral("Send successfully");
    QTest::newRow("kerned") << QStringLiteral("AVAVAVAVAVAVAVAV");
    QTest::newRow("chinese") << QStringLiteral("\u53d1\u9001\u6210\u529f");
    QTest::newRow("both") << QStringLiteral("CANFD\u52a0\u901f");
}

/// And no pixel more than is needed.
void tst_FrameDelegate::sizeHintShowsTheWholeText()
{
    QFETCH(QString, text);
    const FrameDelegate delegate(cellFont());
    const auto painted = [&](int width) {
        Canvas canvas(text, width);
        canvas.useScreenResolution();
        return canvas.paint(delegate);
    };
    const Canvas canvas(text);
    const QSize hint = delegate.sizeHint(canvas.option(), canvas.index());
    QCOMPARE(hint.height(), 25);
    QCOMPARE(painted(hint.width()), painted(340));
    QVERIFY(painted(hint.width() - 1) != painted(340));
}

X9_GUI_TEST(tst_FrameDelegate)
#include "tst_FrameDelegate.moc"
