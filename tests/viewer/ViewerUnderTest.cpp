// The whole viewer, watched by a test: what its tabs say is appended to the file X9_LOG as it changes, a line each, and
// the window is closed as soon as a file named "close" lies in the working directory.

#include "viewer/CaptureTab.h"
#include "viewer/ViewerApplication.h"
#include "viewer/ViewerWindow.h"

#include <QApplication>
#include <QFile>
#include <QTabWidget>
#include <QTimer>

namespace {

constexpr int LookMs = 20;

void log(const QString &line)
{
    QFile file(qEnvironmentVariable("X9_LOG"));
    if (file.open(QIODevice::Append | QIODevice::Text)) {
        file.write(line.toUtf8() + '\n');
    }
}

ViewerWindow *window()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *found = qobject_cast<ViewerWindow *>(widget)) {
            return found;
        }
    }
    return nullptr;
}

/// "NAME: ROWS rows: STATE"; language plays no part.
QString state(const QTabWidget &tabs, int index)
{
    static const QStringList names{QStringLiteral("Loading"),   QStringLiteral("Following"), QStringLiteral("Finished"),
                                   QStringLiteral("Cancelled"), QStringLiteral("Failed"),    QStringLiteral("Full")};
    auto *tab = qobject_cast<CaptureTab *>(tabs.widget(index));
    return QStringLiteral("%1: %2 rows: %3")
        .arg(tabs.tabText(index))
        .arg(tab->capture().rowCount())
        .arg(names.value(static_cast<int>(tab->capture().loader().progress().state)));
}

void look()
{
    static QStringList told;
    ViewerWindow *shown = window();
    if (shown == nullptr) {
        return;
    }
    const auto *tabs = shown->findChild<QTabWidget *>(QStringLiteral("tabs"));
    QStringList states;
    for (int index = 0; index < tabs->count(); ++index) {
        states.append(state(*tabs, index));
        if (states.last() != told.value(index)) {
            log(states.last());
        }
    }
    told = states;
    if (shown->isVisible() && QFile::exists(QStringLiteral("close"))) {
        log(QStringLiteral("closing"));
        shown->close();
    }
}

void startLooking()
{
    auto *timer = new QTimer(QCoreApplication::instance());
    QObject::connect(timer, &QTimer::timeout, timer, look);
    timer->start(LookMs);
}
Q_COREAPP_STARTUP_FUNCTION(startLooking)

} // namespace

int main(int argc, char *argv[])
{
    return runViewer(argc, argv);
}
