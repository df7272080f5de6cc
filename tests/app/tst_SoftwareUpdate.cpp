#include "app/SoftwareUpdate.h"

#include "app/GUI_Update.h"
#include "app/Settings.h"
#include "resources/Resources.h"
#include "tests/app/UpdateServer.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"
#include "widgets/CMessageBox.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>
#include <QtTest>
#include <QWidget>

#include <memory>

namespace {
const QByteArray NewRecord =
    R"({"name": "X9CAN", "summary": "Faster", "versionNo": "1.1.2", "url": "http://127.0.0.1:{port}/downloads/a.zip"})";
const QByteArray SameRecord = R"({"name": "X9CAN", "summary": "As it is", "versionNo": "1.1.1", "url": ""})";

QStringList serving(const QByteArray &record, const QStringList &more = {})
{
    return QStringList{QStringLiteral("--record"), QStringLiteral("Korvane_CAN=") + QString::fromUtf8(record)} + more;
}

/// The limits of a test: short where the server keeps silent, and otherwise none that a slow computer could reach.
int limitFor(const QByteArray &behaviour)
{
    const bool isSilent = behaviour == "no-answer" || behaviour == "stall" || behaviour == "slow";
    return isSilent ? 300 : 60000;
}

void letTurn()
{
    const Turns turns;
    QTRY_VERIFY(turns.count() > 30);
}
} // namespace

class tst_SoftwareUpdate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    static void setupOfProgram();
    static void versionsAtStart_data();
    void versionsAtStart();
    static void startFindsNothing_data();
    void startFindsNothing();
    void lateAnswerIsDropped();
    void deletedBeforeTheAnswer();

    void offersWhatTheStartFound();
    void offerWithoutAFindSearches();
    void offerWaitsForDialogs();
    void searchWhileTheOfferWaits();
    void tellsWhileItSearches();
    void cancelledRequestShowsNothing();
    static void requests_data();
    void requests();
    void requestWithoutAnAnswer();
    void oneRequestAtATime();
    void longVersionIsCut();

    void downloadsAndInstalls();
    void progressDialog();
    static void cancels_data();
    void cancels();
    static void failedDownloads_data();
    void failedDownloads();
    void programThatCannotBeStarted();
    void emptyAddress();
    void secureServiceNamesSecureAddresses();
    void oneDownloadAtATime();
    void canBeTriedAgain();
    static void endsAtAnyTime_data();
    void endsAtAnyTime();

private:
    SoftwareUpdate *make(const QString &baseUrl, int limitMs = 60000);
    void serve(const QByteArray &record, const QStringList &more = {});
    void placeProgram();
    QString package() const { return m_data->filePath(QStringLiteral("X9CAN_Install/Install.zip")); }
    QString download(const char *behaviour = "") const;
    GUI_Update *offer() const { return shown<GUI_Update>(); }
    CMessageBox *message() const { return shown<CMessageBox>(); }
    QProgressDialog *progress() const { return shown<QProgressDialog>(); }
    QToolButton *offerButton(const char *name) const { return offer()->findChild<QToolButton *>(QLatin1String(name)); }

    /// The window's dialog of that kind that is on screen.
    template<class Dialog>
    Dialog *shown() const
    {
        for (Dialog *dialog : m_window->findChildren<Dialog *>()) {
            if (dialog->isVisible()) {
                return dialog;
            }
        }
        return nullptr;
    }

    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<UpdateServer> m_server;
    std::unique_ptr<QTemporaryDir> m_program; ///< stands for the program's folder
    std::unique_ptr<QTemporaryDir> m_data;    ///< stands for the user's data folder
    QTemporaryDir m_downloads;
};

void tst_SoftwareUpdate::initTestCase()
{
    initResources();
    QFile file(m_downloads.filePath(QStringLiteral("a.zip")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("package").repeated(10000));
}

void tst_SoftwareUpdate::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->show();
    m_program = std::make_unique<QTemporaryDir>();
    m_data = std::make_unique<QTemporaryDir>();
}

void tst_SoftwareUpdate::cleanup()
{
    m_window.reset();
    m_server.reset();
}

SoftwareUpdate *tst_SoftwareUpdate::make(const QString &baseUrl, int limitMs)
{
    SoftwareUpdateSetup setup;
    setup.baseUrl = baseUrl;
    setup.applicationDir = m_program->path();
    setup.packageFolder = m_data->path();
    setup.updateKey.clear(); // tst_SignedUpdates has those with a key
    setup.startLimitMs = limitMs;
    setup.requestLimitMs = limitMs;
    setup.stallLimitMs = limitMs;
    return new SoftwareUpdate(m_window.get(), setup);
}

void tst_SoftwareUpdate::serve(const QByteArray &record, const QStringList &more)
{
    m_server = std::make_unique<UpdateServer>(
        serving(record, QStringList{QStringLiteral("--downloads"), m_downloads.path()} + more));
    QVERIFY(!m_server->url().isEmpty());
}

/// The program that would install the new version; it writes down what it was given.
void tst_SoftwareUpdate::placeProgram()
{
    QVERIFY(QDir().mkpath(m_program->filePath(QStringLiteral("Update"))));
    QVERIFY(QFile::copy(QStringLiteral(X9_ARGUMENT_WRITER), m_program->filePath(QStringLiteral("Update/Update.exe"))));
}

QString tst_SoftwareUpdate::download(const char *behaviour) const
{
    return (*behaviour == '\0' ? m_server->url() : m_server->url(behaviour)) + QStringLiteral("/downloads/a.zip");
}

void tst_SoftwareUpdate::setupOfProgram()
{
    const SoftwareUpdateSetup setup;
    QCOMPARE(setup.startLimitMs, 3000);
    QCOMPARE(setup.applicationDir, QCoreApplication::applicationDirPath());
    QCOMPARE(setup.packageFolder, QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    QCOMPARE(setup.baseUrl, updateServer());
}

void tst_SoftwareUpdate::versionsAtStart_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("isNewer");
    QTest::newRow("1.1.2") << QByteArray("1.1.2") << true;
    QTest::newRow("1.1.1") << QByteArray("1.1.1") << false;
    QTest::newRow("1.1") << QByteArray("1.1") << false;
    QTest::newRow("1.0.9") << QByteArray("1.0.9") << false;
    QTest::newRow("1.1.1.5") << QByteArray("1.1.1.5") << false;
    QTest::newRow("1.a") << QByteArray("1.a") << false;
}

void tst_SoftwareUpdate::versionsAtStart()
{
    QFETCH(QByteArray, version);
    QFETCH(bool, isNewer);
    serve(R"({"versionNo": ")" + version + R"("})");
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy checked(update, &SoftwareUpdate::sig_startChecked);
    update->checkAtStart();
    QCOMPARE(checked.count(), 0);
    QTRY_COMPARE(checked.count(), 1);
    QCOMPARE(checked.first().first().toBool(), isNewer);
    QCOMPARE(offer(), nullptr); // the window decides when to offer it
    QVERIFY(!update->isBusy());
}

void tst_SoftwareUpdate::startFindsNothing_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::newRow("no server") << QByteArray();
    for (const char *name :
         {"no-answer", "stall", "slow", "404", "500", "invalid", "list", "types", "empty", "nothing", "short", "large",
          "rubbish", "rubbish-chunked", "redirect-file", "redirect-ftp", "redirect-self"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

/// Exactly one answer, the window turns meanwhile and afterwards, and nothing is shown.
void tst_SoftwareUpdate::startFindsNothing()
{
    QFETCH(QByteArray, behaviour);
    serve(NewRecord);
    SoftwareUpdate *update =
        make(behaviour.isEmpty() ? QString() : m_server->url(behaviour.constData()), limitFor(behaviour));
    QSignalSpy checked(update, &SoftwareUpdate::sig_startChecked);
    const Turns turns;
    update->checkAtStart();
    QTRY_COMPARE(checked.count(), 1);
    QCOMPARE(checked.first().first().toBool(), false);
    QTRY_VERIFY(turns.count() > 30);
    QCOMPARE(checked.count(), 1);
    QCOMPARE(offer(), nullptr);
    QCOMPARE(message(), nullptr);
}

void tst_SoftwareUpdate::lateAnswerIsDropped()
{
    // Two bytes, the second one a second after the first and long after the limit.
    serve("{}", {QStringLiteral("--behaviour"), QStringLiteral("Korvane_CAN=slow")});
    SoftwareUpdate *update = make(m_server->url(), limitFor("slow"));
    QSignalSpy checked(update, &SoftwareUpdate::sig_startChecked);
    update->checkAtStart();
    QTRY_COMPARE(checked.count(), 1);
    const Turns turns;
    QTRY_VERIFY(turns.count() > 150); // more than a second
    QCOMPARE(checked.count(), 1);
}

void tst_SoftwareUpdate::deletedBeforeTheAnswer()
{
    serve(NewRecord);
    std::unique_ptr<SoftwareUpdate> update(make(m_server->url("no-answer")));
    update->checkAtStart();
    update->request(false);
    QTRY_COMPARE(m_server->requests().count(), 2);
    update.reset();
    letTurn();
    QCOMPARE(offer(), nullptr);
}

void tst_SoftwareUpdate::offersWhatTheStartFound()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy checked(update, &SoftwareUpdate::sig_startChecked);
    update->checkAtStart();
    QTRY_COMPARE(checked.count(), 1);
    QVERIFY(checked.first().first().toBool());
    update->request(true);
    QVERIFY(offer() != nullptr); // at once, without asking again
    QVERIFY(offer()->isModal());
    QCOMPARE(offer()->parentWidget(), m_window.get());
    QVERIFY(offerButton("btn_update")->isVisible());
    QCOMPARE(offer()->findChild<QLabel *>(QStringLiteral("lbl_tips2"))->text(),
             QStringLiteral("Current version V1.1.1 \u2192 V1.1.2"));
    QCOMPARE(offer()->findChild<QTextBrowser *>()->toPlainText(), QStringLiteral("Faster"));
    QCOMPARE(m_server->requests().count(), 1);
    const QPointer<GUI_Update> dialog = offer();
    QTest::mouseClick(offerButton("btn_cancel"), Qt::LeftButton);
    QTRY_VERIFY(dialog == nullptr);
    QVERIFY(!update->isBusy());
    QCOMPARE(progress(), nullptr);
}

void tst_SoftwareUpdate::offerWithoutAFindSearches()
{
    serve(SameRecord);
    SoftwareUpdate *update = make(m_server->url());
    update->request(true);
    QCOMPARE(offer(), nullptr);
    QTRY_VERIFY(offer() != nullptr);
    QVERIFY(offerButton("btn_ok")->isVisible());
}

/// The offer comes by itself, so it does not come over what the user reads; one dialog may follow another.
void tst_SoftwareUpdate::offerWaitsForDialogs()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy checked(update, &SoftwareUpdate::sig_startChecked);
    update->checkAtStart();
    QTRY_COMPARE(checked.count(), 1);
    const auto showMessage = [this] {
        auto *box = new CMessageBox(CMessageBox::Warning, QStringLiteral("Tips"), QStringLiteral("?"), CMessageBox::Ok,
                                    m_window.get());
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
        return QPointer<CMessageBox>(box);
    };
    const QPointer<CMessageBox> first = showMessage();
    update->request(true);
    QCOMPARE(offer(), nullptr);
    QCOMPARE(QApplication::activeModalWidget(), first.data());
    letTurn();
    QCOMPARE(offer(), nullptr);
    first->close();
    const QPointer<CMessageBox> second = showMessage();
    letTurn();
    QCOMPARE(offer(), nullptr);
    QCOMPARE(QApplication::activeModalWidget(), second.data());
    second->close();
    QTRY_VERIFY(offer() != nullptr);
    QVERIFY(offerButton("btn_update")->isVisible());
    offer()->close();
    showMessage()->close();
    letTurn();
    QCOMPARE(offer(), nullptr); // once
}

/// What the user has asked for comes at once, and the offer not a second time.
void tst_SoftwareUpdate::searchWhileTheOfferWaits()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy checked(update, &SoftwareUpdate::sig_startChecked);
    update->checkAtStart();
    QTRY_COMPARE(checked.count(), 1);
    QDialog dialog(m_window.get());
    dialog.open();
    update->request(true);
    update->request(false);
    QTRY_VERIFY(offer() != nullptr);
    offer()->close();
    dialog.close();
    letTurn();
    QCOMPARE(offer(), nullptr);
}

void tst_SoftwareUpdate::tellsWhileItSearches()
{
    serve(SameRecord);
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy searching(update, &SoftwareUpdate::sig_searching);
    update->checkAtStart();
    update->request(false);
    QCOMPARE(searching.count(), 1);
    QCOMPARE(searching.last().first().toBool(), true);
    QTRY_COMPARE(searching.count(), 2);
    QCOMPARE(searching.last().first().toBool(), false);
    QVERIFY(offer() != nullptr);
    offer()->close();
    update->cancelRequest(); // there is none
    QCOMPARE(searching.count(), 2);
}

void tst_SoftwareUpdate::cancelledRequestShowsNothing()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy searching(update, &SoftwareUpdate::sig_searching);
    update->request(false);
    update->cancelRequest();
    QCOMPARE(searching.count(), 2);
    QVERIFY(!update->isBusy());
    letTurn();
    letTurn();
    QCOMPARE(offer(), nullptr);
    QCOMPARE(searching.count(), 2);
    update->request(false);
    QTRY_VERIFY(offer() != nullptr);
}

void tst_SoftwareUpdate::requests_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<QString>("headline");
    const QString same = QStringLiteral("This is the latest version");
    const QString failed = QStringLiteral("Check upgrade failure");
    const QString newer = QStringLiteral("New version detected");
    QTest::newRow("same") << SameRecord << QByteArray() << same;
    QTest::newRow("no version") << NewRecord << QByteArray("empty") << same;
    QTest::newRow("newer") << NewRecord << QByteArray() << newer;
    QTest::newRow("newer, redirected") << NewRecord << QByteArray("redirect") << newer;
    for (const char *name : {"404", "invalid", "no-answer", "slow", "rubbish-chunked", "redirect-file"}) {
        QTest::newRow(name) << NewRecord << QByteArray(name) << failed;
    }
}

void tst_SoftwareUpdate::requests()
{
    QFETCH(QByteArray, record);
    QFETCH(QByteArray, behaviour);
    QFETCH(QString, headline);
    serve(record);
    SoftwareUpdate *update =
        make(behaviour.isEmpty() ? m_server->url() : m_server->url(behaviour.constData()), limitFor(behaviour));
    update->request(false);
    QVERIFY(update->isBusy());
    QCOMPARE(QApplication::activeModalWidget(), nullptr); // the window can be used
    QTRY_VERIFY(offer() != nullptr);
    QCOMPARE(offer()->findChild<QLabel *>(QStringLiteral("lbl_tips1"))->text(), headline);
    QTRY_COMPARE(m_server->requests().isEmpty(), false);
    QVERIFY(m_server->requests().first().endsWith(
        QLatin1String("/api/software-product-versions/latest-byswcode?langCode=CN&swSnCode=Korvane_CAN HTTP/1.1")));
}

void tst_SoftwareUpdate::requestWithoutAnAnswer()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url("no-answer"), limitFor("no-answer"));
    const Turns turns;
    update->request(false);
    QTRY_VERIFY(offer() != nullptr);
    QVERIFY(turns.count() > 10);
    QVERIFY(offerButton("btn_cancel")->isVisible());
    QVERIFY(!offerButton("btn_update")->isVisible());
    offer()->close();
    QVERIFY(!update->isBusy());
}

void tst_SoftwareUpdate::oneRequestAtATime()
{
    serve(SameRecord);
    SoftwareUpdate *update = make(m_server->url());
    update->request(false);
    update->request(false);
    update->request(true);
    QTRY_VERIFY(offer() != nullptr);
    update->request(false); // the outcome is still on screen
    letTurn();
    QCOMPARE(m_window->findChildren<GUI_Update *>().count(), 1);
    QCOMPARE(m_server->requests().count(), 1);
    offer()->close();
    update->request(false);
    QTRY_VERIFY(offer() != nullptr);
    QCOMPARE(m_server->requests().count(), 2);
}

void tst_SoftwareUpdate::longVersionIsCut()
{
    serve(R"({"versionNo": "1.1.2.)" + QByteArray(5000, '1') + R"("})");
    SoftwareUpdate *update = make(m_server->url());
    update->request(false);
    QTRY_VERIFY(offer() != nullptr);
    QVERIFY(offer()->findChild<QLabel *>(QStringLiteral("lbl_tips2"))->text().size() < 80);
    QCOMPARE(offer()->size(), QSize(470, 420));
}

void tst_SoftwareUpdate::downloadsAndInstalls()
{
    serve(NewRecord);
    placeProgram();
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    update->request(false);
    QTRY_VERIFY(offer() != nullptr);
    QTest::mouseClick(offerButton("btn_update"), Qt::LeftButton);
    QCOMPARE(offer(), nullptr);
    QVERIFY(progress() != nullptr);
    QTRY_COMPARE(close.count(), 1);
    QCOMPARE(progress(), nullptr);
    QCOMPARE(message(), nullptr);
    QVERIFY(!update->isBusy());
    QFile stored(package());
    QVERIFY(stored.open(QIODevice::ReadOnly));
    QCOMPARE(stored.readAll(), QByteArray("package").repeated(10000));
    const QString written = m_program->filePath(QStringLiteral("Update/arguments.txt"));
    QTRY_VERIFY(QFile::exists(written));
    QFile arguments(written);
    QVERIFY(arguments.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(QString::fromUtf8(arguments.readAll()), package() + QLatin1Char('\n'));
}

void tst_SoftwareUpdate::progressDialog()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url());
    update->update(download("rubbish-chunked"));
    QVERIFY(progress() != nullptr);
    QVERIFY(progress()->isModal());
    QCOMPARE(progress()->windowTitle(), QStringLiteral("Please wait"));
    QCOMPARE(progress()->labelText(), QStringLiteral("Downloading a new version of the program..."));
    QCOMPARE(progress()->minimum(), 0);
    QCOMPARE(progress()->maximum(), 200);
    auto *bar = progress()->findChild<QProgressBar *>();
    QVERIFY(bar->isVisible());
    auto *step = progress()->findChild<QTimer *>(QStringLiteral("step"));
    QCOMPARE(step->interval(), 50);
    const int before = bar->value();
    QTRY_VERIFY(bar->value() >= before + 2);
    bar->setValue(199);
    QTRY_VERIFY(bar->value() < 100); // begins anew
}

void tst_SoftwareUpdate::cancels_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    QTest::addColumn<int>("how");
    for (const char *name : {"no-answer", "stall", "slow", "rubbish", "rubbish-chunked"}) {
        QTest::addRow("%s, button", name) << QByteArray(name) << 0;
    }
    QTest::newRow("title bar") << QByteArray("stall") << 1;
    QTest::newRow("Esc") << QByteArray("stall") << 2;
}

void tst_SoftwareUpdate::cancels()
{
    QFETCH(QByteArray, behaviour);
    QFETCH(int, how);
    serve(NewRecord);
    placeProgram();
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    update->update(download(behaviour.constData()));
    QTRY_COMPARE(m_server->requests().count(), 1);
    const QPointer<QProgressDialog> dialog = progress();
    QVERIFY(dialog != nullptr);
    if (how == 0) {
        QTest::mouseClick(dialog->findChild<QPushButton *>(), Qt::LeftButton);
    } else if (how == 1) {
        dialog->close();
    } else {
        QTest::keyClick(dialog, Qt::Key_Escape);
    }
    QVERIFY(!update->isBusy());
    QTRY_VERIFY(dialog == nullptr);
    letTurn();
    QCOMPARE(message(), nullptr);
    QCOMPARE(close.count(), 0);
    QTRY_VERIFY(QDir(m_data->path()).isEmpty()); // what was given up goes by itself
    QVERIFY(!QFile::exists(m_program->filePath(QStringLiteral("Update/arguments.txt"))));
}

void tst_SoftwareUpdate::failedDownloads_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    for (const char *name :
         {"404", "500", "no-answer", "stall", "short", "nothing", "redirect-file", "redirect-ftp", "redirect-self"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void tst_SoftwareUpdate::failedDownloads()
{
    QFETCH(QByteArray, behaviour);
    serve(NewRecord);
    placeProgram();
    SoftwareUpdate *update = make(m_server->url(), limitFor(behaviour));
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    update->update(download(behaviour.constData()));
    QTRY_VERIFY(message() != nullptr);
    QCOMPARE(progress(), nullptr);
    QCOMPARE(message()->windowTitle(), QStringLiteral("Tips"));
    QCOMPARE(message()->icon(), CMessageBox::Critical);
    const QRegularExpression expected(QStringLiteral("^The new version could not be downloaded\\.\n.+"));
    QVERIFY2(expected.match(message()->text()).hasMatch(), qPrintable(message()->text()));
    QCOMPARE(close.count(), 0);
    QTRY_VERIFY(QDir(m_data->path()).isEmpty()); // what was given up goes by itself
    QVERIFY(!QFile::exists(m_program->filePath(QStringLiteral("Update/arguments.txt"))));
    const QPointer<CMessageBox> box = message();
    box->close();
    QTRY_VERIFY(box == nullptr);
    QVERIFY(!update->isBusy());
}

void tst_SoftwareUpdate::programThatCannotBeStarted()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    update->update(download());
    QTRY_VERIFY(message() != nullptr);
    QVERIFY(message()->text().contains(QLatin1String("cannot be started")));
    QVERIFY(message()->text().contains(QDir::toNativeSeparators(package())));
    QVERIFY(QFile::exists(package()));
    QCOMPARE(close.count(), 0);
}

void tst_SoftwareUpdate::emptyAddress()
{
    SoftwareUpdate *update = make(QString());
    update->update(QString());
    QTRY_VERIFY(message() != nullptr);
    QVERIFY(message()->text().endsWith(QLatin1String("The address of the file cannot be used.")));
}

void tst_SoftwareUpdate::secureServiceNamesSecureAddresses()
{
    serve(NewRecord);
    make(QStringLiteral("https://127.0.0.1"))->update(download());
    QTRY_VERIFY(message() != nullptr);
    QVERIFY(message()->text().endsWith(QLatin1String("The address of the file cannot be used.")));
    QCOMPARE(m_server->requests(), QStringList());
}

void tst_SoftwareUpdate::oneDownloadAtATime()
{
    serve(NewRecord);
    SoftwareUpdate *update = make(m_server->url());
    update->update(download("slow"));
    update->update(download("slow"));
    update->request(false);
    QTRY_COMPARE(m_server->requests().count(), 1);
    letTurn();
    QCOMPARE(m_server->requests().count(), 1);
    QCOMPARE(m_window->findChildren<QProgressDialog *>().count(), 1);
    QCOMPARE(offer(), nullptr);
}

void tst_SoftwareUpdate::canBeTriedAgain()
{
    serve(NewRecord);
    placeProgram();
    SoftwareUpdate *update = make(m_server->url());
    QSignalSpy close(update, &SoftwareUpdate::sig_closeProgram);
    update->update(download("404"));
    QTRY_VERIFY(message() != nullptr);
    update->update(download());
    QTRY_COMPARE(close.count(), 1);
    QVERIFY(QFile::exists(package()));
}

void tst_SoftwareUpdate::endsAtAnyTime_data()
{
    QTest::addColumn<QByteArray>("moment");
    QTest::addColumn<bool>("withTheWindow");
    for (const char *moment : {"nothing", "start", "search", "offer", "download", "flood", "message"}) {
        QTest::addRow("%s, with the window", moment) << QByteArray(moment) << true;
        QTest::addRow("%s, before the window", moment) << QByteArray(moment) << false;
    }
}

/// No dialog and no file stays.
void tst_SoftwareUpdate::endsAtAnyTime()
{
    QFETCH(QByteArray, moment);
    QFETCH(bool, withTheWindow);
    serve(NewRecord);
    const bool isSilent = moment == "start" || moment == "search";
    SoftwareUpdate *update = make(isSilent ? m_server->url("no-answer") : m_server->url());
    if (moment == "start") {
        update->checkAtStart();
        QTRY_COMPARE(m_server->requests().count(), 1);
    } else if (moment == "search") {
        update->request(false);
        QTRY_COMPARE(m_server->requests().count(), 1);
    } else if (moment == "offer") {
        update->request(false);
        QTRY_VERIFY(offer() != nullptr);
    } else if (moment == "download" || moment == "flood") {
        update->update(download(moment == "flood" ? "rubbish" : "slow"));
        QTRY_VERIFY(!QDir(m_data->path()).isEmpty());
    } else if (moment == "message") {
        update->update(QString());
        QTRY_VERIFY(message() != nullptr);
    }
    if (withTheWindow) {
        m_window.reset();
    } else {
        delete update;
        QCOMPARE(offer(), nullptr);
        QCOMPARE(message(), nullptr);
        QCOMPARE(progress(), nullptr);
    }
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    QTRY_VERIFY(QDir(m_data->path()).isEmpty());
    letTurn();
}

X9_GUI_TEST(tst_SoftwareUpdate)
#include "tst_SoftwareUpdate.moc"
