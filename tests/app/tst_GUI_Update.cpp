#include "app/GUI_Update.h"

#include "app/ReleaseText.h"
#include "resources/Resources.h"
#include "tests/support/TestProgram.h"

#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QToolButton>
#include <QtTest>

namespace {
template<class T>
T *part(const QWidget &window, const char *name)
{
    return window.findChild<T *>(QLatin1String(name));
}

QToolButton *button(const QWidget &dialog, const char *name)
{
    return part<QToolButton>(dialog, name);
}

QTextBrowser *textOf(const QWidget &dialog)
{
    return part<QTextBrowser>(dialog, "tbx_text");
}

/// The object names of the buttons that can be seen.
QStringList shownButtons(const QWidget &dialog)
{
    QStringList names;
    for (const char *name : {"btn_ok", "btn_update", "btn_cancel"}) {
        if (button(dialog, name)->isVisible()) {
            names.append(QLatin1String(name));
        }
    }
    return names;
}

QImage pictureOf(const QWidget &dialog)
{
    return part<QLabel>(dialog, "lbl_icon")->pixmap(Qt::ReturnByValue).toImage();
}

QImage picture(const char *name)
{
    const QString path = QStringLiteral(":/128x128/Images/128x128/%1.png").arg(QLatin1String(name));
    return QIcon(path).pixmap(QSize(70, 70)).toImage();
}

/// Takes the addresses that would be opened in the browser, or in whatever program the system has for them.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser()
    {
        for (const char *scheme : Schemes) {
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
        }
    }
    ~Browser() override
    {
        for (const char *scheme : Schemes) {
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
        }
    }
    Q_DISABLE_COPY_MOVE(Browser)

    Q_INVOKABLE void open(const QUrl &url) { opened.append(url.toString()); }

    QStringList opened;

private:
    static constexpr const char *Schemes[] = {"http", "https", "file", "ftp", "javascript", "qrc", "mailto"};
};

void clickOnLink(QTextBrowser *text)
{
    const QTextDocument *document = text->document();
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            if (part.fragment().charFormat().isAnchor()) {
                QTextCursor cursor(block);
                cursor.setPosition(part.fragment().position() + 1);
                const QPoint place = text->cursorRect(cursor).center();
                QTest::mouseClick(text->viewport(), Qt::LeftButton, Qt::NoModifier, place);
                return;
            }
        }
    }
}
} // namespace

class tst_GUI_Update : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { initResources(); }
    static void look();
    static void upToDate();
    static void checkFailed();
    static void checkFailedWithoutAWebSite();
    static void newVersion();
    static void everyStateAfterEveryOther();
    static void buttons();
    static void enterPressesTheButton();
    static void unknownStateChangesNothing();
    static void versionLineIsPlainText();
    static void webSiteIsNoMarkup();
    static void links_data();
    static void links();
    static void loadsNothing_data();
    static void loadsNothing();
    static void keepsPlainMarkup();
    static void plainTextKeepsItsLines_data();
    static void plainTextKeepsItsLines();
    static void hostileMarkup_data();
    static void hostileMarkup();
};

void tst_GUI_Update::look()
{
    GUI_Update dialog;
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QStringLiteral("X9CAN"));
    QCOMPARE(dialog.minimumSize(), QSize(470, 420));
    QCOMPARE(dialog.maximumSize(), QSize(470, 420));
    QCOMPARE(dialog.size(), QSize(470, 420));
    QVERIFY(dialog.styleSheet().startsWith(
        QStringLiteral("QDialog{background-color:rgb(255 , 255 , 255);}"
                       "QToolButton{background-color:#1e7eef; color:white; border-radius:18px;}")));
    QCOMPARE(part<QLabel>(dialog, "lbl_icon")->size(), QSize(70, 70));
    QCOMPARE(part<QLabel>(dialog, "lbl_tips2")->text(), QStringLiteral("Current version V1.0.0"));
    for (const char *name : {"lbl_tips1", "lbl_tips2"}) {
        QCOMPARE(part<QLabel>(dialog, name)->font().family(), QStringLiteral("微软雅黑"));
    }
    QVERIFY(textOf(dialog)->isReadOnly());
    QCOMPARE(button(dialog, "btn_ok")->text(), QStringLiteral("Ok"));
    QCOMPARE(button(dialog, "btn_cancel")->text(), QStringLiteral("Exit upgrade"));
    QCOMPARE(button(dialog, "btn_update")->text(), QStringLiteral("upgrade"));
}

void tst_GUI_Update::upToDate()
{
    GUI_Update dialog;
    textOf(dialog)->setPlainText(QStringLiteral("as it was"));
    dialog.setState(0);
    dialog.show();
    QCOMPARE(part<QLabel>(dialog, "lbl_tips1")->text(), QStringLiteral("This is the latest version"));
    QCOMPARE(pictureOf(dialog), picture("Success"));
    QCOMPARE(shownButtons(dialog), QStringList{QStringLiteral("btn_ok")});
    QCOMPARE(button(dialog, "btn_ok")->minimumWidth(), 220);
    QVERIFY(part<QLabel>(dialog, "lbl_tips2")->isVisible());
    QCOMPARE(textOf(dialog)->toPlainText(), QStringLiteral("as it was"));
}

void tst_GUI_Update::checkFailed()
{
    GUI_Update dialog(nullptr, QStringLiteral("https://maker.example/a"));
    dialog.setState(1);
    dialog.show();
    QCOMPARE(part<QLabel>(dialog, "lbl_tips1")->text(), QStringLiteral("Check upgrade failure"));
    QCOMPARE(pictureOf(dialog), picture("Error"));
    QCOMPARE(shownButtons(dialog), QStringList{QStringLiteral("btn_cancel")});
    QCOMPARE(button(dialog, "btn_cancel")->minimumWidth(), 220);
    QVERIFY(!part<QLabel>(dialog, "lbl_tips2")->isVisible());
    QCOMPARE(textOf(dialog)->toPlainText(),
             QStringLiteral("You are advised to check that the network connection is normal and try again\n"
                            "You can choose to download the installation package from the official website "
                            "https://maker.example/a"));
    Browser browser;
    clickOnLink(textOf(dialog));
    QCOMPARE(browser.opened, QStringList{QStringLiteral("https://maker.example/a")});
}

void tst_GUI_Update::checkFailedWithoutAWebSite()
{
    GUI_Update dialog(nullptr, QString());
    dialog.setState(1);
    QVERIFY(textOf(dialog)->toPlainText().endsWith(QLatin1String("from the official website")));
    QVERIFY(!textOf(dialog)->toHtml().contains(QLatin1String("href")));
}

void tst_GUI_Update::newVersion()
{
    GUI_Update dialog;
    dialog.setState(2);
    dialog.setSummary(QStringLiteral("<b>Faster</b> scan"));
    dialog.setVersionLine(QStringLiteral("Current version V1.1.1"));
    dialog.show();
    QCOMPARE(part<QLabel>(dialog, "lbl_tips1")->text(), QStringLiteral("New version detected"));
    QCOMPARE(pictureOf(dialog), picture("Download"));
    QCOMPARE(shownButtons(dialog), (QStringList{QStringLiteral("btn_update"), QStringLiteral("btn_cancel")}));
    QCOMPARE(button(dialog, "btn_update")->minimumWidth(), 160);
    QCOMPARE(button(dialog, "btn_cancel")->minimumWidth(), 160);
    QVERIFY(part<QLabel>(dialog, "lbl_tips2")->isVisible());
    QCOMPARE(part<QLabel>(dialog, "lbl_tips2")->text(), QStringLiteral("Current version V1.1.1"));
    QCOMPARE(textOf(dialog)->toPlainText(), QStringLiteral("Faster scan"));
    QVERIFY(textOf(dialog)->toHtml().contains(QLatin1String("font-weight:600")));
}

void tst_GUI_Update::everyStateAfterEveryOther()
{
    const QVector<QStringList> shown{{QStringLiteral("btn_ok")},
                                     {QStringLiteral("btn_cancel")},
                                     {QStringLiteral("btn_update"), QStringLiteral("btn_cancel")}};
    GUI_Update dialog;
    dialog.setSummary(QStringLiteral("news"));
    dialog.show();
    for (const int state : {0, 1, 2, 0, 2, 1, 0}) {
        dialog.setState(state);
        QCOMPARE(shownButtons(dialog), shown.at(state));
        QCOMPARE(part<QLabel>(dialog, "lbl_tips2")->isVisible(), state != 1);
        if (state != 0) {
            QCOMPARE(button(dialog, "btn_cancel")->minimumWidth(), state == 2 ? 160 : 220);
        }
        if (state == 2) {
            QCOMPARE(textOf(dialog)->toPlainText(), QStringLiteral("news"));
        }
    }
}

void tst_GUI_Update::buttons()
{
    GUI_Update dialog;
    QSignalSpy update(&dialog, &GUI_Update::sig_update);
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.setState(2);
    dialog.show();
    QTest::mouseClick(button(dialog, "btn_update"), Qt::LeftButton);
    QCOMPARE(update.count(), 1);
    QCOMPARE(finished.count(), 0);
    QVERIFY(dialog.isVisible());
    QTest::mouseClick(button(dialog, "btn_cancel"), Qt::LeftButton);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    dialog.setState(0);
    dialog.show();
    QTest::mouseClick(button(dialog, "btn_ok"), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(finished.count(), 2);
    QCOMPARE(update.count(), 1);
}

void tst_GUI_Update::enterPressesTheButton()
{
    GUI_Update dialog;
    QSignalSpy update(&dialog, &GUI_Update::sig_update);
    dialog.setState(2);
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QCOMPARE(QApplication::focusWidget(), button(dialog, "btn_update"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(update.count(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), button(dialog, "btn_cancel"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
    QVERIFY(!dialog.isVisible());
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(update.count(), 1);
}

void tst_GUI_Update::unknownStateChangesNothing()
{
    GUI_Update dialog;
    dialog.setState(2);
    dialog.show();
    for (const int state : {-1, 3, 1000}) {
        dialog.setState(state);
        QCOMPARE(part<QLabel>(dialog, "lbl_tips1")->text(), QStringLiteral("New version detected"));
        QCOMPARE(shownButtons(dialog).count(), 2);
    }
}

void tst_GUI_Update::versionLineIsPlainText()
{
    GUI_Update dialog;
    dialog.setVersionLine(QStringLiteral("<b>1</b>"));
    QCOMPARE(part<QLabel>(dialog, "lbl_tips2")->textFormat(), Qt::PlainText);
}

void tst_GUI_Update::webSiteIsNoMarkup()
{
    GUI_Update dialog(nullptr, QStringLiteral("https://maker.example/?a=1&b=\"><hr>"));
    dialog.setState(1);
    QVERIFY(textOf(dialog)->toPlainText().endsWith(QLatin1String("https://maker.example/?a=1&b=\"><hr>")));
}

void tst_GUI_Update::links_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isOpened");
    QTest::newRow("http") << QStringLiteral("http://news.example/a") << true;
    QTest::newRow("https") << QStringLiteral("https://news.example/a") << true;
    for (const char *address : {"file:///etc/hostname", "ftp://news.example/a", "javascript:alert(1)", "qrc:/a",
                                "mailto:a@news.example", "a.html", "#here", ":/Skins/White/White.css", ""}) {
        QTest::newRow(*address == '\0' ? "empty" : address) << QString::fromLatin1(address) << false;
    }
}

void tst_GUI_Update::links()
{
    QFETCH(QString, address);
    QFETCH(bool, isOpened);
    GUI_Update dialog;
    dialog.setSummary(QStringLiteral("<a href=\"%1\">this is a link</a>").arg(address));
    dialog.setState(2);
    dialog.show();
    Browser browser;
    clickOnLink(textOf(dialog));
    QCOMPARE(browser.opened, isOpened ? QStringList{address} : QStringList());
    QCOMPARE(textOf(dialog)->toPlainText(), QStringLiteral("this is a link"));
}

void tst_GUI_Update::loadsNothing_data()
{
    QTest::addColumn<QString>("html");
    QTest::newRow("picture") << QStringLiteral("<img src=\"%1\">");
    QTest::newRow("background") << QStringLiteral("<body background=\"%1\">x</body>");
    QTest::newRow("style sheet") << QStringLiteral("<html><head><link rel=stylesheet href=\"%1\"></head>x</html>");
    QTest::newRow("imported style") << QStringLiteral("<style>@import url(%1);</style>x");
    QTest::newRow("list picture") << QStringLiteral("<p style=\"background-image:url(%1)\">x</p>");
    QTest::newRow("frame") << QStringLiteral("<iframe src=\"%1\"></iframe><object data=\"%1\"></object>");
    QTest::newRow("script") << QStringLiteral("<script src=\"%1\"></script>x");
}

/// Neither a server nor a file is asked, whatever the text names; not even if the markup came through unreduced.
void tst_GUI_Update::loadsNothing()
{
    QFETCH(QString, html);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a.png"));
    QImage red(40, 40, QImage::Format_RGB32);
    red.fill(Qt::red);
    QVERIFY(red.save(file));
    const QStringList addresses{QStringLiteral("http://127.0.0.1:%1/a.png").arg(server.serverPort()), file,
                                QUrl::fromLocalFile(file).toString(),
                                QStringLiteral(":/128x128/Images/128x128/Success.png")};
    for (const QString &address : addresses) {
        GUI_Update dialog;
        dialog.setSummary(html.arg(address));
        dialog.setState(2);
        dialog.show();
        textOf(dialog)->setHtml(html.arg(address));
        const QImage shown = textOf(dialog)->viewport()->grab().toImage();
        for (int x = 0; x < shown.width(); ++x) {
            for (int y = 0; y < 60; ++y) {
                QVERIFY(shown.pixelColor(x, y) != QColor(Qt::red));
            }
        }
        const QVariant loaded = textOf(dialog)->loadResource(QTextDocument::ImageResource, QUrl(address));
        QCOMPARE(loaded.value<QImage>().size(), QSize(1, 1));
        QVERIFY(!textOf(dialog)->loadResource(QTextDocument::StyleSheetResource, QUrl(address)).isNull());
        QVERIFY(!server.waitForNewConnection(20));
    }
}

void tst_GUI_Update::keepsPlainMarkup()
{
    ReleaseText text;
    text.setUntrustedHtml(QStringLiteral("<h2>V2</h2><p>a &lt; b<br/>c</p><UL><li>one</li><li>two</li></UL>"
                                         "<font color=red>red</font> <A HREF='http://a.example'>link</A>"));
    QCOMPARE(text.toPlainText(), QStringLiteral("V2\na < b\nc\none\ntwo\nred link"));
    QVERIFY(text.toHtml().contains(QLatin1String("color:#ff0000")));
    QVERIFY(text.toHtml().contains(QLatin1String("href=\"http://a.example\"")));
    QVERIFY(text.toHtml().contains(QLatin1String("<ul")));
}

void tst_GUI_Update::plainTextKeepsItsLines_data()
{
    QTest::addColumn<QString>("summary");
    QTest::addColumn<QString>("shown");
    QTest::newRow("lines") << "V1.2\n- faster\n\n- 更快"
                           << "V1.2\n- faster\n\n- 更快";
    QTest::newRow("Windows") << "V1.2\r\n- faster"
                             << "V1.2\n- faster";
    QTest::newRow("indented") << "a\n    b  c"
                              << "a\n    b  c";
    QTest::newRow("brackets") << "1 < 2 && 3 > 2\n<unknown> QVector<int> <3"
                              << "1 < 2 && 3 > 2\n<unknown> QVector<int> <3";
    QTest::newRow("markup") << "V1.2\n- <b>faster</b>"
                            << "V1.2 - faster";
    QTest::newRow("markup in a later line") << "a\nb<br>c"
                                            << "a b\nc";
    QTest::newRow("character reference") << "CAN &amp; LIN"
                                         << "CAN & LIN";
    QTest::newRow("left out") << "<img src=a>\nb"
                              << "b";
}

void tst_GUI_Update::plainTextKeepsItsLines()
{
    QFETCH(QString, summary);
    ReleaseText text;
    text.setUntrustedHtml(summary);
    QTEST(text.toPlainText(), "shown");
}

void tst_GUI_Update::hostileMarkup_data()
{
    QTest::addColumn<QString>("html");
    QTest::newRow("nested tables") << QStringLiteral("<table><tr><td>").repeated(20000) + QLatin1Char('x');
    QTest::newRow("nested lists") << QStringLiteral("<ul><li>").repeated(20000) + QLatin1Char('x');
    QTest::newRow("nested bold") << QStringLiteral("<b>").repeated(100000) + QLatin1Char('x');
    QTest::newRow("nested paragraphs") << QStringLiteral("<div><p>").repeated(20000) + QLatin1Char('x');
    QTest::newRow("open brackets") << QString(1000000, QLatin1Char('<'));
    QTest::newRow("pictures of a million pixels")
        << QStringLiteral("<img src=a width=1000000 height=1000000>").repeated(1000);
    QTest::newRow("one long word") << QString(1000000, QLatin1Char('w'));
    QTest::newRow("huge font") << QStringLiteral("<span style=\"font-size:1000000pt\">x</span>");
    QTest::newRow("zero bytes") << QString(1000, QChar(0));
    QTest::newRow("comment without an end") << QStringLiteral("x<!-- ") + QString(100000, QLatin1Char('a'));
}

/// None of them holds the window up: nested tables would for longer than the test may take.
void tst_GUI_Update::hostileMarkup()
{
    QFETCH(QString, html);
    GUI_Update dialog;
    dialog.setSummary(html);
    dialog.setState(2);
    dialog.show();
    dialog.grab();
    QCOMPARE(dialog.size(), QSize(470, 420));
    QVERIFY(textOf(dialog)->toPlainText().size() <= 10000);
}

X9_GUI_TEST(tst_GUI_Update)
#include "tst_GUI_Update.moc"
