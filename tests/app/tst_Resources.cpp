#include "resources/Resources.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSet>
#include <QSpinBox>
#include <QStyleOptionButton>
#include <QStyleOptionToolButton>
#include <QTableWidget>
#include <QTabWidget>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {
const QString styleSheetPath = QStringLiteral(":/Skins/White/White.css");
constexpr int buttonClasses = 7;

QString buttonClass(int number)
{
    return QStringLiteral("tBtnStyle_%1").arg(number);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Pixels are read one by one here: converting or scaling a whole picture makes Qt start threads for it, inside which
// the thread sanitizer cannot see.

/// The colours of the pixels that hide what is behind them.
QSet<QRgb> solidColours(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255) {
                colours.insert(image.pixel(x, y));
            }
        }
    }
    return colours;
}

/// Whether doubled is only picture with every pixel four times.
bool isEnlarged(const QImage &doubled, const QImage &picture)
{
    for (int y = 0; y < doubled.height(); ++y) {
        for (int x = 0; x < doubled.width(); ++x) {
            if (doubled.pixel(x, y) != picture.pixel(x / 2, y / 2)) {
                return false;
            }
        }
    }
    return true;
}

struct Message
{
    QString context;
    QString source;
    QString comment;
    QString translation;
    bool finished = true;
};

QVector<Message> messagesOf(const QString &name, QString *error)
{
    QFile file(QStringLiteral(X9_TRANSLATIONS "/") + name);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
    }
    QXmlStreamReader xml(&file);
    QVector<Message> messages;
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            messages.append({context, {}, {}, {}, true});
        } else if (xml.name() == QLatin1String("source")) {
            messages.last().source = xml.readElementText();
        } else if (xml.name() == QLatin1String("comment")) {
            messages.last().comment = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            messages.last().finished = !xml.attributes().hasAttribute(QLatin1String("type"));
            messages.last().translation = xml.readElementText();
        }
    }
    if (xml.hasError()) {
        *error = xml.errorString();
    }
    return messages;
}

QString translated(const QTranslator &translator, const Message &message)
{
    return translator.translate(message.context.toUtf8().constData(), message.source.toUtf8().constData(),
                                message.comment.isEmpty() ? nullptr : message.comment.toUtf8().constData());
}

const QVector<QPair<QString, QStyle::State>> &buttonStates()
{
    static const QVector<QPair<QString, QStyle::State>> states = {
        {QString(), QStyle::State_Enabled},
        {QStringLiteral(":hover"), QStyle::State_Enabled | QStyle::State_MouseOver},
        {QStringLiteral(":pressed"), QStyle::State_Enabled | QStyle::State_MouseOver | QStyle::State_Sunken},
        {QStringLiteral(":disabled"), QStyle::State_None},
        {QStringLiteral(":checked"), QStyle::State_Enabled | QStyle::State_On},
    };
    return states;
}

void paintButton(QPainter *painter, QPushButton *button, QStyle::State state)
{
    QStyleOptionButton option;
    option.initFrom(button);
    option.state = state;
    option.text = button->text();
    button->style()->drawControl(QStyle::CE_PushButton, &option, painter, button);
}

void paintButton(QPainter *painter, QToolButton *button, QStyle::State state)
{
    QStyleOptionToolButton option;
    option.initFrom(button);
    option.state = state;
    option.text = button->text();
    option.font = button->font();
    option.subControls = QStyle::SC_ToolButton;
    option.toolButtonStyle = Qt::ToolButtonTextOnly;
    button->style()->drawComplexControl(QStyle::CC_ToolButton, &option, painter, button);
}

/// A button of the class as it looks in the state, on white.
template<class Button>
QImage pictureOf(const QString &nav, QStyle::State state)
{
    Button button;
    button.setText(QStringLiteral("Start"));
    button.setCheckable(true);
    button.setProperty("nav", nav);
    button.ensurePolished();
    button.resize(button.sizeHint());
    QImage picture(button.size(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    paintButton(&painter, &button, state);
    return picture;
}

template<class Button>
void compareStates(const QString &nav)
{
    const auto &states = buttonStates();
    for (int i = 0; i < states.size(); ++i) {
        const QImage picture = pictureOf<Button>(nav, states[i].second);
        for (int j = 0; j < i; ++j) {
            const QString pair = QStringLiteral("%1 %2 and %3").arg(nav, states[i].first, states[j].first);
            QVERIFY2(picture != pictureOf<Button>(nav, states[j].second), qPrintable(pair));
        }
        const QImage focused = pictureOf<Button>(nav, QStyle::State_Enabled | QStyle::State_HasFocus);
        QVERIFY2(picture != focused, qPrintable(nav + states[i].first + QStringLiteral(" and focus")));
    }
}

/// A window with one of every control that the style sheet knows; it owns them.
std::unique_ptr<QMainWindow> windowWithAllControls()
{
    auto window = std::make_unique<QMainWindow>();
    auto *toolBar = window->addToolBar(QStringLiteral("ToolBar"));
    auto *toolButton = new QToolButton;
    toolButton->setProperty("nav", buttonClass(5));
    toolButton->setPopupMode(QToolButton::InstantPopup);
    toolButton->setMenu(new QMenu(toolButton));
    toolBar->addWidget(toolButton);

    auto *tabs = new QTabWidget;
    tabs->setTabsClosable(true);
    auto *page = new QGroupBox(QStringLiteral("Group"));
    auto *layout = new QHBoxLayout(page);
    const std::initializer_list<QWidget *> controls = {
        new QLineEdit,   new QComboBox,  new QSpinBox,       new QCheckBox,   new QRadioButton, new QProgressBar,
        new QListWidget, new QScrollBar, new QPlainTextEdit, new QPushButton, new QDialog,      new QTableWidget(2, 2)};
    for (QWidget *control : controls) {
        layout->addWidget(control);
    }
    for (int number = 0; number < buttonClasses; ++number) {
        auto *button = new QPushButton(QString::number(number));
        button->setProperty("nav", buttonClass(number));
        layout->addWidget(button);
    }
    tabs->addTab(page, QStringLiteral("Tab"));
    window->setCentralWidget(tabs);
    return window;
}

QStringList reported;

void report(QtMsgType, const QMessageLogContext &, const QString &text)
{
    reported.append(text);
}
} // namespace

class tst_Resources : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase();
    static void pathExists_data();
    static void pathExists();
    static void pictureIsDrawn_data();
    static void pictureIsDrawn();
    static void picturesDiffer();
    static void applicationIcon();
    static void translatorLoads_data();
    static void translatorLoads();
    static void labelsOfSavedFrames_data();
    static void labelsOfSavedFrames();
    static void dataFrameAndDataHeading();
    static void englishKeepsItsSpellings();
    static void everyMessageIsTranslated();
    static void everyMessageIsChinese();
    static void englishHasTheSameKeys();
    static void fileFiltersKeepTheirPatterns();
    static void styleSheetNamesEveryState_data();
    static void styleSheetNamesEveryState();
    static void buttonStatesLookDifferent_data();
    static void buttonStatesLookDifferent();
    static void buttonClassesLookDifferent();
    static void styleSheetPicturesExist();
    static void styleSheetLeavesTableItemsAlone();
    static void styleSheetAppliesWithoutComplaint();
    static void controlsAreCompact();
    static void focusIsVisible();
};

void tst_Resources::initTestCase()
{
    initResources();
    QApplication::setFont(QFont(QStringLiteral("Microsoft Yahei"), 9));
    qApp->setStyleSheet(QStringLiteral("file:///") + styleSheetPath);
}

void tst_Resources::pathExists_data()
{
    QTest::addColumn<QString>("path");
    const char *const paths[] = {":/32x32/Images/32x32/Parameter.png",
                                 ":/32x32/Images/32x32/Close.png",
                                 ":/32x32/Images/32x32/Clear.png",
                                 ":/32x32/Images/32x32/Undo.png",
                                 ":/32x32/Images/32x32/Redo.png",
                                 ":/32x32/Images/32x32/Connect.png",
                                 ":/32x32/Images/32x32/About.png",
                                 ":/32x32/Images/32x32/Language.png",
                                 ":/32x32/Images/32x32/Send.png",
                                 ":/32x32/Images/32x32/Save.png",
                                 ":/32x32/Images/32x32/Filter.png",
                                 ":/32x32/Images/32x32/Stop.png",
                                 ":/32x32/Images/32x32/Pause.png",
                                 ":/32x32/Images/32x32/Play.png",
                                 ":/128x128/Images/128x128/Success.png",
                                 ":/128x128/Images/128x128/Error.png",
                                 ":/128x128/Images/128x128/Download.png",
                                 ":/Images/MsgInfo.png",
                                 ":/Images/MsgWarnning.png",
                                 ":/Images/MsgQuestion.png",
                                 ":/Images/MsgError.png",
                                 ":/Images/MsgAbout.png",
                                 ":/Logo/Logo16x16.ico",
                                 ":/Skins/White/White.css",
                                 ":/Language/CN.qm",
                                 ":/Language/EN.qm"};
    for (const char *path : paths) {
        QTest::newRow(path) << QString::fromLatin1(path);
    }
}

void tst_Resources::pathExists()
{
    QFETCH(QString, path);
    QVERIFY(QFile::exists(path));
    QVERIFY(!contentOf(path).isEmpty());
}

void tst_Resources::pictureIsDrawn_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("colours");
    const struct
    {
        const char *folder;
        int size; // 0: the folder holds several sizes
        int colours;
        int count;
    } folders[] = {{":/32x32/Images/32x32", 32, 2, 14},
                   {":/128x128/Images/128x128", 128, 2, 3},
                   {":/Images", 32, 2, 5},
                   {":/Skins/White/Images", 0, 1, 12}};
    for (const auto &folder : folders) {
        const QDir dir(QString::fromLatin1(folder.folder));
        int count = 0;
        const QStringList names = dir.entryList({QStringLiteral("*.png")});
        for (const QString &name : names) {
            if (name.contains(QLatin1String("@2x"))) {
                continue;
            }
            ++count;
            QTest::newRow(qPrintable(dir.filePath(name))) << dir.filePath(name) << folder.size << folder.colours;
        }
        QVERIFY2(count == folder.count, folder.folder);
    }
}

void tst_Resources::pictureIsDrawn()
{
    QFETCH(QString, path);
    QFETCH(int, size);
    QFETCH(int, colours);
    const QImage picture(path);
    QVERIFY(!picture.isNull());
    if (size != 0) {
        QCOMPARE(picture.size(), QSize(size, size));
    }
    QVERIFY2(solidColours(picture).size() >= colours, qPrintable(path));
    QVERIFY(qAlpha(picture.pixel(0, 0)) == 0);

    QString doubledPath = path;
    const QImage doubled(doubledPath.replace(QLatin1String(".png"), QLatin1String("@2x.png")));
    QCOMPARE(doubled.size(), 2 * picture.size());
    QVERIFY(solidColours(doubled).size() >= colours);
    QVERIFY(!isEnlarged(doubled, picture));
}

void tst_Resources::picturesDiffer()
{
    QHash<QByteArray, QString> seen;
    for (const char *folder :
         {":/32x32/Images/32x32", ":/128x128/Images/128x128", ":/Images", ":/Skins/White/Images"}) {
        const QDir dir(QString::fromLatin1(folder));
        for (const QString &name : dir.entryList({QStringLiteral("*.png")})) {
            const QByteArray content = contentOf(dir.filePath(name));
            QVERIFY2(!seen.contains(content), qPrintable(name + QLatin1String(" equals ") + seen.value(content)));
            seen.insert(content, name);
        }
    }
    QCOMPARE(seen.size(), 2 * (14 + 3 + 5 + 12));
}

void tst_Resources::applicationIcon()
{
    QImageReader reader(QStringLiteral(":/Logo/Logo16x16.ico"));
    QList<int> widths;
    for (int i = 0; i < reader.imageCount(); ++i) {
        QVERIFY(reader.jumpToImage(i));
        const QImage picture = reader.read();
        QCOMPARE(picture.width(), picture.height());
        QVERIFY(solidColours(picture).size() > 1);
        widths.append(picture.width());
    }
    QCOMPARE(widths, QList<int>({16, 24, 32, 48, 256}));
}

void tst_Resources::translatorLoads_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("context");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("text");
    const struct
    {
        const char *context;
        const char *key;
        const char *chinese;
    } texts[] = {{"CTableViewCAN", "Revice", "接收"},
                 {"CTableViewCAN", "None", "无"},
                 {"CTableViewCAN", "Send successfully", "发送成功"},
                 {"CTableViewCAN", "Send failure", "发送失败"},
                 {"GUI_CanDevice", "Sending cycle:", "发送周期："},
                 {"GUI_CanDevice", "Pause receiving", "暂停接收"},
                 {"GUI_CanDevice", "File saving failure!", "文件保存失败！"},
                 {"GUI_CanView", "Connect", "连接"},
                 {"GUI_CanView", "Software information", "软件信息"},
                 {"GUI_CanView", "Device turned off", "设备已关闭"}};
    for (const auto &text : texts) {
        const QByteArray name = QByteArray(text.context) + ' ' + text.key;
        QTest::newRow(QByteArray("CN " + name).constData())
            << QStringLiteral("CN") << QStringLiteral("zh_CN") << QByteArray(text.context) << QByteArray(text.key)
            << QString::fromUtf8(text.chinese);
        QTest::newRow(QByteArray("EN " + name).constData())
            << QStringLiteral("EN") << QStringLiteral("en") << QByteArray(text.context) << QByteArray(text.key)
            << QString::fromLatin1(text.key);
    }
}

void tst_Resources::translatorLoads()
{
    QFETCH(QString, file);
    QFETCH(QString, language);
    QFETCH(QByteArray, context);
    QFETCH(QByteArray, key);
    QFETCH(QString, text);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/%1.qm").arg(file)));
    QCOMPARE(translator.language(), language);
    QCOMPARE(translator.translate(context.constData(), key.constData()), text);
}

void tst_Resources::labelsOfSavedFrames_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("label");
    QTest::newRow("standard") << QByteArray("Standard") << QStringLiteral("标准帧");
    QTest::newRow("extended") << QByteArray("Extend") << QStringLiteral("扩展帧");
    QTest::newRow("rate switch") << QByteArray("CANFD Speed") << QStringLiteral("CANFD加速");
}

// A saved text file carries these labels and is read back by them.
void tst_Resources::labelsOfSavedFrames()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, label);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QCOMPARE(translator.translate("CTableViewCAN", key.constData()), label);
    QCOMPARE(translator.translate("GUI_CanDevice", key.constData()), label);
}

void tst_Resources::dataFrameAndDataHeading()
{
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QCOMPARE(translator.translate("CTableViewCAN", "Data"), QStringLiteral("数据"));
    QCOMPARE(translator.translate("CTableViewCAN", "Data", "frame format"), QStringLiteral("数据帧"));
    QCOMPARE(translator.translate("GUI_CanDevice", "Data"), QStringLiteral("数据帧"));
}

void tst_Resources::englishKeepsItsSpellings()
{
    QString error;
    const QVector<Message> messages = messagesOf(QStringLiteral("EN.ts"), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY(!messages.isEmpty());
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/EN.qm")));
    for (const Message &message : messages) {
        QVERIFY2(message.finished, qPrintable(message.source));
        QCOMPARE(translated(translator, message), message.source);
    }
}

void tst_Resources::everyMessageIsTranslated()
{
    QString error;
    const QVector<Message> messages = messagesOf(QStringLiteral("CN.ts"), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QSet<QString> contexts;
    for (const Message &message : messages) {
        contexts.insert(message.context);
        QVERIFY2(message.finished, qPrintable(message.source));
        QVERIFY2(!message.translation.isEmpty(), qPrintable(message.source));
        QCOMPARE(translated(translator, message), message.translation);
    }
    const QSet<QString> needed = {QStringLiteral("CTableViewCAN"), QStringLiteral("GUI_CanDevice"),
                                  QStringLiteral("GUI_CanView")};
    QVERIFY(contexts.contains(needed));
}

// Left as they are: the names of protocols and formats, a language's name for itself, letters with units.
void tst_Resources::everyMessageIsChinese()
{
    const QSet<QString> unchanged = {QStringLiteral("CAN"),
                                     QStringLiteral("CANFD"),
                                     QStringLiteral("LIN"),
                                     QStringLiteral("English"),
                                     QStringLiteral("ASC"),
                                     QStringLiteral("BLF"),
                                     QStringLiteral("TRC 2.1"),
                                     QStringLiteral("pcap, SocketCAN"),
                                     QStringLiteral("pcapng, SocketCAN"),
                                     QStringLiteral("LIN [bit/s]"),
                                     QStringLiteral("B - A"),
                                     QStringLiteral("B - A [1/s]"),
                                     QStringLiteral("B - A [ms]"),
                                     QStringLiteral(" ms")};
    const QRegularExpression chinese(QStringLiteral("\\p{Han}"));
    const QRegularExpression letter(QStringLiteral("\\p{L}")); // of which signs alone have none
    QString error;
    const QVector<Message> messages = messagesOf(QStringLiteral("CN.ts"), &error);
    QVERIFY(!messages.isEmpty());
    for (const Message &message : messages) {
        if (!unchanged.contains(message.source) && message.source.contains(letter)) {
            QVERIFY2(chinese.match(message.translation).hasMatch(), qPrintable(message.source));
        }
    }
}

void tst_Resources::englishHasTheSameKeys()
{
    const auto keys = [](const QString &file) {
        QString error;
        QStringList found;
        for (const Message &message : messagesOf(file, &error)) {
            found.append(message.context + QLatin1Char('/') + message.source + QLatin1Char('/') + message.comment);
        }
        found.sort();
        return found;
    };
    const QStringList chinese = keys(QStringLiteral("CN.ts"));
    QCOMPARE(keys(QStringLiteral("EN.ts")), chinese);
    QCOMPARE(QSet<QString>(chinese.begin(), chinese.end()).size(), chinese.size());
}

void tst_Resources::fileFiltersKeepTheirPatterns()
{
    const auto patterns = [](const QString &filter) {
        QStringList found;
        auto match = QRegularExpression(QStringLiteral("\\(\\*[^)]*\\)")).globalMatch(filter);
        while (match.hasNext()) {
            found.append(match.next().captured());
        }
        return found;
    };
    QString error;
    int filters = 0;
    for (const Message &message : messagesOf(QStringLiteral("CN.ts"), &error)) {
        if (!message.source.contains(QLatin1String("(*"))) {
            continue;
        }
        ++filters;
        QCOMPARE(patterns(message.translation), patterns(message.source));
        QCOMPARE(message.translation.count(QLatin1String(";;")), message.source.count(QLatin1String(";;")));
    }
    QVERIFY(filters >= 2);
}

void tst_Resources::styleSheetNamesEveryState_data()
{
    QTest::addColumn<QString>("selector");
    for (int number = 0; number < buttonClasses; ++number) {
        for (const auto &state : buttonStates()) {
            for (const QString &widget : {QStringLiteral("QPushButton"), QStringLiteral("QToolButton")}) {
                const QString selector =
                    QStringLiteral("%1[nav=\"%2\"]%3").arg(widget, buttonClass(number), state.first);
                QTest::newRow(qPrintable(selector)) << selector;
            }
        }
    }
}

void tst_Resources::styleSheetNamesEveryState()
{
    QFETCH(QString, selector);
    const QString sheet = QString::fromUtf8(contentOf(styleSheetPath));
    const QRegularExpression rule(QStringLiteral("(^|[,}/]\\s*)%1\\s*(,[^{}]*)?\\{[^{}]*(color|border|background)")
                                      .arg(QRegularExpression::escape(selector)),
                                  QRegularExpression::MultilineOption);
    QVERIFY(rule.isValid());
    QVERIFY(rule.match(sheet).hasMatch());
}

void tst_Resources::buttonStatesLookDifferent_data()
{
    QTest::addColumn<QString>("nav");
    QTest::newRow("none") << QString();
    for (int number = 0; number < buttonClasses; ++number) {
        QTest::newRow(qPrintable(buttonClass(number))) << buttonClass(number);
    }
}

void tst_Resources::buttonStatesLookDifferent()
{
    QFETCH(QString, nav);
    compareStates<QPushButton>(nav);
    if (!nav.isEmpty()) {
        compareStates<QToolButton>(nav);
    }
}

void tst_Resources::buttonClassesLookDifferent()
{
    for (int number = 1; number < buttonClasses; ++number) {
        const QImage picture = pictureOf<QPushButton>(buttonClass(number), QStyle::State_Enabled);
        for (int other = 0; other < number; ++other) {
            QVERIFY(picture != pictureOf<QPushButton>(buttonClass(other), QStyle::State_Enabled));
        }
    }
}

void tst_Resources::styleSheetPicturesExist()
{
    const QString sheet = QString::fromUtf8(contentOf(styleSheetPath));
    auto urls = QRegularExpression(QStringLiteral("url\\(([^)]*)\\)")).globalMatch(sheet);
    QSet<QString> used;
    while (urls.hasNext()) {
        used.insert(urls.next().captured(1));
    }
    for (const QString &path : qAsConst(used)) {
        QVERIFY2(!QImage(path).isNull(), qPrintable(path));
    }
    QCOMPARE(used.size(), 12);
}

// The frame table lays out its cells itself and would be slowed down by a rule of its own.
void tst_Resources::styleSheetLeavesTableItemsAlone()
{
    const QByteArray sheet = contentOf(styleSheetPath);
    QVERIFY(sheet.contains("QTableView"));
    QVERIFY(!sheet.contains("QTableView::item"));
    QVERIFY(!sheet.contains("QAbstractItemView::item"));
}

void tst_Resources::styleSheetAppliesWithoutComplaint()
{
    qApp->setStyleSheet(QString());
    reported.clear();
    const QtMessageHandler before = qInstallMessageHandler(report);
    qApp->setStyleSheet(QStringLiteral("file:///") + styleSheetPath);
    const QPixmap picture = windowWithAllControls()->grab();
    qInstallMessageHandler(before);
    QCOMPARE(reported, QStringList());
    QVERIFY(!picture.isNull());
}

void tst_Resources::controlsAreCompact()
{
    const auto window = windowWithAllControls();
    const auto checkHeight = [](const QWidget *control) {
        QVERIFY(control != nullptr);
        const int height = control->sizeHint().height();
        QVERIFY2(height >= 24 && height <= 26,
                 qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(control->metaObject()->className()),
                                                         QString::number(height))));
    };
    window->grab();
    checkHeight(window->findChild<QLineEdit *>(QString()));
    checkHeight(window->findChild<QComboBox *>());
    checkHeight(window->findChild<QSpinBox *>());
    for (const QPushButton *button : window->findChildren<QPushButton *>()) {
        checkHeight(button);
    }
}

void tst_Resources::focusIsVisible()
{
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    const QVector<QWidget *> controls = {new QPushButton, new QComboBox, new QSpinBox, new QCheckBox, new QRadioButton};
    for (QWidget *control : controls) {
        layout->addWidget(control);
    }
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    for (int i = 0; i < controls.size(); ++i) {
        controls[(i + 1) % controls.size()]->setFocus(Qt::TabFocusReason);
        const QImage without = controls[i]->grab().toImage();
        controls[i]->setFocus(Qt::TabFocusReason);
        QVERIFY(controls[i]->hasFocus());
        QVERIFY2(controls[i]->grab().toImage() != without, controls[i]->metaObject()->className());
    }
}

X9_GUI_TEST(tst_Resources)

#include "tst_Resources.moc"
