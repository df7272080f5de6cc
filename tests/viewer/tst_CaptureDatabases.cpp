#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/core/CaptureDatabases.h"
#include "viewer/core/OpenCapture.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class tst_CaptureDatabases : public QObject
{
    Q_OBJECT

private slots:
    void init();
    static void channelTexts_data();
    static void channelTexts();
    static void choicesInJson();
    static void damagedChoices_data();
    static void damagedChoices();
    void loads();
    void aDamagedFileHarmsNoOther();
    void remembers();
    void aFileThatHasGone();
    void channelsAreForSome();
    void hiddenMessagesAreTold();
    void changesWhileLoading();
    void readsAgain();
    void isBounded();
    void endsWhileLoading();

private:
    QString file(const char *name, const QByteArray &content) const;
    std::unique_ptr<CaptureDatabases> databases();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<OpenCapture> m_capture;
};

void tst_CaptureDatabases::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_capture =
        std::make_unique<OpenCapture>(m_folder->filePath(QStringLiteral("a.csv")), syntheticCapture(100), false);
}

QString tst_CaptureDatabases::file(const char *name, const QByteArray &content) const
{
    QFile made(m_folder->filePath(QString::fromLatin1(name)));
    return made.open(QIODevice::WriteOnly) && made.write(content) == content.size() ? made.fileName() : QString();
}

std::unique_ptr<CaptureDatabases> tst_CaptureDatabases::databases()
{
    return std::make_unique<CaptureDatabases>(*m_capture);
}

void tst_CaptureDatabases::channelTexts_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("one") << "3"
                         << "3";
    QTest::newRow("several") << " 3,1 ,2, "
                             << "1, 2, 3";
    QTest::newRow("twice") << "2,2"
                           << "2";
    QTest::newRow("zero") << "0"
                          << "wrong";
    QTest::newRow("too large") << "65537"
                               << "wrong";
    QTest::newRow("a word") << "1, two"
                            << "wrong";
    QTest::newRow("negative") << "-1"
                              << "wrong";
}

void tst_CaptureDatabases::channelTexts()
{
    QFETCH(QString, typed);
    const std::optional<QVector<int>> channels = DatabaseChoices::channelsOf(typed);
    QTEST(channels ? DatabaseChoices::channelText(*channels) : QStringLiteral("wrong"), "expected");
}

void tst_CaptureDatabases::choicesInJson()
{
    const QString path = QDir::tempPath() + QStringLiteral("/x\"y.dbc");
    const QVector<DatabaseChoice> choices =
        DatabaseChoices::fromJson(DatabaseChoices::toJson(QStringLiteral("c"), {{path, {0, 4}}, {path, {}}}));
    QCOMPARE(choices.size(), 2);
    QCOMPARE(choices[0].path, path);
    QCOMPARE(choices[0].channels, (QVector<int>{0, 4}));
    QVERIFY(choices[1].channels.isEmpty());
}

void tst_CaptureDatabases::damagedChoices_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("{\"databases\":[{");
    QTest::newRow("zeros") << QByteArray(1000, '\0');
    QTest::newRow("a list") << QByteArray("[1,2]");
    QTest::newRow("other types") << QByteArray(R"({"databases":[1,"a",{"path":5},{"channels":[1]},null]})");
    QTest::newRow("relative") << QByteArray(R"({"databases":[{"path":"a.dbc","channels":[]}]})");
    QTest::newRow("channels") << QByteArray(R"({"databases":[{"path":"/a.dbc","channels":[-1]}]})");
    QTest::newRow("large channel") << QByteArray(R"({"databases":[{"path":"/a.dbc","channels":[1e9]}]})");
}

void tst_CaptureDatabases::damagedChoices()
{
    QFETCH(QByteArray, json);
    QVERIFY(DatabaseChoices::fromJson(json).isEmpty());
}

void tst_CaptureDatabases::loads()
{
    const auto tested = databases();
    QSignalSpy loaded(tested.get(), &CaptureDatabases::sig_loaded);
    tested->add({file("engine.dbc", syntheticDatabase())});
    QVERIFY(tested->isLoading());
    QVERIFY(tested->entries().front().isLoading());
    QVERIFY(loaded.wait());
    QCOMPARE(loaded.first().first().toInt(), -1);
    QVERIFY(!tested->isLoading());
    QVERIFY(m_capture->signalSource() != nullptr);
    QVERIFY(m_capture->signalSource()->signalNumber(QStringLiteral("Engine.Speed")) >= 0);
    QCOMPARE(tested->entries().front().database->findingCount, 0);
    tested->remove(0);
    QTRY_VERIFY(m_capture->signalSource() == nullptr);
    QVERIFY(CaptureDatabases::isDatabase(QStringLiteral("A.DBC")));
    QVERIFY(CaptureDatabases::isDatabase(QStringLiteral("a.ldf")));
    QVERIFY(!CaptureDatabases::isDatabase(QStringLiteral("dbc")));
}

void tst_CaptureDatabases::aDamagedFileHarmsNoOther()
{
    const auto tested = databases();
    QSignalSpy loaded(tested.get(), &CaptureDatabases::sig_loaded);
    tested->add({file("noise.dbc", QByteArray(5000, '\xfe')), file("engine.dbc", syntheticDatabase()),
                 file("empty.ldf", {}), m_folder->path(), m_folder->filePath(QStringLiteral("gone.dbc"))});
    QVERIFY(loaded.wait());
    QCOMPARE(loaded.first().first().toInt(), 4);
    for (const std::size_t index : {0U, 2U, 3U, 4U}) {
        QVERIFY(tested->entries()[index].database == nullptr);
        QVERIFY(!tested->entries()[index].error.isEmpty());
    }
    QVERIFY(tested->entries()[1].error.isEmpty());
    QVERIFY(m_capture->signalSource()->signalNumber(QStringLiteral("Engine.Speed")) >= 0);
    tested->remove(0); // what failed before is not told again
    QVERIFY(loaded.wait());
    QCOMPARE(loaded.last().first().toInt(), -1);
}

void tst_CaptureDatabases::remembers()
{
    const QString folder = m_folder->filePath(QStringLiteral("kept/here"));
    const QString engine = file("engine.dbc", syntheticDatabase());
    {
        const auto tested = databases();
        tested->remember(folder);
        QVERIFY(tested->entries().empty());
        tested->add({engine});
        tested->setChannels(0, {1});
        QTRY_VERIFY(!tested->isLoading());
    }
    m_capture->setSignalSource(nullptr);
    {
        const auto again = databases();
        again->remember(folder);
        QCOMPARE(again->entries().size(), std::size_t(1));
        QCOMPARE(again->entries().front().choice.path, engine);
        QCOMPARE(again->entries().front().choice.channels, QVector<int>{1});
        QTRY_VERIFY(m_capture->signalSource() != nullptr);
        again->remove(0);
        QVERIFY(QDir(folder).isEmpty());
    }
    OpenCapture other(m_folder->filePath(QStringLiteral("b.csv")), syntheticCapture(100), false);
    CaptureDatabases ofOther(other);
    ofOther.remember(folder);
    QVERIFY(ofOther.entries().empty());
    // A folder that cannot be made.
    QSignalSpy notKept(&ofOther, &CaptureDatabases::sig_notKept);
    ofOther.remember(engine + QStringLiteral("/below"));
    ofOther.add({engine});
    QCOMPARE(notKept.size(), 1);
}

void tst_CaptureDatabases::aFileThatHasGone()
{
    const QString folder = m_folder->filePath(QStringLiteral("kept"));
    const QString engine = file("engine.dbc", syntheticDatabase());
    DatabaseChoices::save(folder, m_capture->path(), {{engine, {}}});
    QVERIFY(QFile::remove(engine));
    const auto tested = databases();
    QSignalSpy loaded(tested.get(), &CaptureDatabases::sig_loaded);
    tested->remember(folder);
    QVERIFY(loaded.wait());
    QCOMPARE(loaded.first().first().toInt(), 0);
    QVERIFY(tested->entries().front().error.contains(engine));
    QCOMPARE(DatabaseChoices::load(folder, m_capture->path()).size(), 1); // it may come back
    file("engine.dbc", syntheticDatabase());
    tested->reload();
    QVERIFY(loaded.wait());
    QVERIFY(m_capture->signalSource() != nullptr);
}

void tst_CaptureDatabases::channelsAreForSome()
{
    const auto tested = databases();
    tested->add({file("engine.dbc", syntheticDatabase())});
    QTRY_VERIFY(!tested->isLoading());
    const std::shared_ptr<const Database> read = tested->entries().front().database;
    tested->setChannels(0, {2});
    QTRY_VERIFY(!tested->isLoading());
    QCOMPARE(tested->entries().front().database, read); // not read again
    QCOMPARE(m_capture->signalSource()->messages().first().channels, QVector<int>{2});
}

void tst_CaptureDatabases::hiddenMessagesAreTold()
{
    const auto tested = databases();
    tested->add({file("one.dbc", syntheticDatabase()),
                 file("two.dbc", "VERSION \"\"\nBU_: N\nBO_ 256 Motor: 8 N\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" N\n")});
    QTRY_VERIFY(!tested->isLoading());
    QVERIFY(tested->entries()[0].hidden.isEmpty());
    QCOMPARE(tested->entries()[1].hidden.size(), 1);
    const QString told = tested->entries()[1].hidden.first();
    QVERIFY(told.contains(QLatin1String("Motor")) && told.contains(QLatin1String("100")) &&
            told.contains(QLatin1String("Engine")) && told.contains(QLatin1String("one")));
    tested->setChannels(1, {0});
    QTRY_VERIFY(!tested->isLoading());
    QVERIFY(tested->entries()[1].hidden.isEmpty());
}

void tst_CaptureDatabases::changesWhileLoading()
{
    const auto tested = databases();
    QSignalSpy loaded(tested.get(), &CaptureDatabases::sig_loaded);
    const QString engine = file("engine.dbc", syntheticDatabase());
    const QString gone = m_folder->filePath(QStringLiteral("gone.dbc"));
    for (int i = 0; i < 20; ++i) {
        tested->add({gone});
        tested->add({engine});
        tested->remove(0);
        tested->reload();
        tested->setChannels(0, {i});
        tested->remove(0);
    }
    tested->add({engine});
    QVERIFY(loaded.wait());
    QCOMPARE(loaded.size(), 1);
    QCOMPARE(tested->entries().size(), std::size_t(1));
    QVERIFY(m_capture->signalSource()->signalNumber(QStringLiteral("Engine.Speed")) >= 0);
}

void tst_CaptureDatabases::readsAgain()
{
    const auto tested = databases();
    QSignalSpy loaded(tested.get(), &CaptureDatabases::sig_loaded);
    const QString engine = file("engine.dbc", syntheticDatabase());
    tested->add({engine});
    QVERIFY(loaded.wait());
    file("engine.dbc", "VERSION \"\"\nBU_: N\nBO_ 1 Other: 8 N\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" N\nBO_ x\n");
    tested->add({engine});
    QVERIFY(loaded.wait());
    QCOMPARE(tested->entries().size(), std::size_t(1));
    QVERIFY(m_capture->signalSource()->signalNumber(QStringLiteral("Other.S")) >= 0);
    QCOMPARE(m_capture->signalSource()->signalNumber(QStringLiteral("Engine.Speed")), -1);
    QVERIFY(tested->entries().front().database->findingCount > 0);
}

void tst_CaptureDatabases::isBounded()
{
    const auto tested = databases();
    QStringList many;
    for (int i = 0; i < 3 * DatabaseChoices::MaxCount; ++i) {
        many.append(m_folder->filePath(QString::number(i)));
    }
    tested->add(many);
    QCOMPARE(tested->entries().size(), std::size_t(DatabaseChoices::MaxCount));
    QTRY_VERIFY(!tested->isLoading());
}

void tst_CaptureDatabases::endsWhileLoading()
{
    const QString engine = file("engine.dbc", syntheticDatabase());
    for (int i = 0; i < 20; ++i) {
        databases()->add({engine});
    }
    QVERIFY(m_capture->signalSource() == nullptr);
}

X9_CORE_TEST(tst_CaptureDatabases)
#include "tst_CaptureDatabases.moc"
