#include "viewer/EndButton.h"

#include "viewer/core/OpenCapture.h"
#include "viewer/FrameTableView.h"

EndButton::EndButton(FrameTableView &table, const OpenCapture &capture, QWidget *parent)
    : QToolButton(parent)
{
    setObjectName(QStringLiteral("stayAtEnd"));
    setText(tr("Stay at the &end"));
    setToolTip(tr("Shows new frames as they come; off when the table is scrolled back, on again at its end"));
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setChecked(table.staysAtEnd());
    connect(&table, &FrameTableView::sig_staysAtEndChanged, this, &QToolButton::setChecked);
    connect(this, &QToolButton::toggled, &table, &FrameTableView::setStaysAtEnd);
    const auto follow = [this, &capture] {
        setVisible(capture.loader().progress().isRunning());
    };
    connect(&capture, &OpenCapture::sig_progressChanged, this, follow);
}
