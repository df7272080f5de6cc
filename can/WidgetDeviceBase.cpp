#include "can/WidgetDeviceBase.h"

#include <QFileDialog>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QStandardPaths>

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
    QRegularExpressionValidator hexBlank{QRegularExpression(QStringLiteral("[A-Fa-f0-9\\s]*"))};
    QRegularExpressionValidator decimalBlank{QRegularExpression(QStringLiteral("[0-9\\s]*"))};
    QRegularExpressionValidator decimal{QRegularExpression(QStringLiteral("[0-9]*"))};
    QRegularExpressionValidator hex{QRegularExpression(QStringLiteral("[A-Fa-f0-9]*"))};
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

QValidator *WidgetDeviceBase::hexBlankValidator() const
{
    return &m_p->hexBlank;
}

QValidator *WidgetDeviceBase::decimalBlankValidator() const
{
    return &m_p->decimalBlank;
}

QValidator *WidgetDeviceBase::decimalValidator() const
{
    return &m_p->decimal;
}

QValidator *WidgetDeviceBase::hexValidator() const
{
    return &m_p->hex;
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
