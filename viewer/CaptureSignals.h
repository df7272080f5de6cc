#pragma once

#include "viewer/core/CaptureDatabases.h"
#include "viewer/ViewerSettings.h"

#include <optional>

class CaptureTab;
class DatabasePanel;
class SignalPanel;
class ValuePanel;

/// All that a capture's tab has to do with signals: its databases, and the panels for the selected frame, for the last
/// values and for the databases, which it adds to the tab.
class CaptureSignals : public QObject
{
    Q_OBJECT

public:
    /// tab must outlive this, and its capture as well. The panels go with this.
    explicit CaptureSignals(CaptureTab &tab);
    ~CaptureSignals() override;

    CaptureDatabases &databases() { return m_databases; }
    /// Takes the databases that the capture had the last time, and keeps those that are added from now on.
    void remember(const ViewerSettings &settings);
    void add(const QStringList &paths);
    /// By a dialog.
    void askForDatabases();
    void showDatabases();

signals:
    /// An expression of the filters' language.
    void sig_plotWanted(const QString &expression);
    /// For the line below the frames.
    void sig_told(const QString &text);

private slots:
    void slot_sourceChanged();
    void slot_rowChanged();
    void slot_loaded(int failed);

private:
    void connectPanels();

    CaptureTab &m_tab;
    CaptureDatabases m_databases;
    std::optional<ViewerSettings> m_settings;
    SignalPanel *m_frame;
    ValuePanel *m_values;
    DatabasePanel *m_files;
};
