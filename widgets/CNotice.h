#pragma once

#include <QFrame>
#include <QString>

#include <memory>

class QGraphicsOpacityEffect;
class QPropertyAnimation;
class QTimer;

namespace Ui {
class CNotice;
}

/// A toast: fades in over its parent, stays for a while and fades out. It lies centred at the top of the parent, lets
/// mouse clicks through to what is under it, and costs nothing while it is hidden. Text is shown as it is, never as
/// markup; what is wider or higher than the parent is wrapped and at last cut with an ellipsis.
///
/// Above a mask when it comes while a dialog is open; dimmed with the rest of the window when it was there before.
class CNotice : public QFrame
{
    Q_OBJECT

public:
    enum Type : int { Done = 0, Warning = 1, Question = 2, Failure = 3, About = 4 };

    // How long notices stay, in milliseconds.
    static constexpr int WindowMs = 1500; ///< on the main window
    static constexpr int DialogMs = 1000; ///< on a dialog of their own

    /// Hidden at first. The parent is the window on which notices appear.
    explicit CNotice(QWidget *parent);
    ~CNotice() override;

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
    void changeSize();
    QPoint place() const;
    void fade(qreal from, qreal to);

    std::unique_ptr<Ui::CNotice> m_ui;
    QGraphicsOpacityEffect *m_pOpacity;
    QPropertyAnimation *m_pAnimation;
    QTimer *m_pDelay; ///< once, from the start of the fade-in to the first step
    QTimer *m_pTimer; ///< the steps of 10 ms
    QString m_text;
    int m_countdown = 0; ///< steps of 10 ms
};
