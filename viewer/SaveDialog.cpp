#include "viewer/SaveDialog.h"

#include "exchange/FindingLines.h"
#include "viewer/CaptureKinds.h"
#include "viewer/core/FrameTimes.h"
#include "widgets/CMessageBox.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int TryAfterMs = 300;
constexpr int ProgressMs = 100;
constexpr int PermilleSteps = 1000;

QString counted(qint64 number)
{
    return QLocale().toString(number);
}

QString firstEnding(const ExchangeFormat &format)
{
    return QString::fromLatin1(format.endings).section(QLatin1Char(' '), 0, 0);
}

/// The path without the ending of its kind.
QString withoutEnding(const QString &path)
{
    const ExchangeFormat *format = exchangeFormatOfPath(path);
    const QStringList endings =
        format != nullptr ? QString::fromLatin1(format->endings).split(QLatin1Char(' ')) : QStringList();
    for (const QString &ending : endings) {
        if (path.endsWith(ending, Qt::CaseInsensitive)) {
            return path.chopped(ending.size());
        }
    }
    return path;
}

} // namespace

SaveDialog::SaveDialog(OpenCapture &capture, Context context, QWidget *parent)
    : QDialog(parent)
    , m_capture(capture)
    , m_context(std::move(context))
    , m_saver(m_calls.poster([this] { slot_ended(); }))
{
    setObjectName(QStringLiteral("saveDialog"));
    setWindowTitle(tr("Save as"));
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(makeForm());
    makeOutcome(*layout);
    makeButtons(*layout);
    m_tryTimer.setSingleShot(true);
    m_tryTimer.setInterval(TryAfterMs);
    connect(&m_tryTimer, &QTimer::timeout, this, &SaveDialog::slot_tryOut);
    m_progressTimer.setInterval(ProgressMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &SaveDialog::slot_progress);
    resize(fontMetrics().averageCharWidth() * 90, sizeHint().height());
    m_kind->setCurrentIndex(std::max(0, m_kind->findData(capture.info().format)));
    m_path->setText(QDir::toNativeSeparators(withoutEnding(capture.path()) + tr("-part") + firstEnding(kind())));
    slot_frames();
}

SaveDialog::~SaveDialog() = default;

QLayout *SaveDialog::makeFrames()
{
    auto *layout = new QVBoxLayout;
    m_frames = new QButtonGroup(this);
    const auto add = [this, layout](Frames frames, const char *name, const QString &text) {
        auto *button = new QRadioButton(text);
        button->setObjectName(QLatin1String(name));
        m_frames->addButton(button, frames);
        layout->addWidget(button);
        return button;
    };
    const bool isFiltered = m_capture.isFiltered();
    add(Shown, "shown", isFiltered ? tr("Those that the &filter passes") : tr("&All"))->setChecked(true);
    const auto [first, last] = m_context.selectedPlaces;
    add(Selected, "selected", tr("The &selected ones: %1").arg(counted(first < 0 ? 0 : qint64{last} - first + 1)))
        ->setEnabled(first >= 0);
    add(Time, "time", tr("Those of a &time"));
    layout->addLayout(makeTimes());
    add(All, "all", tr("A&ll, also those that the filter hides"))->setVisible(isFiltered);
    connect(m_frames, &QButtonGroup::idClicked, this, &SaveDialog::slot_frames);
    return layout;
}

QLayout *SaveDialog::makeTimes()
{
    m_from = new QLineEdit;
    m_from->setObjectName(QStringLiteral("from"));
    m_from->setPlaceholderText(tr("12.5 or 13:45:06"));
    m_to = new QLineEdit;
    m_to->setObjectName(QStringLiteral("to"));
    m_to->setPlaceholderText(tr("the end"));
    auto *layout = new QHBoxLayout;
    for (QLineEdit *edit : {m_from, m_to}) {
        auto *label = new QLabel(edit == m_from ? tr("f&rom") : tr("t&o"));
        label->setBuddy(edit);
        layout->addWidget(label);
        layout->addWidget(edit);
        connect(edit, &QLineEdit::textChanged, this, &SaveDialog::slot_frames);
    }
    return layout;
}

QFormLayout *SaveDialog::makeForm()
{
    m_kind = new QComboBox;
    m_kind->setObjectName(QStringLiteral("kind"));
    for (const ExchangeFormat *format : CaptureKinds::written()) {
        m_kind->addItem(CaptureKinds::filter(*format), QLatin1String(format->name));
    }
    m_deviceTimes = new QCheckBox(tr("With the a&dapter's times instead of the computer's"));
    m_deviceTimes->setObjectName(QStringLiteral("deviceTimes"));
    m_path = new QLineEdit;
    m_path->setObjectName(QStringLiteral("path"));
    m_browse = new QPushButton(tr("&Browse..."));
    m_browse->setObjectName(QStringLiteral("browse"));
    auto *file = new QHBoxLayout;
    file->addWidget(m_path, 1);
    file->addWidget(m_browse);
    auto *form = new QFormLayout;
    form->addRow(tr("Frames:"), makeFrames());
    form->addRow(tr("&Kind:"), m_kind);
    form->addRow(QString(), m_deviceTimes);
    auto *label = new QLabel(tr("F&ile:"));
    label->setBuddy(m_path);
    form->addRow(label, file);
    connect(m_kind, QOverload<int>::of(&QComboBox::activated), this, &SaveDialog::slot_kind);
    connect(m_deviceTimes, &QCheckBox::toggled, this, &SaveDialog::slot_frames);
    connect(m_path, &QLineEdit::textEdited, this, &SaveDialog::slot_path);
    connect(m_browse, &QPushButton::clicked, this, &SaveDialog::slot_browse);
    return form;
}

void SaveDialog::makeOutcome(QBoxLayout &layout)
{
    m_summary = new QLabel;
    m_summary->setObjectName(QStringLiteral("summary"));
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setWordWrap(true);
    m_losses = new QPlainTextEdit;
    m_losses->setObjectName(QStringLiteral("losses"));
    m_losses->setReadOnly(true);
    m_losses->setTabChangesFocus(true);
    m_losses->setMinimumHeight(m_losses->fontMetrics().lineSpacing() * 6);
    m_progress = new QProgressBar;
    m_progress->setRange(0, PermilleSteps);
    layout.addWidget(m_summary);
    layout.addWidget(m_losses);
    layout.addWidget(m_progress);
}

void SaveDialog::makeButtons(QBoxLayout &layout)
{
    m_save = new QPushButton(tr("Sa&ve"));
    m_save->setObjectName(QStringLiteral("save"));
    m_save->setDefault(true);
    m_close = new QPushButton;
    m_close->setObjectName(QStringLiteral("close"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_save);
    buttons->addWidget(m_close);
    layout.addLayout(buttons);
    connect(m_save, &QPushButton::clicked, this, &SaveDialog::slot_save);
    connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
    setSaving(false);
}

const ExchangeFormat &SaveDialog::kind() const
{
    return *exchangeFormat(m_kind->currentData().toString());
}

int SaveDialog::frames() const
{
    return m_frames->checkedId();
}

void SaveDialog::setSaving(bool isSaving)
{
    m_isSaving = isSaving;
    m_save->setEnabled(!isSaving);
    m_close->setEnabled(true);
    m_close->setText(isSaving ? tr("&Stop") : tr("&Close"));
    m_progress->setVisible(isSaving);
}

void SaveDialog::slot_frames()
{
    const bool isTime = frames() == Time;
    m_from->setEnabled(isTime);
    m_to->setEnabled(isTime);
    m_deviceTimes->setEnabled((kind().holds & ExchangeFormat::DeviceTime) == 0);
    if (!m_isSaving) {
        m_summary->setText(tr("Looking what this kind of file can hold..."));
        m_losses->clear();
        m_tryTimer.start();
    }
}

void SaveDialog::slot_kind()
{
    m_path->setText(withoutEnding(m_path->text()) + firstEnding(kind()));
    slot_frames();
}

void SaveDialog::slot_path()
{
    const ExchangeFormat *format = exchangeFormatOfPath(m_path->text());
    const int index = format != nullptr ? m_kind->findData(QLatin1String(format->name)) : -1;
    if (index >= 0 && index != m_kind->currentIndex()) {
        m_kind->setCurrentIndex(index);
        slot_frames();
    }
}

void SaveDialog::slot_browse()
{
    QStringList filters;
    for (const ExchangeFormat *format : CaptureKinds::written()) {
        filters.append(CaptureKinds::filter(*format));
    }
    QString filter = CaptureKinds::filter(kind());
    QString path =
        QFileDialog::getSaveFileName(this, tr("Save as"), QDir::fromNativeSeparators(m_path->text()),
                                     filters.join(QStringLiteral(";;")), &filter, QFileDialog::DontConfirmOverwrite);
    if (path.isEmpty()) {
        return;
    }
    if (exchangeFormatOfPath(path) == nullptr) {
        const int index = std::max(0, m_kind->findText(filter));
        path += firstEnding(*exchangeFormat(m_kind->itemData(index).toString()));
    }
    m_path->setText(QDir::toNativeSeparators(path));
    slot_path();
}

bool SaveDialog::timeOrder(SaveOrder &order, QString &problem) const
{
    const CaptureInfo info = m_capture.info();
    for (const QLineEdit *edit : {m_from, m_to}) {
        if (edit->text().trimmed().isEmpty()) {
            continue;
        }
        const std::optional<qint64> time = timeOfText(edit->text(), *order.store, info);
        if (!time) {
            problem = tr("“%1” is no time of this capture.").arg(edit->text());
            return false;
        }
        // A frame at the last moment belongs to it.
        (edit == m_from ? order.firstRow : order.endRow) = order.store->firstRowAt(edit == m_from ? *time : *time + 1);
    }
    return true;
}

bool SaveDialog::order(SaveOrder &order, QString &problem) const
{
    order.store = m_capture.sharedStore();
    order.filter = m_capture.filter();
    order.endRow = order.store->size();
    order.info = m_capture.info();
    order.format = &kind();
    order.isChinese = m_context.isChinese;
    order.usesDeviceTimes = m_deviceTimes->isEnabled() && m_deviceTimes->isChecked();
    const auto [first, last] = m_context.selectedPlaces;
    if (frames() == Selected && last < m_capture.rowCount()) {
        order.firstRow = m_capture.rowAt(first);
        order.endRow = m_capture.rowAt(last) + 1;
    } else if (frames() == All) {
        order.filter = Filter();
    } else if (frames() == Time && !timeOrder(order, problem)) {
        return false;
    }
    if (order.firstRow >= order.endRow) {
        problem = tr("There are no such frames.");
        return false;
    }
    return true;
}

bool SaveDialog::isOpenFile(const QString &path) const
{
    const QString wanted = QFileInfo(path).canonicalFilePath(); // empty where nothing is there yet
    return !wanted.isEmpty() &&
           std::any_of(m_context.openFiles.begin(), m_context.openFiles.end(),
                       [&wanted](const QString &open) { return QFileInfo(open).canonicalFilePath() == wanted; });
}

void SaveDialog::slot_tryOut()
{
    SaveOrder trial;
    QString problem;
    if (!m_isSaving && order(trial, problem)) {
        m_isRunning = true;
        m_saver.start(trial);
    } else if (!m_isSaving) {
        m_saver.cancel();
        m_summary->setText(problem);
    }
}

void SaveDialog::slot_save()
{
    SaveOrder wanted;
    QString problem;
    wanted.path = QFileInfo(QDir::fromNativeSeparators(m_path->text().trimmed())).absoluteFilePath();
    if (m_path->text().trimmed().isEmpty()) {
        problem = tr("The file needs a name.");
    } else if (isOpenFile(wanted.path)) {
        problem = tr("This file is open here. Choose another name.");
    } else if (order(wanted, problem) && QFileInfo::exists(wanted.path)) {
        CMessageBox box(CMessageBox::Question, tr("Save as"),
                        tr("%1 exists already. Is it to be replaced?").arg(QFileInfo(wanted.path).fileName()),
                        CMessageBox::Yes | CMessageBox::No, this);
        if (box.exec() != CMessageBox::Yes) {
            return;
        }
    }
    if (!problem.isEmpty()) {
        m_summary->setText(problem);
        m_losses->clear();
        return;
    }
    m_tryTimer.stop();
    m_losses->clear();
    m_summary->setText(tr("Saving..."));
    setSaving(true);
    m_isRunning = true;
    m_saver.start(wanted);
    m_progressTimer.start();
    slot_progress();
}

void SaveDialog::slot_progress()
{
    m_progress->setValue(static_cast<int>(m_saver.progress() * PermilleSteps));
}

void SaveDialog::tell(const QString &title, const SaveResult &result)
{
    m_summary->setText(title);
    m_losses->setPlainText(findingLines(result.losses, result.lossCount).join(QLatin1Char('\n')));
}

void SaveDialog::slot_ended()
{
    const std::optional<SaveResult> result = m_saver.result();
    if (!result || !m_isRunning) {
        return; // of a run that another one has replaced meanwhile
    }
    m_isRunning = false;
    const bool wasSaving = m_isSaving;
    m_progressTimer.stop();
    setSaving(false);
    const QString frames = counted(result->frames);
    const QString size = QLocale().formattedDataSize(result->bytes);
    switch (result->end) {
    case SaveResult::End::Cancelled:
        tell(wasSaving ? tr("Saving was stopped; nothing was written.") : QString(), {});
        break;
    case SaveResult::End::Failed:
        tell(result->error, {});
        break;
    case SaveResult::End::Done:
        if (!wasSaving) {
            tell(result->lossCount == 0
                     ? tr("%1 frames, %2. This kind of file can hold all of it.").arg(frames, size)
                     : tr("%1 frames, %2. This kind of file cannot hold everything:").arg(frames, size),
                 *result);
        } else {
            tell(result->lossCount == 0 ? tr("%1 frames were saved, %2.").arg(frames, size)
                                        : tr("%1 frames were saved, %2, but for this:").arg(frames, size),
                 *result);
        }
        break;
    }
}

/// While it saves, closing stops that first; the dialog stays and tells so. A disk that hangs keeps it open no longer
/// than the second try.
void SaveDialog::done(int result)
{
    if (m_isSaving && m_close->isEnabled()) {
        m_close->setEnabled(false);
        m_saver.cancel();
        return;
    }
    QDialog::done(result);
}
