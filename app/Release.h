#pragma once

#include <QString>

/// A published release, as the update server describes it. Every text comes from the network and is not to be trusted.
struct Release
{
    QString name;
    QString summary; ///< rich text
    QString versionNo;
    QString url; ///< of the package to download
};

/// This program's own version, "1.1.1" for instance.
QString programVersion();
/// The maker's web site, as the program was built with it (X9CAN_WEB_SITE); may be empty.
QString webSite();
/// Where users ask for help, as the program was built with it (X9CAN_SUPPORT); may be empty.
QString supportAddress();
/// Whether the release is newer than this program. A version that is not made of numbers and dots never is.
bool isNewerThanProgram(const Release &release);
