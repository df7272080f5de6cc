#include "viewer/CaptureSignals.h"

#include "viewer/CaptureTab.h"
#include "viewer/DatabasePanel.h"
#include "viewer/SignalPanel.h"
#include "viewer/ValuePanel.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QScrollBar>
#include <QTabWidget>

CaptureSignals::CaptureSignals(CaptureTab &tab)
    : m_tab(tab)
    , m_databases(tab.capture())
    , m_frame(new SignalPanel(tab.capture()))
    , m_values(new ValuePanel(tab.capture()))
    , m_files(new DatabasePanel(m_databases))
{
    QTabWidget &panels = tab.panels();
    panels.addTab(m_frame, tr("Signals"));
    panels.addTab(m_values, tr("Values"));
    panels.addTab(m_files, tr("Databases"));
    connectPanels();
}

CaptureSignals::~CaptureSignals()
{
    delete m_frame;
    delete m_values;
    delete m_files;
}

void CaptureSignals::connectPanels()
{
    connect(&m_tab, &CaptureTab::sig_currentRowChanged, m_frame, &SignalPanel::setRow);
    connect(&m_tab, &CaptureTab::sig_currentRowChanged, this, &CaptureSignals::slot_rowChanged);
    connect(m_tab.table().verticalScrollBar(), &QScrollBar::valueChanged, this, &CaptureSignals::slot_rowChanged);
    connect(&m_tab.capture(), &OpenCapture::sig_signalSourceChanged, this, &CaptureSignals::slot_sourceChanged);
    connect(m_frame, &SignalPanel::sig_plotWanted, this, &CaptureSignals::sig_plotWanted);
    connect(m_values, &ValuePanel::sig_plotWanted, this, &CaptureSignals::sig_plotWanted);
    connect(m_values, &ValuePanel::sig_filterWanted, &m_tab.table(),
            [this](const QString &filter) { emit m_tab.table().sig_filterWanted(filter, false); });
    connect(m_values, &ValuePanel::sig_rowWanted, &m_tab, &CaptureTab::showRow);
    connect(m_files, &DatabasePanel::sig_addWanted, this, &CaptureSignals::askForDatabases);
    connect(&m_databases, &CaptureDatabases::sig_loaded, this, &CaptureSignals::slot_loaded);
    connect(&m_databases, &CaptureDatabases::sig_notKept, this,
            [this] { emit sig_told(tr("The databases of this capture cannot be remembered.")); });
}

void CaptureSignals::remember(const ViewerSettings &settings)
{
    m_settings = settings;
    m_databases.remember(settings.databaseFolder());
}

void CaptureSignals::add(const QStringList &paths)
{
    if (paths.isEmpty()) {
        return;
    }
    m_databases.add(paths);
    for (const QString &path : paths) {
        if (m_settings) {
            m_settings->addRecentDatabase(path);
        }
    }
}

void CaptureSignals::askForDatabases()
{
    add(QFileDialog::getOpenFileNames(&m_tab, tr("Add databases"), {},
                                      tr("Databases (*.dbc *.ldf *.DBC *.LDF);;All files (*)")));
}

void CaptureSignals::showDatabases()
{
    m_tab.showPanels(true);
    m_tab.panels().setCurrentWidget(m_files);
    m_files->setFocus();
}

void CaptureSignals::slot_sourceChanged()
{
    const auto source = std::dynamic_pointer_cast<const DatabaseSignals>(m_tab.capture().signalSource());
    m_frame->setSource(source);
    m_values->setSource(source);
}

/// The values are those at the selected frame. While the table stays at the end of a capture that grows, and the
/// selected frame has left the screen, they are those at the end.
void CaptureSignals::slot_rowChanged()
{
    const FrameTableView &table = m_tab.table();
    const bool isLeft = table.isAtEnd() && table.currentPlace() < table.firstVisible();
    m_values->setRow(isLeft ? -1 : table.currentRow());
}

void CaptureSignals::slot_loaded(int failed)
{
    if (failed >= 0) {
        const CaptureDatabases::Entry &entry = m_databases.entries()[static_cast<std::size_t>(failed)];
        m_files->select(failed);
        m_tab.panels().setCurrentWidget(m_files);
        emit sig_told(entry.error);
    }
}
