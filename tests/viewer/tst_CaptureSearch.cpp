#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/CaptureSearch.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

constexpr qint64 Frames = 100000; // with an error frame at rows 19, 5019, ... 95019

Filter filterOf(const char *text)
{
    FilterError error{};
    return Filter::parse(QString::fromLatin1(text), {}, error).value_or(Filter());
}

} // namespace

class tst_CaptureSearch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void findsAndCounts();
    void neverGoesRoundSilently();
    void findsAmongWhatIsShown();
    void tellsWhenThereIsNone();
    void anotherRowBeginsAnew();

private:
    /// The row that is found next, and goes there; -1: what was told instead is in m_told.
    qint64 next(bool isBackward);

    std::unique_ptr<OpenCapture> m_capture;
    std::unique_ptr<CaptureSearch> m_search;
    QString m_told;
};

void tst_CaptureSearch::init()
{
    m_capture = std::make_unique<OpenCapture>(QStringLiteral("made-up"), syntheticCapture(Frames), false);
    m_search = std::make_unique<CaptureSearch>(*m_capture);
    QTRY_COMPARE(m_capture->rowCount(), Frames);
    QTRY_VERIFY(!m_capture->loader().progress().isRunning());
}

void tst_CaptureSearch::cleanup()
{
    m_search.reset();
    m_capture.reset();
}

qint64 tst_CaptureSearch::next(bool isBackward)
{
    QSignalSpy found(m_search.get(), &CaptureSearch::sig_found);
    QSignalSpy told(m_search.get(), &CaptureSearch::sig_told);
    m_search->next(isBackward);
    if (!told.wait()) {
        return -2;
    }
    m_told = told.at(0).at(0).toString();
    if (found.isEmpty()) {
        return -1;
    }
    m_search->setRow(found.at(0).at(0).toLongLong());
    return found.at(0).at(0).toLongLong();
}

void tst_CaptureSearch::findsAndCounts()
{
    QCOMPARE(m_search->countText(), QString());
    m_search->setFilter(filterOf("error"));
    QTRY_COMPARE(m_search->countText(), QStringLiteral("20"));
    QCOMPARE(next(false), qint64(19));
    QCOMPARE(m_told, QString());
    QTRY_COMPARE(m_search->countText(), QStringLiteral("1 of 20"));
    QCOMPARE(next(false), qint64(5019));
    QCOMPARE(m_search->countText(), QStringLiteral("2 of 20"));
    QCOMPARE(next(true), qint64(19));
    m_search->setRow(20);
    QCOMPARE(m_search->countText(), QStringLiteral("20"));
    m_search->setFilter({});
    QCOMPARE(m_search->countText(), QString());
    QVERIFY(m_search->isEmpty());
}

void tst_CaptureSearch::neverGoesRoundSilently()
{
    m_search->setFilter(filterOf("error"));
    m_search->setRow(95000);
    QCOMPARE(next(false), qint64(95019));
    QCOMPARE(next(false), qint64(-1));
    QVERIFY(m_told.contains(QLatin1String("end")));
    QCOMPARE(next(false), qint64(19));
    QCOMPARE(m_told, QStringLiteral("Went on from the beginning."));
    QCOMPARE(next(true), qint64(-1));
    QVERIFY(m_told.contains(QLatin1String("beginning")));
    QCOMPARE(next(false), qint64(5019)); // the other way is not from the end
    QCOMPARE(next(true), qint64(19));
    QCOMPARE(next(true), qint64(-1));
    QCOMPARE(next(true), qint64(95019));
    QCOMPARE(m_told, QStringLiteral("Went on from the end."));
}

void tst_CaptureSearch::findsAmongWhatIsShown()
{
    m_search->setFilter(filterOf("error"));
    QTRY_COMPARE(m_search->countText(), QStringLiteral("20"));
    m_capture->setFilter(filterOf("number > 50000"));
    QTRY_COMPARE(m_search->countText(), QStringLiteral("10"));
    QCOMPARE(next(false), qint64(50019));
    QTRY_COMPARE(m_search->countText(), QStringLiteral("1 of 10"));
    QCOMPARE(next(true), qint64(-1));
    m_capture->setFilter({});
    QCOMPARE(next(true), qint64(45019));
}

void tst_CaptureSearch::tellsWhenThereIsNone()
{
    m_search->setFilter(filterOf("id == 0x7FF"));
    QCOMPARE(next(false), qint64(-1));
    QCOMPARE(m_told, QStringLiteral("Nothing was found."));
    m_search->setRow(500);
    QCOMPARE(next(true), qint64(-1));
    QCOMPARE(next(true), qint64(-1));
    QCOMPARE(m_told, QStringLiteral("Nothing was found."));
    QTRY_COMPARE(m_search->countText(), QStringLiteral("0"));
}

void tst_CaptureSearch::anotherRowBeginsAnew()
{
    m_search->setFilter(filterOf("error"));
    m_search->setRow(95019);
    QCOMPARE(next(false), qint64(-1));
    m_search->setRow(5000);
    QCOMPARE(next(false), qint64(5019));
    QCOMPARE(m_told, QString());
}

X9_CORE_TEST(tst_CaptureSearch)
#include "tst_CaptureSearch.moc"
