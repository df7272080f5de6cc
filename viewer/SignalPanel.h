#pragma once

#include "viewer/core/OpenCapture.h"

#include <QWidget>

class BitView;
class DatabaseSignals;
class FrameBits;
class QLabel;
class QTableWidget;

/// One frame decoded: a table of its signals, and a drawing of its bits.
class SignalPanel : public QWidget
{
    Q_OBJECT

public:
    enum Column { Name, Raw, Physical, Unit, Text, ColumnCount };

    /// capture must outlive this.
    explicit SignalPanel(OpenCapture &capture, QWidget *parent = nullptr);

    /// -1: none.
    void setRow(qint64 row);
    void setSource(const std::shared_ptr<const DatabaseSignals> &source);

signals:
    void sig_plotWanted(const QString &expression);

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private slots:
    void slot_signalChosen();
    void slot_bitChosen(int place);
    void slot_menu(const QPoint &position);

private:
    QWidget *makeTable();
    void update();
    void fill(int message, const BusFrame &frame, const std::vector<int> &places);
    void clear(const QString &text);
    QString headText(int message, const BusFrame &frame, const FrameBits &bits) const;
    /// The place in its message; -1: none.
    int currentPlace() const;
    QString expressionOf(int row) const;
    void plot(const QString &expression);

    OpenCapture &m_capture;
    std::shared_ptr<const DatabaseSignals> m_source;
    qint64 m_row = -1;
    int m_message = -1;
    bool m_isOld = false; ///< while hidden
    QLabel *m_head = nullptr;
    QTableWidget *m_table = nullptr;
    BitView *m_bits = nullptr;
};
