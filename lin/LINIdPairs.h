#pragma once

#include "lin/LINIdSpinBox.h"

#include <QVector>

class QCheckBox;
class QGridLayout;
class QWidget;

/// Identifiers that can be ticked: check boxes "chbx_ID1", "chbx_ID2" ... with the spin boxes "sbx_ID1", "sbx_ID2" ...
/// beside them, unticked at first. The widgets belong to the widget whose layout they are in.
class LINIdPairs
{
public:
    /// Adds count pairs to the grid, perRow in a row, under the captions "ID1:", "ID2:" ...
    LINIdPairs(QGridLayout &grid, int count, int perRow);

    /// The identifiers that are ticked now, in order; the same one twice when two pairs name it.
    QVector<quint8> checkedIds() const;
    void setEnabled(bool enabled);
    /// Whether the spin boxes go from 3F to 0 and back; off at first.
    void setWrapping(bool wrapping);
    /// Tab goes from the control, which is in the same window, to the first pair and through all of them.
    void setTabOrderAfter(QWidget *control) const;

private:
    struct Pair
    {
        QCheckBox *check;
        LINIdSpinBox *id;
    };

    QVector<Pair> m_pairs;
};
