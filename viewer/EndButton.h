#pragma once

#include <QToolButton>

class FrameTableView;
class OpenCapture;

/// Tells whether the table stays at the end of a capture that grows, and switches that. There while one is followed.
class EndButton : public QToolButton
{
    Q_OBJECT

public:
    /// Both must outlive this.
    EndButton(FrameTableView &table, const OpenCapture &capture, QWidget *parent = nullptr);
};
