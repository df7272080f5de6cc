#include "app/ApplicationSetup.h"

#include "resources/Resources.h"
#include "widgets/ModalMasks.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QLibraryInfo>

namespace {
constexpr int LanguageChinese = 0;
constexpr int FontPointSize = 9;
} // namespace

void setApplicationAttributes()
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // 125 % and 150 % as they are set, instead of 100 % and 200 %, with which the window is larger than many screens.
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void applyApplicationLook(QApplication &application)
{
    initResources();
    // Where the font is not installed; the frame table and the update dialog ask for it by name as well.
    for (const QString &name : {QStringLiteral("Microsoft Yahei"), QStringLiteral("\u5fae\u8f6f\u96c5\u9ed1")}) {
        QFont::insertSubstitution(name, QStringLiteral("Noto Sans CJK SC"));
    }
    QApplication::setStyle(QStringLiteral("Fusion")); // under the style sheet: sizes and pictures alike on all systems
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Logo/Logo16x16.ico")));
    application.setStyleSheet(QStringLiteral("file:///:/Skins/White/White.css"));
    // After the style and the style sheet, which give menus and item views the system's fonts back.
    QApplication::setFont(QFont(QStringLiteral("Microsoft Yahei"), FontPointSize));
    new ModalMasks(&application);
}

bool installLanguage(Translators &translators, int language)
{
    initResources();
    const bool isChinese = language == LanguageChinese;
    if (isChinese && translators.toolkit.load(QStringLiteral("qtbase_zh_CN"),
                                              QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&translators.toolkit);
    }
    return translators.program.load(isChinese ? QStringLiteral(":/Language/CN.qm")
                                              : QStringLiteral(":/Language/EN.qm")) &&
           QApplication::installTranslator(&translators.program);
}
