#include "tests/support/SaveDialogDriver.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <utility>

SaveDialogDriver::SaveDialogDriver(QString path, std::function<void(QFileDialog &)> beforeAnswer)
    : m_path(std::move(path))
    , m_beforeAnswer(std::move(beforeAnswer))
{
    connect(&m_timer, &QTimer::timeout, this, &SaveDialogDriver::lookForDialog);
    m_timer.start(20);
}

void SaveDialogDriver::lookForDialog()
{
    auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr || !dialog->isVisible()) {
        return;
    }
    m_timer.stop();
    m_windowTitle = dialog->windowTitle();
    m_folder = dialog->directory().path();
    m_nameFilters = dialog->nameFilters();
    auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    auto *buttons = dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    if (m_path.isEmpty() || name == nullptr) {
        dialog->reject();
        m_isAnswered = true;
        return;
    }
    name->setText(m_path);
    if (m_beforeAnswer) {
        m_beforeAnswer(*dialog);
    }
    m_isAnswered = true;
    const bool isSaving = dialog->acceptMode() == QFileDialog::AcceptSave;
    QTest::mouseClick(buttons->button(isSaving ? QDialogButtonBox::Save : QDialogButtonBox::Open), Qt::LeftButton);
}
