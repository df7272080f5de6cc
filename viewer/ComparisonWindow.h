#pragma once

#include "device/CallQueue.h"
#include "viewer/ComparisonModel.h"
#include "viewer/core/SliceRun.h"

#include <QPointer>
#include <QSortFilterProxyModel>
#include <QTimer>
#include <QWidget>

#include <array>
#include <atomic>

class CaptureTab;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QTableView;
class QTabWidget;

/// Two open captures, or two parts of one, side by side: A and B. What looks most like a switch that was moved is on
/// top. Follows captures while they grow.
class ComparisonWindow : public QWidget
{
    Q_OBJECT

public:
    enum Part { All, BeforeMark, FromMark, Range };

    /// tabs: the captures that are open, in CaptureTabs; must outlive this.
    explicit ComparisonWindow(QTabWidget &tabs, QWidget *parent = nullptr);
    ~ComparisonWindow() override;

    /// Both null: none. What is chosen by the user afterwards goes the same way.
    void choose(CaptureTab *a, Part partOfA, CaptureTab *b, Part partOfB);
    QTableView &table() { return *m_table; }

private slots:
    void slot_look();
    void slot_hasResult();
    void slot_activated(const QModelIndex &index);
    void slot_swap();

private:
    /// One of the two sides as it is chosen.
    struct Side
    {
        QComboBox *capture = nullptr;
        QComboBox *part = nullptr;
        QLineEdit *from = nullptr;
        QLineEdit *to = nullptr;
    };
    /// What the comparison is being made of.
    struct Request
    {
        CapturePart a;
        CapturePart b;
        bool tellsChannels = true;
        int percent = 0;
    };

    QWidget *makeSide(Side &side, const QString &name, const char *objectName) const;
    QWidget *makeOptions();
    void makeTable();
    QWidget *makeButtons();
    static QWidget *makeLegend();
    void fillCaptures();
    CaptureTab *tabOf(const Side &side) const;
    /// Empty text when it can be looked at.
    QString partOf(const Side &side, CapturePart &part) const;
    void showIn(CaptureTab &tab, const ComparedIdentifier &identifier) const;
    void goToMove(CaptureTab &tab, const QString &filter, qint64 first);
    void seek(const QPointer<CaptureTab> &tab, qint64 row, int tries);
    void tell(const QString &problem);
    void select(const IdentifierDifference &wanted);

    QTabWidget &m_tabs;
    std::array<Side, 2> m_sides;
    QCheckBox *m_isOnlyDifferent = nullptr;
    QCheckBox *m_tellsChannels = nullptr;
    QSpinBox *m_percent = nullptr;
    QLabel *m_state = nullptr;
    QTableView *m_table = nullptr;
    ComparisonModel m_model;
    QSortFilterProxyModel m_sorted;
    QTimer m_timer;
    Request m_request;
    QVector<CaptureTab *> m_known; ///< in the lists; compared only, never looked at
    QStringList m_knownNames;
    CallQueue m_calls; ///< from the threads below
    std::shared_ptr<std::atomic<bool>> m_stopFinding;
    // Below what their threads use.
    SliceRun<Comparison> m_run;
    WorkerThreads m_findThread;
};
