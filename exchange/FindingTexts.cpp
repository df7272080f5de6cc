#include "exchange/FindingTexts.h"

#include <QCoreApplication>

namespace {

class Text
{
    Q_DECLARE_TR_FUNCTIONS(FindingTexts)
};

} // namespace

QString FindingTexts::otherEvent()
{
    return Text::tr("no frame of a bus: skipped");
}

QString FindingTexts::damagedLine()
{
    return Text::tr("damaged line: skipped");
}

QString FindingTexts::wrongLength()
{
    return Text::tr("fewer bytes than the length says: frame skipped");
}

QString FindingTexts::damagedRecord()
{
    return Text::tr("damaged: skipped up to the next record");
}

QString FindingTexts::cutAtEnd()
{
    return Text::tr("the file ends within a record");
}

QString FindingTexts::damagedCompression()
{
    return Text::tr("damaged compressed data: the rest of the container skipped");
}

QString FindingTexts::unknownCompression()
{
    return Text::tr("unknown compression: container skipped");
}

QString FindingTexts::wrongContainerSize()
{
    return Text::tr("container holds another number of bytes than it says");
}

QString FindingTexts::transmitRequest()
{
    return Text::tr("request to send, no frame: skipped");
}

QString FindingTexts::errorDetails()
{
    return Text::tr("kind of the error not written: this kind of file does not tell it");
}

QString FindingTexts::linErrorData()
{
    return Text::tr("data of a LIN frame with an error not written: this kind of file has none");
}

QString FindingTexts::paddedLength(int from, int to)
{
    return Text::tr("length %1 is none of CAN FD: padded to %2").arg(from).arg(to);
}

QString FindingTexts::headerNotCompleted()
{
    return Text::tr("the output is a pipe: the file's size, counts and end time are left out of its header");
}

QString FindingTexts::damagedHeader()
{
    return Text::tr("the file's header is damaged");
}

QString FindingTexts::unknownVersion()
{
    return Text::tr("unknown version of the format: read as the latest known");
}

QString FindingTexts::timeOutOfRange()
{
    return Text::tr("time beyond the year 2262: left out");
}
