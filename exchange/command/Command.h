#pragma once

#include "exchange/CaptureSink.h"
#include "exchange/command/CaptureSource.h"

#include <QCommandLineParser>
#include <QTextStream>

#include <optional>
#include <vector>

/// How the command ends; the manual page says the same.
enum ExitCode : int {
    Done = 0,
    Failed = 1, ///< a file cannot be read or written
    WrongUse = 2,
    Found = 3 ///< verify has found something; with --strict: something was lost
};

/// What a command of x9capture is given.
class CommandContext
{
public:
    /// known: the names of the command's options; any other one is never set.
    CommandContext(const QCommandLineParser &options, QStringList known, bool isChinese);

    const QStringList &files() const { return m_files; }
    bool isSet(const char *option) const { return isKnown(option) && m_options.isSet(QLatin1String(option)); }
    QString value(const char *option) const { return values(option).value(0); }
    QStringList values(const char *option) const
    {
        return isKnown(option) ? m_options.values(QLatin1String(option)) : QStringList();
    }
    /// A number of at least least; fallback when the option is not set. Nothing, and a message, for any other text.
    std::optional<double> number(const char *option, double fallback, double least);
    bool isChinese() const { return m_isChinese; }

    QTextStream &out() { return m_out; }
    /// A line on standard error. Returns the code for that.
    int fail(const QString &text, ExitCode code = Failed);
    void say(const QString &text); ///< the same, unless --quiet

    /// The capture to read, as the options say; null after a message.
    std::unique_ptr<CaptureSource> source(const QString &path);
    /// The capture or table to write, as the options say; path: "-" for standard output. Null after a message.
    std::unique_ptr<CaptureSink> sink(const QString &path);
    /// The kind that an option names; null when it is not set. isGood is false after a message.
    const ExchangeFormat *format(const char *option, bool &isGood);
    /// A line for each finding, with its place in the file.
    enum class To : quint8 { Output, Errors };
    void tell(const QString &path, const Findings &findings, To to);

private:
    bool isKnown(const char *option) const { return m_known.contains(QLatin1String(option)); }

    const QCommandLineParser &m_options;
    const QStringList m_known;
    const QStringList m_files;
    const bool m_isChinese;
    QTextStream m_out;
    QTextStream m_errors;
};

/// A command: "x9capture NAME [OPTIONS] ARGUMENTS".
struct Command
{
    const char *name;
    const char *arguments;   ///< as its help shows them
    const char *description; ///< translated
    const char *examples;    ///< lines
    int least;               ///< files
    int most;
    const char *options; ///< their names, separated by blanks
    int (*run)(CommandContext &context);
};

const std::vector<Command> &commands();

// The commands, a function each.
int infoCommand(CommandContext &context);
int statsCommand(CommandContext &context);
int verifyCommand(CommandContext &context);
int convertCommand(CommandContext &context);
int repairCommand(CommandContext &context);
int mergeCommand(CommandContext &context);
int cutCommand(CommandContext &context);
int decodeCommand(CommandContext &context);
