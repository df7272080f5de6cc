#pragma once

#include "device/AdapterRecords.h"

#include <QMetaType>
#include <QString>
#include <QStringList>

#include <functional>

/// Why the adapter library is or is not usable.
enum class AdapterLibraryState {
    NotLoaded,         ///< constructed without a path (a table filled by hand)
    Loaded,            ///< every entry was found
    EntriesMissing,    ///< loaded, but missingEntries() is not empty
    NotFound,          ///< no file under the path
    WrongArchitecture, ///< the file is a library for another processor, word size or system
    LoadFailed,        ///< the system refused it for another reason, given by systemMessage()
};

/// The adapter library, loaded at run time, as one table of its entry points. A slot is null when the library or the
/// entry is missing; the caller checks before it calls. The slots never change after construction, so any thread may
/// call through them; what may be called at the same time is the library's business.
class CANAPI
{
public:
    /// Loads libraryPath (relative paths count from the working directory) and resolves every entry. An empty path
    /// loads nothing. Never fails: see state().
    explicit CANAPI(QString libraryPath);
    /// Gives the entry point of a name, null when there is none.
    using EntryLookUp = std::function<void (*(const char *name))()>;
    /// Resolves every entry through lookUp instead of a library file. What it answers must outlive this object.
    explicit CANAPI(const EntryLookUp &lookUp);
    ~CANAPI();
    CANAPI(const CANAPI &) = delete;
    CANAPI &operator=(const CANAPI &) = delete;

    /// The path the program loads: "./libControlCAN.so", on Windows ".\\ControlCAN.dll".
    static QString defaultLibraryPath();

    AdapterLibraryState state() const { return m_state; }
    const QString &libraryPath() const { return m_path; }
    /// Symbols that the loaded library does not export, in the order of the look-up.
    const QStringList &missingEntries() const { return m_missing; }
    /// What the system's loader said; empty when it loaded.
    const QString &systemMessage() const { return m_systemMessage; }
    /// Whether VCI_ReadErrInfo fills the record that is known here: a maker's library may take it for something else.
    bool tellsErrors() const { return m_tellsErrors; }

    AdapterEntry::OpenDevice VCI_OpenDevice = nullptr;
    AdapterEntry::CloseDevice VCI_CloseDevice = nullptr;
    AdapterEntry::InitCAN VCI_InitCAN = nullptr;
    AdapterEntry::Unused VCI_ReadBoardInfo = nullptr;
    AdapterEntry::ReadErrInfo VCI_ReadErrInfo = nullptr; ///< to be called only if tellsErrors()
    AdapterEntry::Unused VCI_ReadCANStatus = nullptr;
    AdapterEntry::Unused VCI_GetReference = nullptr;
    AdapterEntry::Unused VCI_SetReference = nullptr;
    AdapterEntry::Channel VCI_StartCAN = nullptr;
    AdapterEntry::Channel VCI_ResetCAN = nullptr;
    AdapterEntry::Channel VCI_GetReceiveNum = nullptr;
    AdapterEntry::Channel VCI_ClearBuffer = nullptr;
    AdapterEntry::Transmit VCI_Transmit = nullptr;
    AdapterEntry::Receive VCI_Receive = nullptr;
    AdapterEntry::ReadInfo KQ_ReadInfo = nullptr;
    AdapterEntry::OpenCANGateWay KQ_OpenCANGateWay = nullptr;
    AdapterEntry::SetCANGateWayIDFilter KQ_SetCANGateWayIDFilter = nullptr;
    AdapterEntry::GetCANGateWayIDFilter KQ_GetCANGateWayIDFilter = nullptr;
    AdapterEntry::OpenLIN KQ_OpenLIN = nullptr;
    AdapterEntry::Channel KQ_CloseLIN = nullptr;
    AdapterEntry::TransmitLIN KQ_TransmitLIN = nullptr;
    AdapterEntry::ReceiveLIN KQ_ReceiveLIN = nullptr;
    AdapterEntry::ChangeLINMode KQ_ChangeLINMode = nullptr;
    AdapterEntry::Unused KQ_TransmitLINBySlave = nullptr;
    AdapterEntry::ReceiveLIN KQ_ReceiveLINBySlave = nullptr;
    AdapterEntry::Channel KQ_GetReceiveNumCANFD = nullptr;
    AdapterEntry::TransmitCANFD KQ_TransmitCANFD = nullptr;
    AdapterEntry::ReceiveCANFD KQ_ReceiveCANFD = nullptr;

private:
    void resolveEntries(const EntryLookUp &lookUp);

    void *m_handle = nullptr;
    QString m_path;
    AdapterLibraryState m_state = AdapterLibraryState::NotLoaded;
    QStringList m_missing;
    QString m_systemMessage;
    bool m_tellsErrors = false;
};

Q_DECLARE_METATYPE(CANAPI *)
Q_DECLARE_METATYPE(VCI_CAN_OBJ)
Q_DECLARE_METATYPE(VCI_CANFD_OBJ)
