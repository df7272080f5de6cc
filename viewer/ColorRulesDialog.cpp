#include "viewer/ColorRulesDialog.h"

#include "viewer/ColorButton.h"
#include "viewer/core/OpenCapture.h"
#include "viewer/FilterEdit.h"
#include "viewer/RowColors.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QStyle>
#include <QVBoxLayout>

namespace {

enum Role { FilterRole = Qt::UserRole, TextRole, BackgroundRole };

QVariant toVariant(const ColorRule::Color &color)
{
    return color ? QVariant(*color) : QVariant();
}

ColorRule::Color toColor(const QVariant &variant)
{
    return variant.isValid() ? ColorRule::Color(variant.toUInt()) : ColorRule::Color();
}

} // namespace

ColorRulesDialog::ColorRulesDialog(const QVector<ColorRule> &rules, OpenCapture &capture, const QString &filter,
                                   QWidget *parent)
    : QDialog(parent)
    , m_capture(capture)
    , m_list(new QListWidget)
{
    setWindowTitle(tr("Colour rules"));
    m_list->setObjectName(QStringLiteral("rules"));
    auto *hint = new QLabel(tr("The first rule that is on and passes a frame gives its row the colours."));
    hint->setWordWrap(true);
    auto *top = new QHBoxLayout;
    top->addWidget(m_list);
    top->addLayout(makeButtons());
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setAutoDefault(false); // Return in the filter's line is the filter's
    buttons->button(QDialogButtonBox::Cancel)->setAutoDefault(false);
    auto *all = new QVBoxLayout(this);
    all->addWidget(hint);
    all->addLayout(top);
    all->addWidget(makeEditor());
    all->addWidget(buttons);
    connect(m_list, &QListWidget::currentRowChanged, this, &ColorRulesDialog::slot_currentChanged);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&capture, &OpenCapture::sig_signalSourceChanged, this, &ColorRulesDialog::slot_sourceChanged);
    fill(rules);
    if (!filter.isEmpty() && m_list->count() < ColorRule::MaxCount) {
        insert(0, {true, filter, std::nullopt, ColorButton::freshBackground(rules)});
    }
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 26);
    slot_sourceChanged();
    m_list->setCurrentRow(0);
    slot_currentChanged();
}

ColorRulesDialog::~ColorRulesDialog() = default;

QPushButton *ColorRulesDialog::makeButton(const char *name, const QString &text)
{
    auto *button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

QLayout *ColorRulesDialog::makeButtons()
{
    m_add = makeButton("add", tr("&Add"));
    m_remove = makeButton("remove", tr("&Remove"));
    m_up = makeButton("up", tr("&Up"));
    m_down = makeButton("down", tr("&Down"));
    auto *standard = makeButton("standard", tr("&Standard"));
    auto *side = new QVBoxLayout;
    for (QPushButton *button : {m_add, m_remove, m_up, m_down}) {
        side->addWidget(button);
    }
    side->addStretch();
    side->addWidget(standard);
    connect(m_add, &QPushButton::clicked, this, &ColorRulesDialog::slot_add);
    connect(m_remove, &QPushButton::clicked, this, &ColorRulesDialog::slot_remove);
    connect(m_up, &QPushButton::clicked, this, [this] { moveBy(-1); });
    connect(m_down, &QPushButton::clicked, this, [this] { moveBy(1); });
    connect(standard, &QPushButton::clicked, this, [this] { fill(ColorRule::standard()); });
    return side;
}

QWidget *ColorRulesDialog::makeEditor()
{
    m_editor = new QWidget;
    m_filter = new FilterEdit;
    auto *label = new QLabel(tr("&Filter:"));
    label->setBuddy(m_filter);
    m_text = new ColorButton(ColorButton::Text, tr("&Text"));
    m_text->setObjectName(QStringLiteral("text"));
    m_background = new ColorButton(ColorButton::Background, tr("&Background"));
    m_background->setObjectName(QStringLiteral("background"));
    m_problem = new QLabel;
    m_problem->setObjectName(QStringLiteral("ruleProblem"));
    m_problem->setWordWrap(true);
    m_problem->setMinimumHeight(fontMetrics().height());
    auto *colors = new QHBoxLayout;
    colors->addWidget(m_text);
    colors->addWidget(m_background);
    m_sample = new QLabel(QStringLiteral("  0x123  DE AD BE EF  "));
    m_sample->setObjectName(QStringLiteral("sample"));
    m_sample->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_sample->setAutoFillBackground(true);
    colors->addWidget(m_sample);
    colors->addStretch();
    auto *layout = new QGridLayout(m_editor);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label, 0, 0);
    layout->addWidget(m_filter, 0, 1);
    layout->addWidget(m_problem, 1, 1);
    layout->addLayout(colors, 2, 1);
    layout->setColumnStretch(1, 1);
    connect(m_filter, &QLineEdit::textChanged, this, &ColorRulesDialog::slot_edited);
    connect(m_text, &ColorButton::sig_chosen, this, &ColorRulesDialog::slot_edited);
    connect(m_background, &ColorButton::sig_chosen, this, &ColorRulesDialog::slot_edited);
    return m_editor;
}

void ColorRulesDialog::fill(const QVector<ColorRule> &rules)
{
    m_list->clear();
    for (const ColorRule &rule : rules) {
        insert(m_list->count(), rule);
    }
    m_list->setCurrentRow(0);
}

void ColorRulesDialog::insert(int row, const ColorRule &rule)
{
    auto *item = new QListWidgetItem;
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    setRule(*item, rule);
    m_list->insertItem(row, item);
    m_list->setCurrentRow(row);
}

QString ColorRulesDialog::problem(const QString &filter) const
{
    FilterError error{};
    if (filter.trimmed().isEmpty()) {
        return tr("A rule without a filter colours nothing.");
    }
    return Filter::parse(filter, m_capture.signalSource(), error) ? QString() : error.text;
}

ColorRule ColorRulesDialog::rule(const QListWidgetItem &item)
{
    return {item.checkState() == Qt::Checked, item.data(FilterRole).toString(), toColor(item.data(TextRole)),
            toColor(item.data(BackgroundRole))};
}

void ColorRulesDialog::setRule(QListWidgetItem &item, const ColorRule &rule)
{
    const QString wrong = problem(rule.filter);
    const RowColors colors = rowColors(rule, palette());
    item.setCheckState(rule.isOn ? Qt::Checked : Qt::Unchecked);
    item.setText(rule.filter);
    item.setData(FilterRole, rule.filter);
    item.setData(TextRole, toVariant(rule.text));
    item.setData(BackgroundRole, toVariant(rule.background));
    item.setForeground(colors.text);
    item.setBackground(colors.background.isValid() ? QBrush(colors.background) : QBrush());
    item.setIcon(wrong.isEmpty() ? QIcon() : style()->standardIcon(QStyle::SP_MessageBoxWarning));
    item.setToolTip(wrong);
}

QVector<ColorRule> ColorRulesDialog::rules() const
{
    QVector<ColorRule> rules;
    for (int i = 0; i < m_list->count(); ++i) {
        const ColorRule kept = rule(*m_list->item(i));
        if (!kept.filter.trimmed().isEmpty()) {
            rules.append(kept);
        }
    }
    return rules;
}

void ColorRulesDialog::accept()
{
    emit sig_rulesTaken(rules());
    QDialog::accept();
}

void ColorRulesDialog::slot_currentChanged()
{
    const QListWidgetItem *item = m_list->currentItem();
    const int row = m_list->currentRow();
    m_editor->setEnabled(item != nullptr);
    m_add->setEnabled(m_list->count() < ColorRule::MaxCount);
    m_remove->setEnabled(item != nullptr);
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row < m_list->count() - 1);
    const ColorRule current = item != nullptr ? rule(*item) : ColorRule{};
    m_isFilling = true;
    if (m_filter->text() != current.filter) {
        m_filter->edit(current.filter);
    }
    m_text->setColor(current.text);
    m_background->setColor(current.background);
    showCurrent(current);
    m_isFilling = false;
}

void ColorRulesDialog::slot_edited()
{
    QListWidgetItem *item = m_list->currentItem();
    if (m_isFilling || item == nullptr) {
        return;
    }
    setRule(*item, {item->checkState() == Qt::Checked, m_filter->text(), m_text->color(), m_background->color()});
    showCurrent(rule(*item));
}

void ColorRulesDialog::showCurrent(const ColorRule &rule)
{
    const RowColors colors = rowColors(rule, palette());
    QPalette sample = palette();
    sample.setColor(QPalette::WindowText, colors.text);
    sample.setColor(QPalette::Window,
                    colors.background.isValid() ? colors.background : palette().color(QPalette::Base));
    m_sample->setPalette(sample);
    m_problem->setText(m_list->currentItem() != nullptr ? problem(rule.filter) : QString());
}

void ColorRulesDialog::slot_add()
{
    insert(m_list->currentRow() + 1, {true, {}, std::nullopt, ColorButton::freshBackground(rules())});
    m_filter->setFocus();
}

void ColorRulesDialog::slot_remove()
{
    delete m_list->takeItem(m_list->currentRow());
    slot_currentChanged();
}

void ColorRulesDialog::moveBy(int step)
{
    const int row = m_list->currentRow();
    QListWidgetItem *item = m_list->takeItem(row);
    m_list->insertItem(row + step, item);
    m_list->setCurrentRow(row + step);
}

void ColorRulesDialog::slot_sourceChanged()
{
    m_filter->setSource(m_capture.signalSource());
    for (int i = 0; i < m_list->count(); ++i) {
        setRule(*m_list->item(i), rule(*m_list->item(i)));
    }
    slot_currentChanged();
}
