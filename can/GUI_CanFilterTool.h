#pragma once

#include "can/CanAcceptanceFilter.h"

#include <QDialog>
#include <QVector>

#include <memory>

class GUI_CanFilterToolPrivate;

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
    CanAcceptanceFilter filter() const;

public slots:
    /// Adds first what has been typed; stays open when that is not possible.
    void accept() override;

protected:
    /// Enter in the fields of a range adds it; with these empty it closes the dialog as everywhere else.
    void keyPressEvent(QKeyEvent *event) override;

private:
    std::unique_ptr<GUI_CanFilterToolPrivate> m_p;
};
