#include "app/UpdateKey.h"

QByteArray updateKey()
{
    return QByteArrayLiteral(X9_UPDATE_KEY);
}
