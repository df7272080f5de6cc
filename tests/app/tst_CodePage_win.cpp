// Text files in the code page of this Windows, which tools/windows/test.sh names in X9_CODE_PAGE.

#include "capture/CaptureReader.h"
#include "capture/CaptureWriter.h"
#include "lin/LINCapture.h"
#include "lin/LINFrameModel.h"
#include "resources/Resources.h"
#include "tests/capture/CaptureTestData.h"
#include "tests/support/TestProgram.h"

#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <windows.h>

using namespace CaptureTestData;

namespace {
constexpr UINT SimplifiedChinese = 936;
constexpr int Rows = 5000; ///< more than any buffer on the way

/// As the files have it: in the local code page where that has Chinese, otherwise in UTF-8.
QByteArray bytesOf(const char *gbk, const QString &text)
{
    return GetACP() == SimplifiedChinese ? QByteArray::fromHex(gbk) : text.toUtf8();
}
} // namespace

class tst_CodePage : public QObject
{
    Q_OBJECT

private slots:
    void isTheOneThatIsMeant();
    void captures_data();
    void captures();
    void captureOfLIN();

private:
    QTemporaryDir m_folder;
};

/// A pass on a Chinese Windows that is none would say nothing.
void tst_CodePage::isTheOneThatIsMeant()
{
    const QByteArray meant = qgetenv("X9_CODE_PAGE");
    QVERIFY(!meant.isEmpty());
    QCOMPARE(QByteArray::number(GetACP()), meant);
}

void tst_CodePage::captures_data()
{
    QTest::addColumn<QString>("ending");
    QTest::newRow("csv") << QStringLiteral("csv");
    QTest::newRow("txt") << QStringLiteral("txt");
}

void tst_CodePage::captures()
{
    QFETCH(QString, ending);
    FrameStore store;
    for (int row = 0; row < Rows; ++row) {
        store.append(sentFrame(0x123));
    }
    const QString path = m_folder.filePath(QStringLiteral("总线 捕获 äß.") + ending);
    QVERIFY(saveCapture(path, store, 0, store.size(), chineseLabels()));

    const QByteArray bytes = fileContent(path);
    const QString sent = QStringLiteral("发送成功");
    QCOMPARE(bytes.count(bytesOf("B7A2CBCDB3C9B9A6", sent)), Rows);
    QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));
    QVERIFY(bytes.count("\r\n") >= Rows);

    const auto content = readCapture(path);
    QVERIFY(content);
    QCOMPARE(content->droppedLines, 0);
    QCOMPARE(content->frames.size(), qint64(Rows));
    QCOMPARE(content->frames.at(Rows - 1).idWord, 0x123U);
}

void tst_CodePage::captureOfLIN()
{
    initResources();
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    LINFrameModel model;
    CTableViewLIN::DataObject frame;
    frame.ID = 0x12;
    for (int row = 0; row < Rows; ++row) {
        model.append(frame, 0);
    }
    const QString path = m_folder.filePath(QStringLiteral("总线 äß.csv"));
    const bool isSaved = saveLINCapture(path, model);
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(isSaved);

    const QByteArray bytes = fileContent(path);
    QCOMPARE(bytes.count(bytesOf("CFB5CDB3CAB1BCE4", QStringLiteral("系统时间"))), 1);
    QCOMPARE(bytes.count("\r\n"), Rows + 1);
    QCOMPARE(bytes.count('\n'), Rows + 1);
    LINCaptureParser parser;
    parser.feed(bytes.constData(), bytes.size());
    const auto frames = parser.finish();
    QVERIFY(frames);
    QCOMPARE(frames->size(), Rows);
}

X9_CORE_TEST(tst_CodePage)
#include "tst_CodePage_win.moc"
