#include "can/WidgetDeviceBase.h"

#include <QFileDialog>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QStandardPaths>

#include <array>

namespace {
/// "can" of the file type "CAN File(*.can)".
QString suffixOf(const QString &nameFilter)
{
    static const QRegularExpression pattern(QStringLiteral("\\*\\.(\\w+)"));
    return pattern.match(nameFilter).captured(1);
}
} // namespace

class WidgetDeviceBasePrivate
{
public:
    ChannelParam param;
    /// By WidgetDeviceBase::Digits.
    std::array<QRegularExpressionValidator, 4> validators{{
        QRegularExpressionValidator(QRegularExpression(QStringLiteral("[A-Fa-f0-9\\s]*"))),
        QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9\\s]*"))),
        QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*"))),
        QRegularExpressionValidator(QRegularExpression(QStringLiteral("[A-Fa-f0-9]*"))),
    }};
};

WidgetDeviceBase::WidgetDeviceBase(const ChannelParam &param, QWidget *parent)
    : QWidget(parent)
    , m_p(std::make_unique<WidgetDeviceBasePrivate>())
{
    m_p->param = param;
}

WidgetDeviceBase::~WidgetDeviceBase() = default;

const ChannelParam &WidgetDeviceBase::channelParam() const
{
    return m_p->param;
}

void WidgetDeviceBase::setChannelParam(const ChannelParam &param)
{
    m_p->param = param;
}

QValidator *WidgetDeviceBase::validator(Digits digits)
{
    return &m_p->validators.at(digits);
}

QString WidgetDeviceBase::askSavePath(const QString &nameFilters)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    QFileDialog dialog(this, tr("Save File"), folder, nameFilters);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffixOf(dialog.selectedNameFilter()));
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&dialog](const QString &nameFilter) { dialog.setDefaultSuffix(suffixOf(nameFilter)); });
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}
