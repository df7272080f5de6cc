#pragma once

#include <QWidget>

class CaptureTab;
class QTreeWidget;
class QTreeWidgetItem;

/// The bookmarks of a capture: a click or Return goes there, F2 changes the note, Del removes the bookmark.
class BookmarkPanel : public QWidget
{
    Q_OBJECT

public:
    /// tab must outlive this.
    explicit BookmarkPanel(CaptureTab &tab);

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void slot_fill();
    void slot_edited(QTreeWidgetItem *item, int column);

private:
    enum Column { Number, Time, Identifier, Note, ColumnCount };

    void remove();
    qint64 currentRow() const;

    CaptureTab &m_tab;
    QTreeWidget *m_list;
    bool m_isFilling = false;
};
