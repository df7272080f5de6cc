#include "device/LibraryImage.h"

#include <QFile>
#include <QHash>
#include <QtEndian>

namespace {

/// System V ABI, "Object Files": class and data encoding are 1 or 2; e_machine is a number in that encoding.
QByteArray elfMachine(const QByteArray &head)
{
    constexpr int ClassAndDataOffset = 4;
    constexpr int MachineOffset = 18;
    const QByteArray classAndData = head.mid(ClassAndDataOffset, 2);
    const QByteArray machine = head.mid(MachineOffset, 2);
    const auto isKnown = [](char number) {
        return number == 1 || number == 2;
    };
    const bool isWhole = machine.size() == 2 && isKnown(classAndData[0]) && isKnown(classAndData[1]);
    return isWhole ? "ELF" + classAndData + machine : QByteArray();
}

/// The old DOS header gives the place of the signature, which the machine number follows; that includes the word size.
QByteArray peMachine(const QByteArray &head)
{
    constexpr int PlaceOffset = 0x3C;
    const QByteArray signature("PE\0\0", 4);
    constexpr int PlaceSize = 4;
    constexpr int MachineSize = 2;
    if (head.size() < PlaceOffset + PlaceSize) {
        return {};
    }
    const auto place = qFromLittleEndian<quint32>(head.constData() + PlaceOffset);
    const int size = signature.size() + MachineSize;
    const QByteArray machine = place < quint32(head.size()) ? head.mid(int(place), size) : QByteArray();
    return machine.size() == size && machine.startsWith(signature) ? machine : QByteArray();
}

} // namespace

QByteArray libraryMachine(const QByteArray &head)
{
    if (head.startsWith("\x7F"
                        "ELF")) {
        return elfMachine(head);
    }
    return head.startsWith("MZ") ? peMachine(head) : QByteArray();
}

QByteArray fileMachine(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? libraryMachine(file.read(LibraryImageHeadSize)) : QByteArray();
}

int libraryBits(const QByteArray &machine)
{
    static const QHash<QByteArray, int> known{
        {QByteArrayLiteral("ELF\1\1\x03\0"), 32},  // EM_386
        {QByteArrayLiteral("ELF\2\1\x3E\0"), 64},  // EM_X86_64
        {QByteArrayLiteral("PE\0\0\x4C\x01"), 32}, // IMAGE_FILE_MACHINE_I386
        {QByteArrayLiteral("PE\0\0\x64\x86"), 64}, // IMAGE_FILE_MACHINE_AMD64
    };
    return known.value(machine);
}
