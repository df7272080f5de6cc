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
}

void applyApplicationLook(QApplication &application)
{
    initResources();
    // Where the font is not installed; the frame table asks for it by name as well.
    QFont::insertSubstitution(QStringLiteral("Microsoft Yahei"), QStringLiteral("Noto Sans CJK SC"));
    QApplication::setFont(QFont(QStringLiteral("Microsoft Yahei"), FontPointSize));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Logo/Logo16x16.ico")));
    application.setStyleSheet(QStringLiteral("file:///:/Skins/White/White.css"));
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
