#pragma once

#include "viewer/CaptureSearch.h"
#include "viewer/core/OpenCapture.h"
#include "viewer/FilterEdit.h"
#include "viewer/FrameTableView.h"
#include "viewer/OverviewModel.h"

#include <QTimer>
#include <QWidget>

class CaptureSignals;
class PlotPanel;
class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;
class QTabWidget;
class TableLook;
class TableSettings;

/// A capture in a tab: its filter, its frames, its identifiers, and how far it has been loaded.
class CaptureTab : public QWidget
{
    Q_OBJECT

public:
    /// Loads a file and follows it.
    CaptureTab(const QString &path, const StoreLoader::Open &open, const QString &bookmarkFolder,
               QWidget *parent = nullptr);
    ~CaptureTab() override;

    OpenCapture &capture() { return m_capture; }
    const OpenCapture &capture() const { return m_capture; }
    FrameTableView &table() { return *m_table; }
    /// Columns, colours and filters that were used lately, for all tabs; settings must outlive this.
    void setSettings(TableSettings &settings);
    /// After setSettings().
    TableLook &look() { return *m_look; }
    /// The panels below the frames: the overview and others, each under a tab of its own.
    QTabWidget &panels() { return *m_panels; }
    CaptureSignals &captureSignals() { return *m_signals; }
    PlotPanel &plots() { return *m_plots; }
    void showPanels(bool isShown);
    /// Makes a row the current one, or where the filter does not pass it, the next one that is shown.
    void showRow(qint64 row);
    QString filterText() const { return m_filter->text(); }
    /// An expression of the filters' language, such as a signal's name; shows the plots.
    void plot(const QString &expression);
    /// In place of the filter that was there.
    void filterBy(const QString &filter);
    void editFilter();
    void editFind();
    void findNext(bool isBackward);
    void goTo();
    void toggleMark();
    void editBookmark();
    void goToBookmark(bool isBackward);
    /// Without a note the bookmark goes.
    void setBookmark(qint64 row, const QString &note);

signals:
    /// The row of the capture that is selected; -1: none.
    void sig_currentRowChanged(qint64 row);
    void sig_bookmarksChanged();
    void sig_loadAgainWanted();

private slots:
    void slot_filterTaken();
    void slot_problemChanged(const QString &text);
    void slot_progress();
    void slot_findWanted(const QString &filter, bool isBackward);
    void slot_sourceChanged();
    void slot_filterWanted(const QString &filter, bool isNegated);
    void slot_markWanted(qint64 row);
    void slot_bookmarkWanted(qint64 row);
    void slot_overviewActivated(const QModelIndex &index);
    void slot_updateOverview();
    void slot_showFindings();

private:
    QWidget *makeFilterLine();
    QWidget *makeStatusLine();
    QWidget *makeOverview();
    void addPanels();
    void connectTable();
    void connectCapture();
    void tell(const QString &text);
    QString framesText() const;
    QString progressText(const LoadProgress &progress) const;

    OpenCapture m_capture;
    CaptureSearch m_search;
    TableLook *m_look = nullptr;
    QString m_bookmarkFolder;
    FrameTableModel m_frames;
    OverviewModel m_identifiers;
    QTimer m_overviewTimer;
    FrameTableView *m_table = nullptr;
    FilterEdit *m_filter = nullptr;
    FilterEdit *m_find = nullptr;
    QLabel *m_problem = nullptr;
    QLabel *m_found = nullptr;
    QLabel *m_state = nullptr;
    QProgressBar *m_progress = nullptr;
    QPushButton *m_cancel = nullptr;
    QPushButton *m_findings = nullptr;
    QCheckBox *m_atRow = nullptr;
    QTabWidget *m_panels = nullptr;
    PlotPanel *m_plots = nullptr;
    QTableView *m_overview = nullptr;
    QSortFilterProxyModel *m_sorted = nullptr;
    std::unique_ptr<CaptureSignals> m_signals; ///< behind what it uses
};
