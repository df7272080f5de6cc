#include "tests/app/RunningProgram.h"

#include "app/SingleInstance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QtTest>

namespace {
constexpr int WaitMs = 60000;

void copy(const QString &from, const QString &to)
{
    if (!QFile::copy(from, to)) {
        qFatal("cannot copy %s to %s", qPrintable(from), qPrintable(to));
    }
}
} // namespace

ProgramFolder::ProgramFolder(const QByteArray &adapter, Library library)
{
    const QDir folder(m_folder.path());
    for (const char *name : {"program", "temporary", "home"}) {
        folder.mkdir(QLatin1String(name));
    }
    QFile::setPermissions(folder.filePath(QStringLiteral("home")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QFileInfo program(QStringLiteral(X9_PROGRAM_UNDER_TEST));
    copy(program.filePath(), folder.filePath(QStringLiteral("program/") + program.fileName()));
    if (library == Library::Present) {
        const QFileInfo adapterLibrary(QStringLiteral(X9_VIRTUAL_ADAPTER));
        copy(adapterLibrary.filePath(), folder.filePath(adapterLibrary.fileName()));
    }
    write(QStringLiteral("virtual-adapter.json"), adapter);
}

/// A program that ends keeps its files on some systems until it is gone.
ProgramFolder::~ProgramFolder()
{
    if (!QTest::qWaitFor([this] { return QDir(m_folder.path()).removeRecursively(); }, WaitMs)) {
        qWarning("left behind: %s", qPrintable(m_folder.path()));
    }
}

QByteArray ProgramFolder::read(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void ProgramFolder::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(file.fileName()));
    }
}

QString ProgramFolder::lockFile() const
{
    return path(QStringLiteral("temporary/") + SingleInstance::userKey() + QStringLiteral(".lock"));
}

bool ProgramFolder::isFree() const
{
    const QDir temporary(path(QStringLiteral("temporary")));
    return QTest::qWaitFor(
        [&temporary] { return temporary.entryList({QStringLiteral("X9CAN*.lock")}, QDir::Files).isEmpty(); }, WaitMs);
}

QProcessEnvironment ProgramFolder::environment() const
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("X9_LOG"), path(QStringLiteral("log")));
    variables.insert(QStringLiteral("X9_REAL_TIME"), path(QStringLiteral("real-time.csv")));
    for (const char *name : {"TMPDIR", "TMP", "TEMP"}) {
        variables.insert(QLatin1String(name), path(QStringLiteral("temporary")));
    }
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) {
        variables.insert(QLatin1String(name), path(QStringLiteral("home")));
    }
    return variables;
}

RunningProgram::RunningProgram(const ProgramFolder &folder, const QString &steps, const QStringList &arguments)
    : m_folder(folder)
{
    QProcessEnvironment variables = folder.environment();
    variables.insert(QStringLiteral("X9_STEPS"), steps);
    m_process.setProcessEnvironment(variables);
    m_process.setWorkingDirectory(folder.path(QString()));
    m_process.start(
        folder.path(QStringLiteral("program/") + QFileInfo(QStringLiteral(X9_PROGRAM_UNDER_TEST)).fileName()),
        arguments);
    if (!m_process.waitForStarted(WaitMs)) {
        qFatal("cannot start the program under test: %s", qPrintable(m_process.errorString()));
    }
}

RunningProgram::~RunningProgram()
{
    kill();
}

bool RunningProgram::waitForLine(const QString &begin, int count) const
{
    return QTest::qWaitFor(
        [this, &begin, count] {
            const QStringList lines = m_folder.log().split(QLatin1Char('\n'));
            return lines.filter(QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(begin))).size() >=
                   count;
        },
        WaitMs);
}

bool RunningProgram::waitForEnd(int limitMs)
{
    return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(limitMs);
}

void RunningProgram::kill()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QString RunningProgram::errors()
{
    QStringList lines;
    for (const QByteArray &line : m_process.readAllStandardError().replace('\r', "").split('\n')) {
        if (!line.isEmpty() && !line.startsWith("This plugin does not support")) {
            lines.append(QString::fromLocal8Bit(line));
        }
    }
    return lines.join(QLatin1Char('\n'));
}
