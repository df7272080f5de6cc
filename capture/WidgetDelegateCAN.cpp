#include "capture/WidgetDelegateCAN.h"

#include "capture/DataModel.h"
#include "device/FrameIdentifier.h"
#include "widgets/HexEntry.h"
#include "widgets/NumberEntry.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>

#include <algorithm>

namespace {
constexpr int Hexadecimal = 16;
constexpr int Decimal = 10;

QSpinBox *numberEditor(QWidget *parent, int minimum, int maximum, int base = Decimal)
{
    auto *editor = new QSpinBox(parent);
    editor->setDisplayIntegerBase(base);
    editor->setRange(minimum, maximum);
    cleanSpinBox(editor);
    return editor;
}

QComboBox *typeEditor(QWidget *parent)
{
    auto *editor = new QComboBox(parent);
    for (const auto type : {WidgetDelegateCAN::Standard, WidgetDelegateCAN::Extended}) {
        editor->addItem(WidgetDelegateCAN::typeText(type), type);
    }
    return editor;
}

QLineEdit *dataEditor(QWidget *parent)
{
    auto *editor = new QLineEdit(parent);
    restrictEntry(editor, NumberEntry::HexBytes, QStringLiteral("[A-Fa-f0-9\\s]*"));
    return editor;
}

int maxIdentifier(const QModelIndex &index)
{
    const int type = index.sibling(index.row(), WidgetDelegateCAN::Type).data(Qt::UserRole).toInt();
    return static_cast<int>(frameIdMax(type == WidgetDelegateCAN::Extended));
}

/// Text and value at once, so that the change is told once.
void setCell(QAbstractItemModel *model, const QModelIndex &index, const QString &text, const QVariant &value)
{
    model->setItemData(index, {{Qt::DisplayRole, text}, {Qt::UserRole, value}});
}
} // namespace

QString WidgetDelegateCAN::typeText(FrameType type)
{
    return type == Extended ? tr("Extend") : tr("Standard");
}

QWidget *WidgetDelegateCAN::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                         const QModelIndex &index) const
{
    switch (static_cast<Column>(index.column())) {
    case Id:
        return numberEditor(parent, 0, maxIdentifier(index), Hexadecimal);
    case Type:
        return typeEditor(parent);
    case Length:
        return numberEditor(parent, 0, MaxClassicLength);
    case Data:
        return dataEditor(parent);
    case FrameCount:
    case SendCount:
    case Interval:
        return numberEditor(parent, 1, MaxSendListNumber);
    case Tick:
    case Number:
    case ColumnCount:
        break;
    }
    return nullptr;
}

void WidgetDelegateCAN::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *number = qobject_cast<QSpinBox *>(editor)) {
        number->setValue(index.data(Qt::UserRole).toInt());
    } else if (auto *type = qobject_cast<QComboBox *>(editor)) {
        type->setCurrentIndex(type->findData(index.data(Qt::UserRole)));
    } else if (auto *data = qobject_cast<QLineEdit *>(editor)) {
        data->setText(index.data(Qt::DisplayRole).toString());
    }
}

void WidgetDelegateCAN::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (auto *number = qobject_cast<QSpinBox *>(editor)) {
        number->interpretText();
        setCell(model, index, QString::number(number->value(), number->displayIntegerBase()), number->value());
    } else if (const auto *type = qobject_cast<QComboBox *>(editor)) {
        setCell(model, index, type->currentText(), type->currentData());
    } else if (const auto *data = qobject_cast<QLineEdit *>(editor)) {
        const QString digits = payloadDigits(data->text());
        setCell(model, index, hexTextFromBytes(QByteArray::fromHex(digits.toLatin1())), digits);
    }
}

void WidgetDelegateCAN::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                             const QModelIndex & /*index*/) const
{
    QRect place = option.rect;
    if (qobject_cast<QLineEdit *>(editor) == nullptr) {
        place.setWidth(std::max(place.width(), editor->sizeHint().width()));
    }
    editor->setGeometry(place);
}
