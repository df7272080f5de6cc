#include "tests/app/ShownTexts.h"

#include "tests/app/WindowWidgets.h"

#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QToolButton>

#include <algorithm>

namespace {
constexpr int RowsToRead = 50;

class TextReader
{
public:
    explicit TextReader(const QWidget &window)
    {
        QVector<QWidget *> widgets = widgetsOf(window);
        widgets.prepend(const_cast<QWidget *>(&window));
        for (const QWidget *widget : qAsConst(widgets)) {
            m_place = nameOf(*widget);
            readCommon(*widget);
            readCaptions(*widget);
            readFields(*widget);
            readLists(*widget);
            readMenus(*widget);
        }
    }

    QVector<ShownText> takeTexts() { return std::move(m_texts); }

private:
    /// Without the tags of rich text.
    static QString readable(const QLabel &label)
    {
        const bool isRich = label.textFormat() == Qt::RichText ||
                            (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(label.text()));
        return isRich ? QTextDocumentFragment::fromHtml(label.text()).toPlainText() : label.text();
    }

    void add(const char *kind, const QString &text)
    {
        if (!text.trimmed().isEmpty()) {
            m_texts.append({m_place + QLatin1Char(' ') + QLatin1String(kind), text});
        }
    }

    void readCommon(const QWidget &widget)
    {
        add("title", widget.windowTitle());
        add("tool tip", widget.toolTip());
        add("status tip", widget.statusTip());
        add("help", widget.whatsThis());
        add("accessible name", widget.accessibleName());
        add("accessible description", widget.accessibleDescription());
    }

    void readCaptions(const QWidget &widget)
    {
        if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
            add("text", readable(*label));
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
            add("caption", button->text());
        } else if (const auto *group = qobject_cast<const QGroupBox *>(&widget)) {
            add("title", group->title());
        } else if (const auto *tabs = qobject_cast<const QTabBar *>(&widget)) {
            for (int index = 0; index < tabs->count(); ++index) {
                add("tab", tabs->tabText(index));
                add("tab's tool tip", tabs->tabToolTip(index));
            }
        }
    }

    void readFields(const QWidget &widget)
    {
        if (const auto *combo = qobject_cast<const QComboBox *>(&widget)) {
            const bool isOfDisk =
                isInside(widget, "QFileDialog") && combo->objectName() == QLatin1String("lookInCombo");
            for (int index = 0; index < combo->count() && !isOfDisk; ++index) {
                add("choice", combo->itemText(index));
            }
            add("placeholder", combo->placeholderText());
        } else if (const auto *line = qobject_cast<const QLineEdit *>(&widget)) {
            add("placeholder", line->placeholderText());
            if (line->isReadOnly()) {
                add("content", line->text());
            }
        } else if (const auto *spin = qobject_cast<const QSpinBox *>(&widget)) {
            add("prefix", spin->prefix());
            add("suffix", spin->suffix());
            add("special value", spin->specialValueText());
        } else if (const auto *bar = qobject_cast<const QProgressBar *>(&widget)) {
            add("progress", bar->isTextVisible() ? bar->text() : QString());
        }
    }

    void readLists(const QWidget &widget)
    {
        const auto *view = qobject_cast<const QAbstractItemView *>(&widget);
        if (view == nullptr || view->model() == nullptr || isInside(widget, "QFileDialog") ||
            isInside(widget, "QComboBox") || qobject_cast<const QHeaderView *>(view) != nullptr) {
            return;
        }
        const QAbstractItemModel &model = *view->model();
        for (int column = 0; column < model.columnCount(); ++column) {
            add("heading", model.headerData(column, Qt::Horizontal).toString());
            add("heading's tool tip", model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString());
            for (int row = 0; row < std::min(model.rowCount(), RowsToRead); ++row) {
                add("cell", model.index(row, column).data().toString());
                add("cell's tool tip", model.index(row, column).data(Qt::ToolTipRole).toString());
            }
        }
    }

    void readMenus(const QWidget &widget)
    {
        readActions(widget);
        const auto *toolButton = qobject_cast<const QToolButton *>(&widget);
        const auto *pushButton = qobject_cast<const QPushButton *>(&widget);
        const QMenu *menu = toolButton != nullptr   ? toolButton->menu()
                            : pushButton != nullptr ? pushButton->menu()
                                                    : nullptr;
        if (menu != nullptr) {
            readActions(*menu);
        }
    }

    void readActions(const QWidget &widget)
    {
        for (const QAction *action : widget.actions()) {
            add("action", action->text());
            add("action's tool tip", action->toolTip());
            add("action's shortcut", action->shortcut().toString(QKeySequence::NativeText));
            if (action->menu() != nullptr) {
                readActions(*action->menu());
            }
        }
    }

    QString m_place;
    QVector<ShownText> m_texts;
};
} // namespace

QVector<ShownText> shownTexts(const QWidget &window)
{
    return TextReader(window).takeTexts();
}
