#include "viewer/ColorButton.h"

#include "viewer/RowColors.h"

#include <QColorDialog>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <array>

namespace {

struct NamedColor
{
    const char *name;
    quint32 text;
    quint32 background;
};

constexpr std::array<NamedColor, 8> Colors{{{QT_TRANSLATE_NOOP("ColorButton", "Red"), 0x8B0000, 0xFFD0D0},
                                            {QT_TRANSLATE_NOOP("ColorButton", "Orange"), 0x7A4100, 0xFFE3B8},
                                            {QT_TRANSLATE_NOOP("ColorButton", "Yellow"), 0x5F5500, 0xFFF7B0},
                                            {QT_TRANSLATE_NOOP("ColorButton", "Green"), 0x0B5D1E, 0xD3F5D3},
                                            {QT_TRANSLATE_NOOP("ColorButton", "Cyan"), 0x005A63, 0xCDF3F5},
                                            {QT_TRANSLATE_NOOP("ColorButton", "Blue"), 0x0B3D91, 0xDDEBFF},
                                            {QT_TRANSLATE_NOOP("ColorButton", "Violet"), 0x5B1A8B, 0xEBDCFB},
                                            {QT_TRANSLATE_NOOP("ColorButton", "Grey"), 0x555555, 0xE4E4E4}}};

} // namespace

ColorButton::ColorButton(Use use, const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
    auto *menu = new QMenu(this);
    menu->addAction(icon({}), tr("As other rows"), this, [this] { choose({}); })->setObjectName(QStringLiteral("none"));
    for (const NamedColor &named : Colors) {
        const quint32 color = use == Text ? named.text : named.background;
        menu->addAction(icon(color), tr(named.name), this, [this, color] { choose(color); })
            ->setObjectName(QLatin1String(named.name));
    }
    menu->addSeparator();
    menu->addAction(tr("Another..."), this, &ColorButton::slot_other);
    setMenu(menu);
    setColor({});
}

quint32 ColorButton::freshBackground(const QVector<ColorRule> &rules)
{
    for (const quint32 color : {Colors[2].background, Colors[3].background, Colors[6].background, Colors[4].background,
                                Colors[7].background, Colors[0].background, Colors[1].background}) {
        if (std::none_of(rules.begin(), rules.end(),
                         [color](const ColorRule &rule) { return rule.background == color; })) {
            return color;
        }
    }
    return Colors[5].background;
}

QIcon ColorButton::icon(const ColorRule::Color &color) const
{
    const qreal ratio = devicePixelRatioF();
    const int side = fontMetrics().height();
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(color ? colorIn(palette(), *color) : palette().color(QPalette::Base));
    QPainter painter(&pixmap);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(QRectF(0, 0, side - 1, side - 1));
    if (!color) {
        painter.drawLine(QPointF(0, side - 1), QPointF(side - 1, 0));
    }
    return pixmap;
}

void ColorButton::setColor(const ColorRule::Color &color)
{
    m_color = color;
    setIcon(icon(color));
    setIconSize({fontMetrics().height(), fontMetrics().height()});
}

void ColorButton::choose(const ColorRule::Color &color)
{
    setColor(color);
    emit sig_chosen();
}

void ColorButton::slot_other()
{
    auto *dialog = new QColorDialog(m_color ? QColor(*m_color) : QColor(Qt::white), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    connect(dialog, &QColorDialog::colorSelected, this,
            [this](const QColor &color) { choose(color.rgb() & 0xFFFFFFU); });
    dialog->open();
}
