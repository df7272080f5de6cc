#include "exchange/FrameSelection.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

/// Frame i: at 100 + 10 i ns, identifier i, channel i modulo 3. Which of ten pass.
QString passing(const FrameSelection &selection)
{
    FrameSelector selector(selection);
    QString passed;
    for (int i = 0; i < 10; ++i) {
        BusFrame frame;
        frame.time = 100 + 10 * i;
        frame.identifier = static_cast<quint32>(i);
        frame.channel = static_cast<quint16>(i % 3);
        passed += selector.takes(frame) ? QString::number(i) : QString();
    }
    return passed + (selector.isOver() ? QStringLiteral(".") : QString());
}

} // namespace

class tst_FrameSelection : public QObject
{
    Q_OBJECT

private slots:
    static void selections();
};

void tst_FrameSelection::selections()
{
    FrameSelection selection;
    QCOMPARE(passing(selection), QStringLiteral("0123456789"));
    selection.from = 20;
    selection.to = 60;
    QCOMPARE(passing(selection), QStringLiteral("2345"));
    selection.isSinceFirst = false;
    selection.from = 130;
    selection.to = 1000;
    QCOMPARE(passing(selection), QStringLiteral("3456789"));
    selection = FrameSelection();
    selection.skip = 2;
    selection.count = 3;
    QCOMPARE(passing(selection), QStringLiteral("234."));
    selection = FrameSelection();
    selection.identifiers = {{1, 2}, {5, 5}, {8, 100}};
    QCOMPARE(passing(selection), QStringLiteral("12589"));
    selection.channels = {2};
    QCOMPARE(passing(selection), QStringLiteral("258"));
    selection.skip = 1;
    QCOMPARE(passing(selection), QStringLiteral("58"));
}

X9_PLAIN_TEST(tst_FrameSelection)
#include "tst_FrameSelection.moc"
