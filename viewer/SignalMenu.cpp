#include "viewer/SignalMenu.h"

#include "viewer/CaptureSignals.h"
#include "viewer/CaptureTab.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace {

/// A path as the text of an entry.
QString entryText(const QString &path)
{
    return QDir::toNativeSeparators(path).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

SignalMenu::SignalMenu(ViewerSettings settings, std::function<CaptureTab *()> current, QWidget *parent)
    : QMenu(tr("Sig&nals"), parent)
    , m_settings(std::move(settings))
    , m_current(std::move(current))
{
    setObjectName(QStringLiteral("signalMenu"));
    addTabAction(tr("&Add database..."), [](CaptureTab &tab) {
        tab.captureSignals().askForDatabases();
    })->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
    m_recent = addMenu(tr("Add &recent"));
    m_recent->setObjectName(QStringLiteral("recentDatabases"));
    m_remove = addMenu(tr("Re&move"));
    m_remove->setObjectName(QStringLiteral("removeMenu"));
    addSeparator();
    m_reload = addTabAction(tr("&Load again"), [](CaptureTab &tab) { tab.captureSignals().databases().reload(); });
    addTabAction(tr("&Databases of the capture"), [](CaptureTab &tab) { tab.captureSignals().showDatabases(); });
    connect(this, &QMenu::aboutToShow, this, &SignalMenu::slot_fill);
}

QAction *SignalMenu::addTabAction(const QString &text, std::function<void(CaptureTab &)> function)
{
    return addAction(text, this, [this, function = std::move(function)] {
        if (CaptureTab *tab = m_current()) {
            function(*tab);
        }
    });
}

void SignalMenu::slot_fill()
{
    CaptureTab *tab = m_current();
    const QList<QAction *> entries = actions();
    for (QAction *action : entries) {
        action->setEnabled(tab != nullptr);
    }
    m_recent->clear();
    m_remove->clear();
    if (tab == nullptr) {
        return;
    }
    const QStringList recent = m_settings.recentDatabases();
    for (const QString &path : recent) {
        QAction *action = m_recent->addAction(entryText(path), tab, [tab, path] { tab->captureSignals().add({path}); });
        action->setEnabled(QFileInfo::exists(path));
    }
    CaptureDatabases &databases = tab->captureSignals().databases();
    for (std::size_t i = 0; i < databases.entries().size(); ++i) {
        const DatabaseChoice &choice = databases.entries()[i].choice;
        const QString channels = DatabaseChoices::channelText(choice.channels);
        m_remove->addAction(channels.isEmpty() ? entryText(choice.path)
                                               : tr("%1, channels %2").arg(entryText(choice.path), channels),
                            tab, [tab, i] { tab->captureSignals().databases().remove(static_cast<int>(i)); });
    }
    m_recent->setEnabled(!m_recent->isEmpty());
    m_remove->setEnabled(!m_remove->isEmpty());
    m_reload->setEnabled(!m_remove->isEmpty());
}
