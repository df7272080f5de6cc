#include "widgets/CHexEditView.h"

#include "ui_CHexEditView.h"

#include <QPushButton>
#include <QShortcut>

#include <algorithm>

namespace {
constexpr int BytesPerLineMax = 16;
constexpr int BytesPerLineFirst = 8;
} // namespace

CHexEditView::CHexEditView(const QByteArray &payload, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CHexEditView>())
    , m_size(payload.size())
{
    m_ui->setupUi(this);
    prepareEditor(payload);
    prepareButtons();
}

CHexEditView::~CHexEditView() = default;

QByteArray CHexEditView::data() const
{
    return m_ui->hexEdit->data().leftJustified(m_size, '\0', true);
}

void CHexEditView::prepareEditor(const QByteArray &payload)
{
    m_ui->m_pLabel->setText(QStringLiteral("%1 %2").arg(m_size).arg(tr("Byte")));
    for (int count = 1; count <= BytesPerLineMax; ++count) {
        m_ui->pComboBox->addItem(QString::number(count), count);
    }
    m_ui->pComboBox->setCurrentIndex(m_ui->pComboBox->findData(BytesPerLineFirst));
    m_ui->hexEdit->setBytesPerLine(BytesPerLineFirst);
    m_ui->hexEdit->setData(payload);
    m_ui->hexEdit->setFocus();
    connect(m_ui->pComboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CHexEditView::slot_bytesPerLineChanged);
    connect(m_ui->hexEdit, &HexEditor::dataChanged, this, &CHexEditView::slot_dataChanged);
    slot_dataChanged();
}

void CHexEditView::prepareButtons()
{
    m_ui->m_pBtnUndo->setToolTip(tr("Undo") + QStringLiteral(" (Ctrl+Z)"));
    m_ui->m_pBtnRedo->setToolTip(tr("Redo") + QStringLiteral(" (Ctrl+Y)"));
    connect(m_ui->m_pBtnClear, &QToolButton::clicked, m_ui->hexEdit, &HexEditor::clear);
    connect(m_ui->m_pBtnUndo, &QToolButton::clicked, m_ui->hexEdit, &HexEditor::undo);
    connect(m_ui->m_pBtnRedo, &QToolButton::clicked, m_ui->hexEdit, &HexEditor::redo);
    // Not the buttons' own shortcuts: these wait for an animation, and what is typed meanwhile would be undone instead.
    const auto onKey = [this](const QString &key, void (HexEditor::*step)()) {
        connect(new QShortcut(QKeySequence(key), this), &QShortcut::activated, m_ui->hexEdit, step);
    };
    onKey(QStringLiteral("Ctrl+Z"), &HexEditor::undo);
    onKey(QStringLiteral("Ctrl+Y"), &HexEditor::redo);
    onKey(QStringLiteral("Ctrl+Shift+Z"), &HexEditor::redo);

    const auto dress = [this](QDialogButtonBox::StandardButton which, const QString &picture) {
        QPushButton *button = m_ui->buttonBox->button(which);
        button->setIcon(QIcon(picture));
        button->setProperty("nav", QStringLiteral("tBtnStyle_0"));
    };
    dress(QDialogButtonBox::Ok, QStringLiteral(":/128x128/Images/128x128/Success.png"));
    dress(QDialogButtonBox::Cancel, QStringLiteral(":/128x128/Images/128x128/Error.png"));
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &CHexEditView::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &CHexEditView::reject);
}

/// More bytes per line want a wider dialog; it never becomes narrower by itself.
void CHexEditView::slot_bytesPerLineChanged()
{
    m_ui->hexEdit->setBytesPerLine(m_ui->pComboBox->currentData().toInt());
    resize(std::max(width(), sizeHint().width()), height());
}

void CHexEditView::slot_dataChanged()
{
    m_ui->m_pBtnUndo->setEnabled(m_ui->hexEdit->canUndo());
    m_ui->m_pBtnRedo->setEnabled(m_ui->hexEdit->canRedo());
}
