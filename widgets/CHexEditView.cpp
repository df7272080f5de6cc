#include "widgets/CHexEditView.h"

#include "ui_CHexEditView.h"
#include "widgets/HexEditHistory.h"

#include <qhexedit.h>

#include <QPushButton>
#include <QShortcut>

#include <algorithm>

namespace {
constexpr int BytesPerLineMax = 16;
constexpr int BytesPerLineFirst = 8;

/// A payload cut or filled with zeros to a size.
QByteArray sized(QByteArray payload, int size)
{
    payload.truncate(size);
    payload.append(QByteArray(size - payload.size(), '\0'));
    return payload;
}
} // namespace

class CHexEditViewPrivate
{
public:
    CHexEditViewPrivate(CHexEditView *dialog, int payloadSize)
        : q(dialog)
        , size(payloadSize)
    {
    }

    void fillCombo();
    void prepareButtons();
    void prepareEditor(const QByteArray &payload);
    void connectSignals();
    void updateButtons();
    void growToEditor() const;

    CHexEditView *q;
    const int size; ///< bytes of the payload, whatever is edited
    Ui::CHexEditView ui;
    std::unique_ptr<HexEditHistory> history;
};

void CHexEditViewPrivate::fillCombo()
{
    for (int count = 1; count <= BytesPerLineMax; ++count) {
        ui.pComboBox->addItem(QString::number(count), count);
    }
    ui.pComboBox->setCurrentIndex(ui.pComboBox->findData(BytesPerLineFirst));
}

void CHexEditViewPrivate::prepareButtons()
{
    ui.m_pBtnUndo->setToolTip(CHexEditView::tr("Undo") + QStringLiteral(" (Ctrl+Z)"));
    ui.m_pBtnRedo->setToolTip(CHexEditView::tr("Redo") + QStringLiteral(" (Ctrl+Y)"));
    QPushButton *accept = ui.buttonBox->button(QDialogButtonBox::Ok);
    accept->setIcon(QIcon(QStringLiteral(":/128x128/Images/128x128/Success.png")));
    accept->setProperty("nav", QStringLiteral("tBtnStyle_0"));
    QPushButton *reject = ui.buttonBox->button(QDialogButtonBox::Cancel);
    reject->setIcon(QIcon(QStringLiteral(":/128x128/Images/128x128/Error.png")));
    reject->setProperty("nav", QStringLiteral("tBtnStyle_0"));
}

void CHexEditViewPrivate::prepareEditor(const QByteArray &payload)
{
    ui.m_pLabel->setText(QStringLiteral("%1 %2").arg(size).arg(CHexEditView::tr("Byte")));
    ui.hexEdit->setOverwriteMode(true);
    ui.hexEdit->setReadOnly(false);
    ui.hexEdit->setAddressArea(true);
    ui.hexEdit->setAsciiArea(true);
    ui.hexEdit->setBytesPerLine(BytesPerLineFirst);
    ui.hexEdit->setData(payload);
    ui.hexEdit->setFocus();
    history = std::make_unique<HexEditHistory>(*ui.hexEdit);
    updateButtons();
}

void CHexEditViewPrivate::connectSignals()
{
    using Dialog = CHexEditView;
    QObject::connect(ui.m_pBtnClear, &QToolButton::clicked, q, &Dialog::slot_clear);
    QObject::connect(ui.m_pBtnUndo, &QToolButton::clicked, q, &Dialog::slot_undo);
    QObject::connect(ui.m_pBtnRedo, &QToolButton::clicked, q, &Dialog::slot_redo);
    QObject::connect(ui.pComboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), q,
                     &Dialog::slot_bytesPerLineChanged);
    QObject::connect(ui.hexEdit, &QHexEdit::dataChanged, q, &Dialog::slot_dataChanged);
    // Queued: the editor may be in the middle of a step of its history.
    QObject::connect(ui.hexEdit, &QHexEdit::currentSizeChanged, q, &Dialog::slot_restoreLength, Qt::QueuedConnection);
    QObject::connect(ui.buttonBox, &QDialogButtonBox::accepted, q, &Dialog::accept);
    QObject::connect(ui.buttonBox, &QDialogButtonBox::rejected, q, &Dialog::reject);
    // Not the buttons' own shortcuts: these wait for an animation, and what is typed meanwhile would be undone instead.
    const auto onKey = [this](const QString &key, void (Dialog::*slot)()) {
        QObject::connect(new QShortcut(QKeySequence(key), q), &QShortcut::activated, q, slot);
    };
    onKey(QStringLiteral("Ctrl+Z"), &Dialog::slot_undo);
    onKey(QStringLiteral("Ctrl+Y"), &Dialog::slot_redo);
    onKey(QStringLiteral("Ctrl+Shift+Z"), &Dialog::slot_redo);
}

void CHexEditViewPrivate::updateButtons()
{
    ui.m_pBtnUndo->setEnabled(history->canUndo());
    ui.m_pBtnRedo->setEnabled(history->canRedo());
}

/// More bytes per line want a wider dialog; it never becomes narrower by itself.
void CHexEditViewPrivate::growToEditor() const
{
    const QSize wanted = q->sizeHint();
    q->resize(std::max(q->width(), wanted.width()), q->height());
}

CHexEditView::CHexEditView(const QByteArray &payload, QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<CHexEditViewPrivate>(this, payload.size()))
{
    m_p->ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_p->fillCombo();
    m_p->prepareButtons();
    m_p->prepareEditor(payload);
    m_p->connectSignals();
}

CHexEditView::~CHexEditView() = default;

QByteArray CHexEditView::data() const
{
    return sized(m_p->ui.hexEdit->data(), m_p->size);
}

void CHexEditView::slot_clear()
{
    m_p->history->clear();
}

void CHexEditView::slot_undo()
{
    m_p->history->undo();
}

void CHexEditView::slot_redo()
{
    m_p->history->redo();
}

void CHexEditView::slot_bytesPerLineChanged()
{
    m_p->ui.hexEdit->setBytesPerLine(m_p->ui.pComboBox->currentData().toInt());
    m_p->growToEditor();
}

void CHexEditView::slot_dataChanged()
{
    m_p->updateButtons();
}

/// An editor that let the number of bytes change, though it overwrites, gets the right number back.
void CHexEditView::slot_restoreLength()
{
    if (m_p->ui.hexEdit->data().size() != m_p->size) {
        m_p->ui.hexEdit->setData(data());
    }
}
