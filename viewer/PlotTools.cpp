#include "viewer/PlotTools.h"

#include "viewer/PlotArea.h"
#include "viewer/ValueEdit.h"

#include <QAction>
#include <QMenu>
#include <QStyle>
#include <QToolButton>

namespace {

constexpr double ZoomStep = 0.5;

} // namespace

PlotTools::PlotTools(PlotArea &area, QWidget *parent)
    : QToolBar(parent)
    , m_area(area)
    , m_value(new ValueEdit)
{
    addWidget(m_value);
    m_back = add(tr("Back"), tr("The view before (Alt+Left)"));
    m_forward = add(tr("Forward"), tr("The view behind (Alt+Right)"));
    m_back->setIcon(style()->standardIcon(QStyle::SP_ArrowBack));
    m_forward->setIcon(style()->standardIcon(QStyle::SP_ArrowForward));
    connect(m_back, &QAction::triggered, &area, &PlotArea::goBack);
    connect(m_forward, &QAction::triggered, &area, &PlotArea::goForward);
    const QAction *nearer = add(QStringLiteral("+"), tr("Zooms in (+, or the wheel)"));
    connect(nearer, &QAction::triggered, this, [this] { m_area.zoom(ZoomStep); });
    const QAction *farther = add(QStringLiteral("\u2212"), tr("Zooms out (-, or the wheel)"));
    connect(farther, &QAction::triggered, this, [this] { m_area.zoom(1 / ZoomStep); });
    const QAction *whole = add(tr("Whole capture"), tr("Shows the whole capture (W)"));
    connect(whole, &QAction::triggered, &area, &PlotArea::showWhole);
    const QAction *fit = add(tr("Fit values"), tr("Scales of values follow what is shown (A). Ctrl+wheel, or the wheel "
                                                  "over a scale, makes them fixed."));
    connect(fit, &QAction::triggered, &area, &PlotArea::setValuesAutomatic);
    m_clock = add(tr("Clock"), tr("Times as the clock shows them instead of since the start"));
    m_clock->setCheckable(true);
    addSaveMenu();
    m_ownWindow = add(tr("Own window"), tr("Takes the plots out into a window of their own"));
    m_ownWindow->setCheckable(true);
}

QAction *PlotTools::add(const QString &text, const QString &tip)
{
    QAction *action = addAction(text);
    action->setToolTip(tip);
    return action;
}

void PlotTools::addSaveMenu()
{
    auto *button = new QToolButton;
    button->setObjectName(QStringLiteral("save"));
    button->setText(tr("Save"));
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::TabFocus);
    auto *menu = new QMenu(button);
    menu->addAction(tr("What is &shown..."), this, [this] { emit sig_saveWanted(false); });
    menu->addAction(tr("The &whole capture..."), this, [this] { emit sig_saveWanted(true); });
    button->setMenu(menu);
    addWidget(button);
}

void PlotTools::updateViews()
{
    m_back->setEnabled(m_area.views().canGoBack());
    m_forward->setEnabled(m_area.views().canGoForward());
}
