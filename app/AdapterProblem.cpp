#include "app/AdapterProblem.h"

#include "app/ProgramKind.h"
#include "device/CANAPI.h"
#include "device/LibraryImage.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

/// The place of these texts in the translations.
class AdapterProblem
{
    Q_DECLARE_TR_FUNCTIONS(AdapterProblem)
};

/// Where the library is looked for: a relative path counts from the working directory, which need not be the program's.
QString fullPath(const QString &path)
{
    return QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
}

constexpr int ProgramBits = 8 * int(sizeof(void *));

/// file: the library, as it is shown.
QString wrongArchitectureText(const CANAPI &api, const QString &file)
{
    constexpr int FormatSize = 2; // of what tells the machine
    const QByteArray library = fileMachine(api.libraryPath());
    const QByteArray program = fileMachine(QCoreApplication::applicationFilePath());
    const int bits = library.left(FormatSize) == program.left(FormatSize) ? libraryBits(library) : 0;
    const QString ofProgram = QString::number(ProgramBits);
    if (bits == 0 || bits == ProgramBits) {
        return AdapterProblem::tr("The adapter library %1 is made for another kind of processor; "
                                  "this program needs the %2-bit one.\n"
                                  "Put the right library beside the program and start it again.")
            .arg(file, ofProgram);
    }
    const QString kind = programKindFor(bits);
    if (kind.isEmpty()) {
        return AdapterProblem::tr("The adapter library %1 is a %2-bit one; this is the %3-bit program.\n"
                                  "Put the adapter's %3-bit library beside the program and start it again.")
            .arg(file, QString::number(bits), ofProgram);
    }
    return AdapterProblem::tr("The adapter library %1 is a %2-bit one; this is the %3-bit program.\n"
                              "Install the program that fits: the download with \"%4\" in its name. "
                              "Or put the adapter's %3-bit library beside this program and start it again.")
        .arg(file, QString::number(bits), ofProgram, kind);
}

/// What the library tells, in the user's language; empty when it tells nothing.
QString sentenceOf(AdapterProblemCode code)
{
    switch (code) {
    case AdapterProblemCode::None:
        return {};
    case AdapterProblemCode::NoInterface:
        return AdapterProblem::tr("This computer has no CAN interface for it.");
    case AdapterProblemCode::WrongBitRate:
        return AdapterProblem::tr("Its interface runs at another bit rate, which this program may not change.");
    case AdapterProblemCode::WrongMode:
        return AdapterProblem::tr("Its interface is in another mode, which this program may not change.");
    case AdapterProblemCode::IsDown:
        return AdapterProblem::tr("Its interface is down, and this program may not bring it up.");
    case AdapterProblemCode::NoCanFd:
        return AdapterProblem::tr("Its interface has no CAN FD.");
    case AdapterProblemCode::NoSuchBitRate:
        return AdapterProblem::tr("This bit rate cannot be set.");
    case AdapterProblemCode::NoLin:
        return AdapterProblem::tr("This adapter has no LIN.");
    case AdapterProblemCode::System:
        break;
    }
    return AdapterProblem::tr("The system refused it."); // also what a newer library may tell
}

QString explained(const ChannelProblem &reason)
{
    QString text = sentenceOf(reason.code);
    if (!reason.text.isEmpty() && reason.code != AdapterProblemCode::NoLin) {
        text += QStringLiteral("\n(%1)").arg(reason.text);
    }
    if (!reason.remedy.isEmpty()) {
        text += QLatin1Char('\n') +
                AdapterProblem::tr("An administrator can help with this command:\n%1").arg(reason.remedy);
    }
    return text;
}

} // namespace

QString adapterLibraryProblem(const CANAPI &api)
{
    const QString file = fullPath(api.libraryPath());
    switch (api.state()) {
    case AdapterLibraryState::NotLoaded:
    case AdapterLibraryState::Loaded:
        return {};
    case AdapterLibraryState::NotFound:
        return AdapterProblem::tr("The adapter library %1 was not found.\n"
                                  "Put it beside the program and start the program again.")
            .arg(file);
    case AdapterLibraryState::WrongArchitecture:
        return wrongArchitectureText(api, file);
    case AdapterLibraryState::LoadFailed:
        return AdapterProblem::tr("The adapter library %1 could not be loaded:\n%2").arg(file, api.systemMessage());
    case AdapterLibraryState::EntriesMissing:
        return AdapterProblem::tr("The adapter library %1 is too old: it lacks %2.\n"
                                  "Install the adapter's current library.")
            .arg(file, api.missingEntries().join(QStringLiteral(", ")));
    }
    return {};
}

QString channelOpenProblem(CANError error, const ChannelParam &param, const ChannelProblem &reason)
{
    const auto fill = [&param](const QString &text) {
        return text.arg(param.device).arg(param.channel);
    };
    switch (error) {
    case CAN_DeviceOpenFailed:
        return AdapterProblem::tr("Device %1 could not be opened.\n"
                                  "Check that it is plugged in and not used by another program.")
            .arg(param.device);
    case CAN_DeviceNotSupport:
        return AdapterProblem::tr("Device %1 does not offer CAN FD.\n"
                                  "Open it without a CAN FD bit rate.")
            .arg(param.device);
    case CAN_ChannelExists:
        return fill(AdapterProblem::tr("Device %1, channel %2 is open already."));
    case CAN_ChannelOpenFailed:
        if (reason.code != AdapterProblemCode::None) {
            return fill(AdapterProblem::tr("Device %1 could not open channel %2.")) + QLatin1Char('\n') +
                   explained(reason);
        }
        return fill(AdapterProblem::tr("Device %1 refused to open channel %2.\n"
                                       "Check the bit rate and the other parameters."));
    case CAN_OK:
    case CAN_DeviceExists:
    case CAN_DeviceNotExists:
    case CAN_ChannelNotExists:
    case CAN_SendFailed:
    case CAN_ReadFailed:
    case CAN_GatewayOperationFailed:
    case CAN_Unknown:
        break; // no answers to opening
    }
    return fill(AdapterProblem::tr("Device %1, channel %2 could not be opened."));
}

QString deviceLostProblem(quint8 device)
{
    return AdapterProblem::tr("Device %1 does not answer any more. Was it unplugged?\n"
                              "What was received stays in its tabs and can be saved. To go on, close "
                              "these tabs, plug it in and open the channels again.")
        .arg(device);
}
