#include "viewer/ViewerApplication.h"

#include "resources/Resources.h"
#include "viewer/ViewerSettings.h"
#include "viewer/ViewerWindow.h"
#include "widgets/ProcessStart.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QLibraryInfo>

void setViewerAttributes()
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void applyViewerLook()
{
    initResources();
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Logo/Viewer.ico")));
}

bool installViewerLanguage(ViewerTranslators &translators, const QString &language)
{
    initResources();
    if (language == QLatin1String("CN") &&
        translators.toolkit.load(QStringLiteral("qtbase_zh_CN"),
                                 QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&translators.toolkit);
    }
    return translators.program.load(QStringLiteral(":/Language/%1.qm").arg(language)) &&
           QApplication::installTranslator(&translators.program);
}

int runViewer(int &argc, char **argv)
{
    prepareProcess();
    setViewerAttributes();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("X9Viewer"));
    applyViewerLook();
    const ViewerSettings settings;
    ViewerTranslators translators;
    installViewerLanguage(translators, settings.language());
    ViewerWindow window(settings);
    window.show();
    window.openFiles(QApplication::arguments().mid(1));
    return QApplication::exec();
}
