#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>

/// A copy of the stand-in for an upgrade program (UpgradeStandIn.cpp, which tells the orders) at a path of its own.
class StandInProgram
{
public:
    /// Ends the test program when the copy cannot be made.
    explicit StandInProgram(const QString &path, const QByteArray &orders = {})
        : m_path(path)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        if (!QFile::copy(QStringLiteral(X9_UPGRADE_STAND_IN), path)) {
            qFatal("no copy of the stand-in at %s", qUtf8Printable(path));
        }
        order(orders);
    }

    const QString &path() const { return m_path; }
    /// For its next run.
    void order(const QByteArray &orders) const { write(QStringLiteral(".orders"), orders); }
    /// Ends its waiting.
    void letGo() const { write(QStringLiteral(".go"), {}); }
    /// Its arguments, of each run since it was made.
    QStringList starts() const { return lines(QStringLiteral(".started")); }
    /// Its exit codes, of each run that ended by itself.
    QStringList ends() const { return lines(QStringLiteral(".ended")); }

private:
    void write(const QString &ending, const QByteArray &content) const
    {
        QFile file(m_path + ending);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("%s: %s", qUtf8Printable(file.fileName()), qUtf8Printable(file.errorString()));
        }
    }
    /// Only whole lines, since the program may just be writing.
    QStringList lines(const QString &ending) const
    {
        QFile file(m_path + ending);
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QString content = QString::fromLocal8Bit(file.readAll()).remove(QLatin1Char('\r'));
        QStringList result = content.split(QLatin1Char('\n'));
        result.removeLast();
        return result;
    }

    QString m_path;
};
