#pragma once

#include <QString>

/// The base URL of the update server: the one set for this installation, else the one the program was built with
/// (X9CAN_UPDATE_SERVER). Empty: there is none, and every query fails at once.
QString updateServer();
/// The maker's web site, as the program was built with it (X9CAN_WEB_SITE); may be empty.
QString webSite();
/// Where users ask for help, as the program was built with it (X9CAN_SUPPORT); may be empty.
QString supportAddress();
