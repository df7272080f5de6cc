#include "tests/app/CutTexts.h"

#include "tests/app/WindowWidgets.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QStyleOptionHeader>
#include <QStyleOptionSpinBox>
#include <QStyleOptionTab>
#include <QTabBar>

#include <algorithm>

namespace {
// Pixels on either side, inside what the style leaves.
constexpr int LineEditMargin = 2;
constexpr int ChoiceMargin = 8;

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

QString withoutMnemonic(QString text)
{
    return text.remove(QRegularExpression(QStringLiteral("&(?=.)")));
}

// Widgets as their styles see them.

struct Tabs : QTabBar
{
    using QTabBar::initStyleOption;
};

struct Group : QGroupBox
{
    using QGroupBox::initStyleOption;
};

struct Header : QHeaderView
{
    using QHeaderView::initStyleOption;
};

struct Line : QLineEdit
{
    using QLineEdit::initStyleOption;
};

struct Spin : QSpinBox
{
    using QSpinBox::initStyleOption;
};

struct Combo : QComboBox
{
    using QComboBox::initStyleOption;
};

class CutFinder
{
public:
    explicit CutFinder(const QWidget &window)
    {
        for (QWidget *widget : widgetsOf(window)) {
            if (widget->isVisible() && !isFolded(*widget)) {
                m_widget = widget;
                checkCaptions();
                checkBars();
                checkEntries();
                checkPlace();
            }
        }
    }

    QStringList takeProblems() { return std::move(m_problems); }

private:
    void complain(const QString &what) { m_problems.append(nameOf(*m_widget) + QStringLiteral(": ") + what); }

    void needSize(const QString &text, const QSize &needed, const QSize &given)
    {
        if (needed.width() > given.width() || needed.height() > given.height()) {
            complain(QStringLiteral("'%1' needs %2 and has %3").arg(text, sizeText(needed), sizeText(given)));
        }
    }

    void needWidth(const QString &text, int given)
    {
        const int needed = m_widget->fontMetrics().horizontalAdvance(withoutMnemonic(text));
        if (needed > given) {
            complain(QStringLiteral("'%1' is %2 wide and has %3").arg(text).arg(needed).arg(given));
        }
    }

    void checkCaptions()
    {
        if (const auto *label = qobject_cast<const QLabel *>(m_widget)) {
            if (label->text().isEmpty()) {
                return;
            }
            if (label->wordWrap()) {
                needSize(label->text(), QSize(0, label->heightForWidth(label->width())), label->size());
            } else {
                needSize(label->text(), label->sizeHint(), label->size());
            }
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(m_widget)) {
            if (!button->text().isEmpty()) {
                needSize(button->text(), button->sizeHint(), button->size());
            }
        } else if (const auto *group = qobject_cast<const QGroupBox *>(m_widget)) {
            QStyleOptionGroupBox option;
            (group->*&Group::initStyleOption)(&option);
            const QRect place =
                group->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, group);
            needWidth(group->title(), place.intersected(group->rect()).width());
        }
    }

    void checkBars()
    {
        if (const auto *tabs = qobject_cast<const QTabBar *>(m_widget)) {
            for (int index = 0; index < tabs->count(); ++index) {
                QStyleOptionTab option;
                (tabs->*&Tabs::initStyleOption)(&option, index);
                const QRect place = tabs->style()->subElementRect(QStyle::SE_TabBarTabText, &option, tabs);
                needWidth(tabs->tabText(index), place.intersected(tabs->rect()).width());
            }
        } else if (const auto *header = qobject_cast<const QHeaderView *>(m_widget)) {
            for (int section = 0; section < header->count(); ++section) {
                QStyleOptionHeader option;
                (header->*&Header::initStyleOption)(&option);
                option.rect = QRect(QPoint(), header->orientation() == Qt::Horizontal
                                                  ? QSize(header->sectionSize(section), header->height())
                                                  : QSize(header->width(), header->sectionSize(section)));
                const QRect place = header->style()->subElementRect(QStyle::SE_HeaderLabel, &option, header);
                if (!header->isSectionHidden(section)) {
                    needWidth(header->model()->headerData(section, header->orientation()).toString(), place.width());
                }
            }
        } else if (const auto *bar = qobject_cast<const QProgressBar *>(m_widget)) {
            needSize(bar->text(), bar->isTextVisible() ? bar->fontMetrics().size(0, bar->text()) : QSize(),
                     bar->contentsRect().size());
        }
    }

    void checkEntries()
    {
        if (isInside(*m_widget, "QFileDialog")) {
            return; // paths may be as long as they like
        }
        if (auto *combo = qobject_cast<QComboBox *>(m_widget)) {
            checkChoices(combo);
        } else if (const auto *spin = qobject_cast<const QSpinBox *>(m_widget)) {
            QStyleOptionSpinBox option;
            (spin->*&Spin::initStyleOption)(&option);
            const QRect place =
                spin->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxEditField, spin);
            const QString largest = QString::number(spin->maximum(), spin->displayIntegerBase()).toUpper();
            needWidth(spin->prefix() + largest + spin->suffix(), place.width() - 2 * LineEditMargin);
        } else if (const auto *line = qobject_cast<const QLineEdit *>(m_widget)) {
            QStyleOptionFrame option;
            (line->*&Line::initStyleOption)(&option);
            const QRect place = line->style()->subElementRect(QStyle::SE_LineEditContents, &option, line);
            needWidth(line->text().trimmed(), place.width() - 2 * LineEditMargin);
            needWidth(line->placeholderText(), place.width() - 2 * LineEditMargin);
        }
    }

    /// Opens the list, as its width is the style's affair.
    void checkChoices(QComboBox *combo)
    {
        QStyleOptionComboBox option;
        (combo->*&Combo::initStyleOption)(&option);
        const QRect place =
            combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
        for (int index = 0; index < combo->count(); ++index) {
            needWidth(combo->itemText(index), place.width());
        }
        if (combo->count() == 0) {
            return;
        }
        combo->showPopup();
        for (int index = 0; index < combo->count(); ++index) {
            needWidth(combo->itemText(index), combo->view()->viewport()->width() - 2 * ChoiceMargin);
        }
        combo->hidePopup();
    }

    static bool isControl(const QWidget *widget)
    {
        const char *const kinds[] = {"QLabel",           "QAbstractButton", "QComboBox",         "QLineEdit",
                                     "QAbstractSpinBox", "QGroupBox",       "QAbstractItemView", "QProgressBar"};
        return std::any_of(std::begin(kinds), std::end(kinds),
                           [widget](const char *kind) { return widget->inherits(kind); });
    }

    void checkPlace()
    {
        const QWidget *parent = m_widget->parentWidget();
        if (!isControl(m_widget) || parent == nullptr || isInside(*m_widget, "CNotice") ||
            isInside(*m_widget, "QAbstractItemView")) {
            return;
        }
        if (!isInside(*m_widget, "QAbstractScrollArea") && !parent->rect().contains(m_widget->geometry())) {
            complain(QStringLiteral("sticks out of its parent"));
        }
        for (QObject *child : parent->children()) {
            const auto *other = qobject_cast<const QWidget *>(child);
            if (other != nullptr && other != m_widget && other->isVisible() && !other->isWindow() && isControl(other) &&
                other->geometry().intersects(m_widget->geometry())) {
                complain(QStringLiteral("overlaps ") + nameOf(*other));
            }
        }
    }

    QWidget *m_widget = nullptr;
    QStringList m_problems;
};
} // namespace

QStringList cutTexts(const QWidget &window)
{
    return CutFinder(window).takeProblems();
}
