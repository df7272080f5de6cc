#include "device/CANAPI.h"

#include "device/AdapterLibrary.h"
#include "device/LibraryImage.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <type_traits>
#include <utility>

namespace {

/// A bare file name means the working directory; left alone, the system's loader would search its own folders for it.
QString pathForLoader(const QString &path)
{
    const QFileInfo file(path);
    return file.path() == QLatin1String(".") ? QStringLiteral("./") + file.fileName() : path;
}

AdapterLibraryState whyRefused(const QString &path)
{
    if (!QFileInfo::exists(path)) {
        return AdapterLibraryState::NotFound;
    }
    const QByteArray library = fileMachine(path);
    const QByteArray program = fileMachine(QCoreApplication::applicationFilePath());
    const bool isForAnother = !library.isEmpty() && !program.isEmpty() && library != program;
    return isForAnother ? AdapterLibraryState::WrongArchitecture : AdapterLibraryState::LoadFailed;
}

} // namespace

CANAPI::CANAPI(QString libraryPath)
    : m_path(std::move(libraryPath))
{
    if (m_path.isEmpty()) {
        return;
    }
    m_handle = AdapterLibrary::open(pathForLoader(m_path), m_systemMessage);
    if (m_handle == nullptr) {
        m_state = whyRefused(m_path);
        return;
    }
    resolveEntries([this](const char *name) { return AdapterLibrary::resolve(m_handle, name); });
    const auto errInfoSize =
        reinterpret_cast<AdapterEntry::Unused>(AdapterLibrary::resolve(m_handle, "X9_ErrInfoSize"));
    m_tellsErrors = VCI_ReadErrInfo != nullptr && errInfoSize != nullptr && errInfoSize() == sizeof(VCI_ERR_INFO);
}

CANAPI::CANAPI(const EntryLookUp &lookUp)
{
    resolveEntries(lookUp);
}

CANAPI::~CANAPI()
{
    if (m_handle != nullptr) {
        AdapterLibrary::close(m_handle);
    }
}

QString CANAPI::defaultLibraryPath()
{
    return AdapterLibrary::defaultPath();
}

void CANAPI::resolveEntries(const EntryLookUp &lookUp)
{
    const auto resolve = [this, &lookUp](const char *name, auto &slot) {
        slot = reinterpret_cast<std::decay_t<decltype(slot)>>(lookUp(name));
        const QString symbol = QString::fromLatin1(name);
        if (slot == nullptr && !m_missing.contains(symbol)) {
            m_missing.append(symbol);
        }
    };
    resolve("VCI_OpenDevice", VCI_OpenDevice);
    resolve("VCI_CloseDevice", VCI_CloseDevice);
    resolve("VCI_InitCAN", VCI_InitCAN);
    resolve("VCI_ReadBoardInfo", VCI_ReadBoardInfo);
    resolve("VCI_ReadErrInfo", VCI_ReadErrInfo);
    resolve("VCI_ReadCANStatus", VCI_ReadCANStatus);
    resolve("VCI_GetReference", VCI_GetReference);
    resolve("VCI_SetReference", VCI_SetReference);
    resolve("VCI_StartCAN", VCI_StartCAN);
    resolve("VCI_ResetCAN", VCI_ResetCAN);
    resolve("VCI_GetReceiveNum", VCI_GetReceiveNum);
    resolve("VCI_ClearBuffer", VCI_ClearBuffer);
    resolve("VCI_Transmit", VCI_Transmit);
    resolve("VCI_Receive", VCI_Receive);
    resolve("KQ_OpenCANGateWay", KQ_OpenCANGateWay);
    resolve("KQ_SetCANGateWayIDFilter", KQ_SetCANGateWayIDFilter);
    resolve("KQ_GetCANGateWayIDFilter", KQ_GetCANGateWayIDFilter);
    resolve("KQ_ReadInfo", KQ_ReadInfo);
    resolve("KQ_OpenLIN", KQ_OpenLIN);
    resolve("KQ_CloseLIN", KQ_CloseLIN);
    resolve("KQ_TransmitLIN", KQ_TransmitLIN);
    resolve("KQ_ReceiveLIN", KQ_ReceiveLIN);
    resolve("KQ_ChangeLINMode", KQ_ChangeLINMode);
    resolve("KQ_TransmitLINBySlave", KQ_TransmitLINBySlave);
    resolve("KQ_ReceiveLINBySlave", KQ_ReceiveLINBySlave);
    resolve("KQ_ReceiveLINBySlave", KQ_ReceiveLINBySlave); // looked up twice: part of the library's contract
    resolve("KQ_GetReceiveNumCANFD", KQ_GetReceiveNumCANFD);
    resolve("KQ_TransmitCANFD", KQ_TransmitCANFD);
    resolve("KQ_ReceiveCANFD", KQ_ReceiveCANFD);
    m_state = m_missing.isEmpty() ? AdapterLibraryState::Loaded : AdapterLibraryState::EntriesMissing;
}
