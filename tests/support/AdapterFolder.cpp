#include "tests/support/AdapterFolder.h"

#include <QDir>
#include <QFile>

AdapterFolder::AdapterFolder(const QByteArray &json)
    : m_previous(QDir::currentPath())
{
    QFile file(m_folder.filePath(QStringLiteral("virtual-adapter.json")));
    if (!m_folder.isValid() || !file.open(QIODevice::WriteOnly) || file.write(json) != json.size() || !file.flush() ||
        !QDir::setCurrent(m_folder.path())) {
        qFatal("cannot prepare the folder of the virtual adapter: %s", qPrintable(file.errorString()));
    }
}

AdapterFolder::~AdapterFolder()
{
    QDir::setCurrent(m_previous);
}
