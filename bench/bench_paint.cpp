// A jump to a random place of the capture and painting the window of 1000 x 650, against a plain table view with a
// standard item model that holds the same cells.

#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"

#include "capture/CTableViewCAN.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QHeaderView>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QTranslator>

#include <cstdio>

namespace {

constexpr int Rows = 20000; ///< more would only cost the plain view memory
constexpr int Jumps = 200;
constexpr QSize WindowSize(1000, 650);

QVector<FrameRecord> frames()
{
    QVector<FrameRecord> result;
    QRandomGenerator random(1);
    for (int i = 0; i < Rows; ++i) {
        FrameRecord frame;
        frame.systemTime = QStringLiteral("12:34:%1.%2").arg(i / 1000 % 60, 2, 10, QLatin1Char('0')).arg(i % 1000);
        frame.direction = i % 5 == 0 ? FrameRecord::SendSuccess : FrameRecord::Received;
        frame.timeStamp = static_cast<quint32>(i) * 137;
        frame.id = random.generate() & 0x7FFU;
        frame.extended = i % 3 == 0;
        for (int byte = 0; byte < 8; ++byte) {
            frame.data.append(static_cast<char>(random.generate()));
        }
        result.append(frame);
    }
    return result;
}

/// A plain view with every cell of the table as an item.
class PlainTable
{
public:
    PlainTable(CTableViewCAN &table, QTableView &frameView, QScrollBar &bar)
    {
        table.resize(WindowSize);
        const QAbstractItemModel &shown = *frameView.model();
        for (int first = 0; first <= bar.maximum(); first += shown.rowCount()) {
            bar.setValue(first);
            for (int row = 0; row < shown.rowCount(); ++row) {
                QList<QStandardItem *> items;
                for (int column = 0; column < shown.columnCount(); ++column) {
                    items.append(new QStandardItem(shown.index(row, column).data().toString()));
                }
                m_model.appendRow(items);
            }
        }
        m_view.setModel(&m_model);
        m_view.setFont(QFont(QStringLiteral("Microsoft Yahei"), 9));
        m_view.setAlternatingRowColors(true);
        m_view.verticalHeader()->hide();
        m_view.verticalHeader()->setDefaultSectionSize(25);
        for (int column = 0; column < shown.columnCount(); ++column) {
            m_model.setHeaderData(column, Qt::Horizontal, shown.headerData(column, Qt::Horizontal));
            m_view.setColumnWidth(column, frameView.columnWidth(column));
        }
        m_view.resize(WindowSize);
        m_view.show();
    }

    QTableView &view() { return m_view; }

private:
    QStandardItemModel m_model{0, 10};
    QTableView m_view;
};

/// Milliseconds of each jump with the painting behind it.
std::vector<double> jump(QWidget &window, QScrollBar &bar, QImage &image)
{
    std::vector<double> times;
    QRandomGenerator random(2);
    for (int i = 0; i < Jumps; ++i) {
        const int place = random.bounded(bar.maximum());
        const double begin = cpuSeconds();
        bar.setValue(place);
        window.render(&image);
        times.push_back((cpuSeconds() - begin) * 1e3);
        QCoreApplication::processEvents();
    }
    return times;
}

/// Puts Chinese characters where the table asks for a word.
class ChineseTranslator : public QTranslator
{
public:
    QString translate(const char *, const char *text, const char *, int) const override
    {
        return QString(QStringLiteral("\u6807\u51c6\u6570\u636e\u5e27\u53d1\u9001\u6210\u529f"))
            .left(1 + static_cast<int>(qstrlen(text)) % 6);
    }
    bool isEmpty() const override { return false; }
};

void benchPainting(BenchReport &report, const QString &what, const QString &imagePath)
{
    CTableViewCAN table;
    auto *frameView = table.findChild<QTableView *>(QStringLiteral("frameView"));
    auto *bar = table.findChild<QScrollBar *>(QStringLiteral("frameScrollBar"));
    table.resize(WindowSize);
    table.show();
    table.append(frames());
    table.refresh();
    PlainTable plain(table, *frameView, *bar);

    QImage ownImage(WindowSize, QImage::Format_ARGB32_Premultiplied);
    QImage plainImage = ownImage;
    std::vector<double> own;
    std::vector<double> standard;
    for (int round = 0; round < 3; ++round) { // in turns, so that both see the same machine
        for (const double time : jump(table, *bar, ownImage)) {
            own.push_back(time);
        }
        for (const double time : jump(plain.view(), *plain.view().verticalScrollBar(), plainImage)) {
            standard.push_back(time);
        }
    }
    if (!imagePath.isEmpty()) {
        ownImage.save(imagePath + QStringLiteral("_own.png"));
        plainImage.save(imagePath + QStringLiteral("_plain.png"));
    }
    report.add(QStringLiteral("jump and paint, frame table") + what, median(own), QStringLiteral("ms CPU"));
    report.add(QStringLiteral("jump and paint, plain view") + what, median(standard), QStringLiteral("ms CPU"));
    report.add(QStringLiteral("  frame table against plain view"), median(own) / median(standard),
               QStringLiteral("ratio"), BenchReport::Target::AtMost, 0.5);
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("json"), QStringLiteral("Write the figures to FILE."), QStringLiteral("FILE")},
                       {QStringLiteral("image"), QStringLiteral("Save both windows as FILE_own.png, FILE_plain.png."),
                        QStringLiteral("FILE")}});
    parser.process(application);

    BenchReport report;
    benchPainting(report, QString(), parser.value(QStringLiteral("image")));
    ChineseTranslator chinese;
    QCoreApplication::installTranslator(&chinese);
    benchPainting(report, QStringLiteral(", Chinese words"), QString());
    report.print();
    return report.writeJson(parser.value(QStringLiteral("json"))) ? 0 : 1;
}
