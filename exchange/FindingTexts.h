#pragma once

#include <QString>

/// What readers and writers of several kinds report, in the user's language.
namespace FindingTexts {

QString otherEvent();    ///< no frame: a comment of the bus, a status, another bus
QString damagedLine();   ///< nothing that a line of the kind can be
QString wrongLength();   ///< a frame with fewer bytes than its length says
QString damagedRecord(); ///< nothing that a record of the kind can be; the next good one was looked for
QString cutAtEnd();      ///< the last record is not whole
QString damagedCompression();
QString unknownCompression();
QString wrongContainerSize();           ///< a container holds more or less than it says
QString transmitRequest();              ///< what was to be sent, besides what was
QString errorDetails();                 ///< the kind of format has error frames without
QString linErrorData();                 ///< data of a LIN frame with an error is lost
QString paddedLength(int from, int to); ///< a CAN FD length that is none
QString headerNotCompleted();           ///< the output could not go back
QString damagedHeader();                ///< the file does not begin as its kind does
QString unknownVersion();               ///< of the kind; read as the latest known
QString timeOutOfRange();               ///< a time beyond what nanoseconds since 1970 can tell; the frame has none

} // namespace FindingTexts
