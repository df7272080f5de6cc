#include "app/Application.h"
#include "tests/app/CutTexts.h"
#include "tests/app/ShownTexts.h"
#include "tests/support/TestProgram.h"
#include "tests/support/WindowCatalog.h"

#include <QApplication>
#include <QMainWindow>
#include <QRegularExpression>
#include <QtTest>

namespace {
constexpr QSize MainWindowSize(1000, 650);

/// What the Chinese program writes in Latin letters, and why. Taken away in this order.
struct Untranslated
{
    const char *pattern;
    const char *reason;
};
constexpr Untranslated UntranslatedTexts[] = {
    {R"(X9CAN( V[0-9.]+)?)", "the program's name and version"},
    {R"(\S+@\S+)", "mail addresses"},
    {R"(\bX9FC-[-0-9]+|\bSN\b)", "serial numbers"},
    {R"(\b(CAN|CAN ?FD|LIN|P?ID[0-9]*|BTR[0-9/]+)\b)", "names of the standards"},
    {R"(\b([0-9]+[kM] bps|p/s|ms)\b)", "units"},
    {R"(\(Hex\)|^No\.$|\bV[12]\b)", "headings and cells of the LIN tables that the saved files hold as well"},
    {R"(\b(0x([0-9A-F]+)?|[0-9A-F]+)\b)", "hexadecimal numbers"},
    {R"(\(&?[A-Z]\))", "the letter to press with Alt"},
    {R"(\b(Ctrl|Shift|Alt)\+([A-Z]\b)?|\bDel\b)", "keys as they are written on the keyboard"},
    {R"(\bCSV\b|\(\*\.[a-z]+\))", "types and name patterns of files"},
    {R"(^English$)", "who looks for it reads it"},
};

QString withoutUntranslated(QString text)
{
    for (const Untranslated &kept : UntranslatedTexts) {
        text.remove(QRegularExpression(QLatin1String(kept.pattern)));
    }
    return text;
}

/// Letters of the other language than the one that is on.
QString foreignLetters(const QString &text, bool isChinese)
{
    static const QRegularExpression latin(QStringLiteral("[A-Za-z]+"));
    static const QRegularExpression chinese(QStringLiteral("[\\x{2E80}-\\x{9FFF}\\x{FF00}-\\x{FFEF}]+"));
    // This label has its full-width colon in both languages.
    const QString english = text == QStringLiteral("Product SN\uFF1A") ? QString() : text;
    return isChinese ? latin.match(withoutUntranslated(text)).captured() : chinese.match(english).captured();
}
} // namespace

class tst_Texts : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase();
    static void foreignLettersAreFound();
    static void window_data();
    static void window();
};

void tst_Texts::initTestCase()
{
    applyApplicationLook(*qApp);
}

void tst_Texts::foreignLettersAreFound()
{
    QCOMPARE(foreignLetters(QStringLiteral("CAN ID 0x7FF, 500k bps (&D)"), true), QString());
    QCOMPARE(foreignLetters(QStringLiteral("设备 Channel"), true), QStringLiteral("Channel"));
    QCOMPARE(foreignLetters(QStringLiteral("CANopen"), true), QStringLiteral("CANopen"));
    QCOMPARE(foreignLetters(QStringLiteral("Device 设备"), false), QStringLiteral("设备"));
    QCOMPARE(foreignLetters(QStringLiteral("Name："), false), QStringLiteral("："));
}

void tst_Texts::window_data()
{
    QTest::addColumn<bool>("isChinese");
    QTest::addColumn<int>("index");
    const std::vector<CatalogWindow> catalog = windowCatalog();
    for (const bool isChinese : {true, false}) {
        for (int index = 0; index < static_cast<int>(catalog.size()); ++index) {
            const QString &name = catalog.at(static_cast<std::size_t>(index)).name;
            QTest::addRow("%s %s", isChinese ? "zh" : "en", qPrintable(name)) << isChinese << index;
        }
    }
}

/// Every text is in the language chosen and fits its place.
void tst_Texts::window()
{
    QFETCH(bool, isChinese);
    QFETCH(int, index);
    Translators translators;
    QVERIFY(installLanguage(translators, isChinese ? 0 : 1));

    QStringList problems;
    int visits = 0;
    windowCatalog().at(static_cast<std::size_t>(index)).show([&](QWidget &shown) {
        ++visits;
        for (const ShownText &text : shownTexts(shown)) {
            const QString foreign = foreignLetters(text.text, isChinese);
            if (!foreign.isEmpty()) {
                problems.append(QStringLiteral("%1: '%2' holds '%3'").arg(text.place, text.text, foreign));
            }
        }
        problems.append(cutTexts(shown));
        if (qobject_cast<QMainWindow *>(&shown) != nullptr && shown.size() != MainWindowSize) {
            problems.append(QStringLiteral("the window had to grow to %1 pixels").arg(shown.width()));
        }
    });
    QCOMPARE(visits, 1);
    problems.removeDuplicates();
    for (const QString &problem : qAsConst(problems)) {
        qWarning().noquote() << problem; // one by one, as the message of a failure is cut
    }
    QVERIFY2(problems.isEmpty(), "see the warnings");
}

namespace {

int runInApplication(int argc, char *argv[])
{
    setApplicationAttributes();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    return runPlainTest<tst_Texts>(argc, argv);
}

} // namespace

X9_TEST_RUN_BY(tst_Texts, runInApplication)

#include "tst_Texts.moc"
