#include "capture/CaptureWords.h"

#include "device/LINWords.h"
#include "resources/Resources.h"
#include "tests/support/TestProgram.h"

#include <QTextCodec>
#include <QTranslator>
#include <QtTest>

namespace {

QByteArray bytesOf(const QString &text, const char *encoding)
{
    return QTextCodec::codecForName(encoding)->fromUnicode(text);
}

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

} // namespace

/// The words of captures are those that the program shows in each of its languages.
class tst_CaptureWords : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void asTheProgramWritesThem_data();
    static void asTheProgramWritesThem();
    static void everySpellingIsRead_data();
    static void everySpellingIsRead();
    static void otherWordsAreNone();
    static void linWords();
};

void tst_CaptureWords::asTheProgramWritesThem_data()
{
    QTest::addColumn<bool>("isChinese");
    QTest::newRow("EN") << false;
    QTest::newRow("CN") << true;
}

void tst_CaptureWords::asTheProgramWritesThem()
{
    QFETCH(bool, isChinese);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/%1.qm").arg(QLatin1String(QTest::currentDataTag()))));
    QCoreApplication::installTranslator(&translator);
    const FrameLabels expected = FrameLabels::translated();
    const FrameLabels labels = captureLabels(isChinese);
    for (std::size_t i = 0; i < expected.titles.size(); ++i) {
        QCOMPARE(labels.titles[i], expected.titles[i]);
    }
    for (std::size_t i = 0; i < expected.words.size(); ++i) {
        QCOMPARE(labels.words[i], expected.words[i]);
    }
}

void tst_CaptureWords::everySpellingIsRead_data()
{
    asTheProgramWritesThem_data();
}

void tst_CaptureWords::everySpellingIsRead()
{
    QFETCH(bool, isChinese);
    const FrameLabels labels = captureLabels(isChinese);
    for (std::size_t i = 0; i < labels.words.size(); ++i) {
        for (const char *encoding : {"UTF-8", "GBK", "GB18030"}) {
            const QByteArray bytes = bytesOf(labels.words[i], encoding);
            QVERIFY2(captureWord(view(bytes)) == static_cast<FrameLabel>(i), bytes.constData());
        }
    }
}

void tst_CaptureWords::otherWordsAreNone()
{
    for (const char *word :
         {"", "revice", "Standard ", "CANFD  Speed", "Send", "a word that is longer than all of them"}) {
        QVERIFY2(!captureWord(word), word);
    }
    QVERIFY(captureWord("Extended") == FrameLabel::Extend);
}

void tst_CaptureWords::linWords()
{
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QCoreApplication::installTranslator(&translator);
    for (const LINWords::Word &word : {LINWords::Send, LINWords::Received, LINWords::WrongChecksum, LINWords::Wrong}) {
        const QString chinese = QCoreApplication::translate("LINFrameModel", word.english);
        QCOMPARE(QString::fromUtf8(word.chinese), chinese);
        QCOMPARE(QByteArray(word.gbk), bytesOf(chinese, "GBK"));
    }
    QStringList titles = {QStringLiteral("No.")};
    for (const char *title : {"System Time", "Direction"}) {
        titles.append(QCoreApplication::translate("LINFrameModel", title));
    }
    titles.append(QStringLiteral("ID[PID]"));
    titles.append(QCoreApplication::translate("LINFrameModel", "Length"));
    titles.append(QCoreApplication::translate("LINFrameModel", "Data") + QStringLiteral("(Hex)"));
    titles.append(QCoreApplication::translate("LINFrameModel", "Check") + QStringLiteral("(Hex)"));
    titles.append(QCoreApplication::translate("LINFrameModel", "State"));
    QCOMPARE(QString::fromUtf8(LINWords::ChineseTitles), titles.join(QLatin1Char(',')));
}

X9_CORE_TEST(tst_CaptureWords)
#include "tst_CaptureWords.moc"
