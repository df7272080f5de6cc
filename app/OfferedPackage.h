#pragma once

#include "app/ProgramKind.h"

#include <QByteArray>
#include <QString>

/// What a package is offered as. The comment that is signed with it must tell the same, in one of these forms, with one
/// blank between two words:
///
///     X9CAN release VERSION KIND...
///     X9CAN firmware PRODUCT VERSION
///
/// KIND: the programs that it is for, as programKind() names them. PRODUCT and VERSION: as the update server has them.
struct OfferedPackage
{
    QString product; ///< of a firmware, its product code; empty: a release of this program
    QString version; ///< as the server told it; empty: not told, for a release only
};

/// In the user's language: why a package with this comment is not the one that was offered, or is none for this
/// program. Empty when it is. A release must be newer than this program; a firmware need not be newer than the
/// device's.
QString packageProblem(const OfferedPackage &offered, const QByteArray &comment, const QString &kind = programKind());
