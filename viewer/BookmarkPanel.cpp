#include "viewer/BookmarkPanel.h"

#include "viewer/CaptureTab.h"

#include <QKeyEvent>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

BookmarkPanel::BookmarkPanel(CaptureTab &tab)
    : m_tab(tab)
    , m_list(new QTreeWidget)
{
    m_list->setObjectName(QStringLiteral("bookmarks"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->installEventFilter(this);
    m_list->setHeaderLabels({FrameColumns::title(FrameColumn::Number), FrameColumns::title(FrameColumn::SinceStart),
                             FrameColumns::title(FrameColumn::Identifier), tr("Note")});
    const int digit = m_list->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    m_list->setColumnWidth(Number, 14 * digit);
    m_list->setColumnWidth(Time, 20 * digit);
    m_list->setColumnWidth(Identifier, 14 * digit);
    auto *hint = new QLabel(tr("Return goes to the frame, F2 changes the note, Del removes the bookmark. Ctrl+B in the "
                               "table sets one."));
    hint->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    layout->addWidget(hint);
    connect(&tab, &CaptureTab::sig_bookmarksChanged, this, &BookmarkPanel::slot_fill);
    connect(&tab.capture(), &OpenCapture::sig_signalSourceChanged, this, &BookmarkPanel::slot_fill);
    connect(m_list, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem *item) { m_tab.showRow(item->data(Number, Qt::UserRole).toLongLong()); });
    connect(m_list, &QTreeWidget::itemChanged, this, &BookmarkPanel::slot_edited);
    slot_fill();
}

/// Rows that are not loaded yet have no time and no identifier.
void BookmarkPanel::slot_fill()
{
    m_isFilling = true;
    const OpenCapture &capture = m_tab.capture();
    const qint64 current = currentRow();
    m_list->clear();
    const QMap<qint64, QString> &notes = capture.bookmarks().notes();
    for (auto note = notes.begin(); note != notes.end(); ++note) {
        auto *item = new QTreeWidgetItem(m_list);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setData(Number, Qt::UserRole, note.key());
        item->setText(Number, QString::number(note.key() + 1));
        if (note.key() < capture.store().size()) {
            const auto text = [&](FrameColumn column) {
                return FrameColumns::text(column, capture.store(), capture.info(), note.key(), {}, {});
            };
            item->setText(Time, text(FrameColumn::SinceStart));
            item->setText(Identifier, text(FrameColumn::Identifier));
        }
        item->setText(Note, note.value());
        if (note.key() == current) {
            m_list->setCurrentItem(item, Note);
        }
    }
    m_isFilling = false;
}

qint64 BookmarkPanel::currentRow() const
{
    const QTreeWidgetItem *item = m_list->currentItem();
    return item != nullptr ? item->data(Number, Qt::UserRole).toLongLong() : -1;
}

void BookmarkPanel::slot_edited(QTreeWidgetItem *item, int column)
{
    if (m_isFilling || column != Note) {
        return;
    }
    // The list is made anew then, which must not be while its item is edited.
    QMetaObject::invokeMethod(
        this,
        [this, row = item->data(Number, Qt::UserRole).toLongLong(), note = item->text(Note).trimmed()] {
            m_tab.setBookmark(row, note);
        },
        Qt::QueuedConnection);
}

void BookmarkPanel::remove()
{
    if (currentRow() >= 0) {
        m_tab.setBookmark(currentRow(), {});
    }
}

/// Frames that were still to be loaded may have their times now.
void BookmarkPanel::showEvent(QShowEvent *event)
{
    slot_fill();
    QWidget::showEvent(event);
}

/// F2 and Del are the list's before they are the window's.
bool BookmarkPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool isOurs =
        (key->key() == Qt::Key_F2 || key->key() == Qt::Key_Delete) && key->modifiers() == Qt::NoModifier;
    if (!isOurs || event->type() == QEvent::ShortcutOverride) {
        event->setAccepted(isOurs);
        return isOurs;
    }
    if (key->key() == Qt::Key_Delete) {
        remove();
    } else if (QTreeWidgetItem *item = m_list->currentItem()) {
        m_list->editItem(item, Note);
    }
    return true;
}
