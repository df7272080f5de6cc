#include "device/LibraryImage.h"

#include <QtEndian>

namespace {

// Offsets of the ELF identification and header, System V ABI, "Object Files".
constexpr int ElfClassOffset = 4;
constexpr int ElfDataOffset = 5;
constexpr int ElfMachineOffset = 18;
constexpr char ElfClass32 = 1;
constexpr char ElfClass64 = 2;
constexpr char ElfLittleEndian = 1;
constexpr char ElfBigEndian = 2;

// The old DOS header gives the place of the PE signature, the machine number follows it.
constexpr int DosPeOffset = 0x3C;
constexpr int PeMachineOffset = 4;

/// The bytes of one number, null when they do not all lie inside.
template<class Number>
const char *bytesAt(const QByteArray &bytes, qint64 offset)
{
    const bool isInside = offset >= 0 && offset <= bytes.size() - qint64(sizeof(Number));
    return isInside ? bytes.constData() + offset : nullptr;
}

LibraryImage readElf(const QByteArray &head)
{
    const char *machine = bytesAt<quint16>(head, ElfMachineOffset);
    if (machine == nullptr) {
        return {};
    }
    const char elfClass = head[ElfClassOffset];
    const char data = head[ElfDataOffset];
    if ((elfClass != ElfClass32 && elfClass != ElfClass64) || (data != ElfLittleEndian && data != ElfBigEndian)) {
        return {};
    }
    LibraryImage image;
    image.format = LibraryImage::Format::Elf;
    image.wordBits = elfClass == ElfClass32 ? 32 : 64;
    image.bigEndian = data == ElfBigEndian;
    image.machine = image.bigEndian ? qFromBigEndian<quint16>(machine) : qFromLittleEndian<quint16>(machine);
    return image;
}

LibraryImage readPe(const QByteArray &head)
{
    const char *place = bytesAt<quint32>(head, DosPeOffset);
    if (place == nullptr) {
        return {};
    }
    const qint64 signature = qFromLittleEndian<quint32>(place);
    const char *machine = bytesAt<quint16>(head, signature + PeMachineOffset);
    if (machine == nullptr || head.mid(int(signature), PeMachineOffset) != QByteArray("PE\0\0", PeMachineOffset)) {
        return {};
    }
    LibraryImage image;
    image.format = LibraryImage::Format::Pe;
    image.machine = qFromLittleEndian<quint16>(machine);
    return image;
}

} // namespace

LibraryImage readLibraryImage(const QByteArray &head)
{
    if (head.startsWith("\x7F"
                        "ELF")) {
        return readElf(head);
    }
    if (head.startsWith("MZ")) {
        return readPe(head);
    }
    return {};
}

bool isForAnotherMachine(const LibraryImage &library, const LibraryImage &program)
{
    if (library.format == LibraryImage::Format::None || program.format == LibraryImage::Format::None) {
        return false;
    }
    return library.format != program.format || library.wordBits != program.wordBits ||
           library.bigEndian != program.bigEndian || library.machine != program.machine;
}
