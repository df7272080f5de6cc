#pragma once

#include <QFrame>

class OpenCapture;
class QLabel;

/// A strip that says why a capture could not be opened or is followed no longer, and offers to load it again. Hidden
/// while there is nothing to say.
class LoadNotice : public QFrame
{
    Q_OBJECT

public:
    /// capture must outlive this.
    explicit LoadNotice(const OpenCapture &capture, QWidget *parent = nullptr);

signals:
    void sig_loadAgainWanted();

private slots:
    void slot_look();

private:
    const OpenCapture &m_capture;
    QLabel *m_text;
};
