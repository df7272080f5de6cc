#pragma once

#include <QFrame>
#include <QString>

class QGraphicsOpacityEffect;
class QLabel;
class QPropertyAnimation;
class QTimer;

/// A toast: fades in over its parent, stays for a while and fades out. It lies centred at the top of the parent, lets
/// mouse clicks through to what is under it, and costs nothing while it is hidden. Text is shown as it is, never as
/// markup; what is wider or higher than the parent is wrapped and at last cut with an ellipsis.
///
/// Above a mask when it comes while a dialog is open; dimmed with the rest of the window when it was there before.
class CNotice : public QFrame
{
    Q_OBJECT

public:
    enum Type { Done, Warning, Question, Failure, About };

    /// Hidden at first. The parent is the window on which notices appear.
    explicit CNotice(QWidget *parent);

    /// Shows a notice in place of the one that may still be there. type: a Type; any other value changes nothing. The
    /// text's lines are separated by "\n". delayms is the time in milliseconds, in steps of 10, between the end of the
    /// fade-in (1200 ms) and the start of the fade-out; below 0 counts as 0.
    void setMesseage(const QString &text, int type, int delayms);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private slots:
    void onTimerTimeout();

private:
    void init();
    void changeSize();
    void measureText();
    QPoint place() const;
    void fadeTo(qreal opacity);
    void stop();

    QLabel *m_pIcon;
    QLabel *m_pText;
    QGraphicsOpacityEffect *m_pOpacity;
    QPropertyAnimation *m_pAnimation;
    QTimer *m_pDelay; ///< once, from the start of the fade-in to the first step
    QTimer *m_pTimer; ///< the steps of 10 ms
    QString m_text;
    int m_lineWidth = 1; ///< of the longest line, pixels
    int m_totalWidth = 0;
    int m_lineSpacing = 0;
    int m_lineCount = 1;
    int m_countdown = 0; ///< steps of 10 ms
};
