#pragma once

#include "can/CanAcceptanceFilter.h"

#include <QDialog>
#include <QVector>

#include <memory>

namespace Ui {
class GUI_CanFilterTool;
}

/// Computes the narrowest acceptance code and mask for a list of identifiers and ranges, says how many others pass and
/// whether an identifier typed in does. Accepted, it stands for its list and filter; an empty list wants no filter.
class GUI_CanFilterTool : public QDialog
{
    Q_OBJECT

public:
    /// Starts with the ranges of an earlier time.
    explicit GUI_CanFilterTool(const QVector<CanIdRange> &ids, QWidget *parent = nullptr);
    ~GUI_CanFilterTool() override;

    QVector<CanIdRange> ids() const;
    CanAcceptanceFilter filter() const { return m_filter; }

public slots:
    /// Adds first what has been typed; stays open when that is not possible.
    void accept() override;

protected:
    /// Enter in the fields of a range adds it; with these empty it closes the dialog as everywhere else.
    void keyPressEvent(QKeyEvent *event) override;

private:
    void prepareFields();
    void connectSignals();
    bool isExtended() const;
    bool isTyped() const;
    bool addTyped();
    void appendRow(const CanIdRange &range);
    void removeSelected();
    void clear();
    void showFilter();
    void showSelection();
    void showTest();

    std::unique_ptr<Ui::GUI_CanFilterTool> m_ui;
    QVector<CanIdRange> m_ids; ///< one for each row of the table
    CanAcceptanceFilter m_filter;
};
