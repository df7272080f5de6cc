#include "tests/exchange/ExchangeTestData.h"
#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/SaveDialog.h"
#include "widgets/CMessageBox.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace ExchangeTestData;

namespace {

constexpr qint64 Frames = 20000;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_SaveDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void saysBeforeAndAfterWhatGetsLost();
    void savesWhatTheFilterPasses();
    void savesTheSelection();
    static void savesATime_data();
    void savesATime();
    static void wrongInputIsTold_data();
    void wrongInputIsTold();
    void neverOverAnOpenFile();
    void asksBeforeItReplaces();
    void kindAndEndingGoTogether();
    void stops();

private:
    template<typename Widget>
    Widget &in(const char *name)
    {
        return *m_dialog->findChild<Widget *>(QLatin1String(name));
    }
    void open(const SaveDialog::Context &context = {});
    void choose(const char *kind);
    void pick(const char *frames);
    void save(const QString &path);
    QString summary() { return in<QLabel>("summary").text(); }
    std::vector<BusFrame> saved() { return readBytes(format("candump"), bytesOf(path("a.log"))).frames; }
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<OpenCapture> m_capture;
    std::unique_ptr<SaveDialog> m_dialog;
};

void tst_SaveDialog::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_capture = std::make_unique<OpenCapture>(path("open.csv"), syntheticCapture(Frames), false);
    QTRY_COMPARE(m_capture->rowCount(), Frames);
}

void tst_SaveDialog::cleanup()
{
    m_dialog.reset();
    m_capture.reset();
}

void tst_SaveDialog::open(const SaveDialog::Context &context)
{
    m_dialog = std::make_unique<SaveDialog>(*m_capture, context);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    choose("candump");
}

void tst_SaveDialog::choose(const char *kind)
{
    auto &kinds = in<QComboBox>("kind");
    kinds.setCurrentIndex(kinds.findData(QLatin1String(kind)));
    emit kinds.activated(kinds.currentIndex());
}

/// By its left end: the button is wider than its text.
void tst_SaveDialog::pick(const char *frames)
{
    auto &button = in<QRadioButton>(frames);
    QTest::mouseClick(&button, Qt::LeftButton, {}, {8, button.height() / 2});
    QVERIFY(button.isChecked());
}

void tst_SaveDialog::save(const QString &path)
{
    in<QLineEdit>("path").setText(QDir::toNativeSeparators(path));
    QTest::mouseClick(&in<QPushButton>("save"), Qt::LeftButton);
}

void tst_SaveDialog::saysBeforeAndAfterWhatGetsLost()
{
    open();
    QTRY_VERIFY(summary().contains(QStringLiteral("can hold all")) ||
                summary().contains(QStringLiteral("cannot hold")));
    choose("can");
    QVERIFY(in<QLineEdit>("path").text().endsWith(QStringLiteral(".can")));
    QTRY_VERIFY(summary().contains(QStringLiteral("cannot hold everything")));
    const QString losses = in<QPlainTextEdit>("losses").toPlainText();
    QVERIFY(losses.contains(QStringLiteral("CAN FD frame left out")));
    QVERIFY(losses.contains(QStringLiteral("(1000 times)")));
    save(path("a.can"));
    QTRY_VERIFY(summary().contains(QStringLiteral("were saved")));
    QCOMPARE(in<QPlainTextEdit>("losses").toPlainText(), losses);
    QVERIFY(QFile::exists(path("a.can")));
}

void tst_SaveDialog::savesWhatTheFilterPasses()
{
    FilterError error{};
    m_capture->setFilter(Filter::parse(QStringLiteral("dir == tx"), {}, error).value_or(Filter()));
    open();
    save(path("a.log"));
    QTRY_VERIFY(summary().contains(QStringLiteral("1,000 frames were saved")));
    QCOMPARE(saved().size(), std::size_t{1000});
    QVERIFY(in<QRadioButton>("all").isVisible());
    pick("all");
    save(path("b.log"));
    QTRY_VERIFY(summary().contains(QStringLiteral("20,000 frames were saved")));
}

void tst_SaveDialog::savesTheSelection()
{
    open();
    QVERIFY(!in<QRadioButton>("selected").isEnabled());
    FilterError error{};
    m_capture->setFilter(Filter::parse(QStringLiteral("dir == tx"), {}, error).value_or(Filter()));
    QTRY_COMPARE(m_capture->rowCount(), 1000);
    open({{3, 7}, {}, false});
    pick("selected");
    QVERIFY(in<QRadioButton>("selected").text().endsWith(QStringLiteral("5")));
    save(path("a.log"));
    QTRY_VERIFY(summary().contains(QStringLiteral("5 frames were saved")));
    const std::vector<BusFrame> frames = saved();
    QCOMPARE(frames.size(), std::size_t{5});
    QVERIFY(qAbs(frames[0].time - m_capture->store().time(m_capture->rowAt(3))) < 1000);
}

void tst_SaveDialog::savesATime_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("frames");
    // 2000 frames a second.
    QTest::newRow("all") << ""
                         << ""
                         << "20,000";
    QTest::newRow("from") << "9.0"
                          << ""
                          << "2,000";
    QTest::newRow("a plain number is seconds") << "9"
                                               << ""
                                               << "2,000";
    QTest::newRow("to, with the frame at it") << ""
                                              << "0.0005009"
                                              << "2";
    QTest::newRow("both") << "1 s"
                          << "1500 ms"
                          << "1,000";
    QTest::newRow("beyond the end") << "9.9"
                                    << "100"
                                    << "200";
}

void tst_SaveDialog::savesATime()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    QFETCH(const QString, frames);
    open();
    QVERIFY(!in<QLineEdit>("from").isEnabled());
    pick("time");
    QVERIFY(in<QLineEdit>("from").isEnabled());
    QTest::keyClicks(&in<QLineEdit>("from"), from);
    QTest::keyClicks(&in<QLineEdit>("to"), to);
    save(path("a.log"));
    QTRY_VERIFY(summary().contains(QStringLiteral("were saved")));
    QVERIFY2(summary().startsWith(frames + QStringLiteral(" frames")), qPrintable(summary()));
}

void tst_SaveDialog::wrongInputIsTold_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("no time") << "noon"
                             << "a.log"
                             << "no time of this capture";
    QTest::newRow("no frames") << "100"
                               << "a.log"
                               << "no such frames";
    QTest::newRow("no name") << "1"
                             << ""
                             << "needs a name";
    QTest::newRow("no folder") << "1"
                               << "missing/a.log"
                               << "cannot be written";
}

void tst_SaveDialog::wrongInputIsTold()
{
    QFETCH(const QString, from);
    QFETCH(const QString, name);
    QFETCH(const QString, text);
    open();
    pick("time");
    QTest::keyClicks(&in<QLineEdit>("from"), from);
    save(name.isEmpty() ? QString() : m_folder->filePath(name));
    QTRY_VERIFY2(summary().contains(text), qPrintable(summary()));
    QVERIFY(in<QPushButton>("save").isEnabled());
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void tst_SaveDialog::neverOverAnOpenFile()
{
    QFile file(path("open.csv"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("here");
    file.close();
    QVERIFY(QDir().mkdir(path("folder")));
    open({{-1, -1}, {path("open.csv")}, false});
    for (const char *name : {"open.csv", "folder/../open.csv"}) {
        save(path(name));
        QVERIFY(summary().contains(QStringLiteral("is open here")));
    }
    QCOMPARE(bytesOf(path("open.csv")), QByteArray("here"));
}

void tst_SaveDialog::asksBeforeItReplaces()
{
    QFile file(path("a.log"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    open();
    for (const auto answer : {CMessageBox::No, CMessageBox::Yes}) {
        QTimer::singleShot(0, m_dialog.get(), [this, answer] {
            auto *box = m_dialog->findChild<CMessageBox *>();
            QVERIFY(box != nullptr);
            auto *buttons = box->findChild<QDialogButtonBox *>();
            QTest::mouseClick(buttons->button(static_cast<QDialogButtonBox::StandardButton>(answer)), Qt::LeftButton);
        });
        save(path("a.log"));
        if (answer == CMessageBox::No) {
            QCOMPARE(QFileInfo(file).size(), 0);
        }
    }
    QTRY_COMPARE(saved().size(), std::size_t(Frames));
}

void tst_SaveDialog::kindAndEndingGoTogether()
{
    open();
    QVERIFY(in<QLineEdit>("path").text().endsWith(QStringLiteral("open-part.log")));
    choose("lin-csv");
    QVERIFY(in<QLineEdit>("path").text().endsWith(QStringLiteral("open-part.lin.csv")));
    choose("blf");
    QVERIFY(in<QLineEdit>("path").text().endsWith(QStringLiteral("open-part.blf")));
    in<QLineEdit>("path").clear();
    QTest::keyClicks(&in<QLineEdit>("path"), QStringLiteral("x.asc"));
    QCOMPARE(in<QComboBox>("kind").currentData().toString(), QStringLiteral("asc"));
}

void tst_SaveDialog::stops()
{
    m_capture = std::make_unique<OpenCapture>(path("large.csv"), syntheticCapture(3000000), false);
    QTRY_COMPARE_WITH_TIMEOUT(m_capture->rowCount(), 3000000, 60000);
    open();
    save(path("a.log"));
    QVERIFY(!in<QPushButton>("save").isEnabled());
    QTest::mouseClick(&in<QPushButton>("close"), Qt::LeftButton);
    QVERIFY(m_dialog->isVisible());
    QTRY_VERIFY(summary().contains(QStringLiteral("nothing was written")));
    QVERIFY(QDir(m_folder->path()).isEmpty());
    QTest::mouseClick(&in<QPushButton>("close"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
}

X9_GUI_TEST(tst_SaveDialog)
#include "tst_SaveDialog.moc"
