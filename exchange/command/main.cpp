#include "exchange/command/Command.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <algorithm>
#include <cstdio>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(x9capture)
};

struct Option
{
    const char *name;
    const char *value; ///< what stands for it in the help; null: a switch
    const char *description;
    const char *usual;
};

const Option Options[] = {
    {"from", QT_TRANSLATE_NOOP("x9capture", "kind"), QT_TRANSLATE_NOOP("x9capture", "Kind of capture that is read."),
     ""},
    {"to", QT_TRANSLATE_NOOP("x9capture", "kind"), QT_TRANSLATE_NOOP("x9capture", "Kind of capture that is written."),
     ""},
    {"date", QT_TRANSLATE_NOOP("x9capture", "date"),
     QT_TRANSLATE_NOOP("x9capture", "Day of the last frame, for times without a date; otherwise the file's."), ""},
    {"force", nullptr, QT_TRANSLATE_NOOP("x9capture", "Replaces a file that exists."), ""},
    {"strict", nullptr, QT_TRANSLATE_NOOP("x9capture", "Writes nothing where something would be lost."), ""},
    {"quiet", nullptr, QT_TRANSLATE_NOOP("x9capture", "Says nothing when all went well."), ""},
    {"times", "auto|system|device",
     QT_TRANSLATE_NOOP("x9capture", "Which of two times becomes a frame's only one; auto: the adapter's."), "auto"},
    {"words", "en|zh", QT_TRANSLATE_NOOP("x9capture", "Language of the words in captures of the program."), ""},
    {"encoding", QT_TRANSLATE_NOOP("x9capture", "name"),
     QT_TRANSLATE_NOOP("x9capture", "Encoding of captures of the program, such as UTF-8 or GBK."), ""},
    {"follow", nullptr, QT_TRANSLATE_NOOP("x9capture", "Goes on while the file grows, until it is interrupted."), ""},
    {"idle", QT_TRANSLATE_NOOP("x9capture", "seconds"),
     QT_TRANSLATE_NOOP("x9capture", "Ends --follow when for so long nothing has come."), ""},
    {"bitrate", "bit/s", QT_TRANSLATE_NOOP("x9capture", "Bit rate of the CAN buses, to tell their load."), ""},
    {"data-bitrate", "bit/s", QT_TRANSLATE_NOOP("x9capture", "Bit rate of CAN FD frames' data (2000000)."), ""},
    {"lin-bitrate", "bit/s", QT_TRANSLATE_NOOP("x9capture", "Bit rate of LIN buses (19200)."), ""},
    {"csv", nullptr, QT_TRANSLATE_NOOP("x9capture", "Separates the cells by commas."), ""},
    {"separate-channels", nullptr, QT_TRANSLATE_NOOP("x9capture", "Each capture gets channels of its own."), ""},
    {"align", nullptr, QT_TRANSLATE_NOOP("x9capture", "All captures begin at the time of the first one."), ""},
    {"start", QT_TRANSLATE_NOOP("x9capture", "time"),
     QT_TRANSLATE_NOOP("x9capture", "From this time on: seconds since the first frame, or 2026-03-31T10:20:30.5."), ""},
    {"end", QT_TRANSLATE_NOOP("x9capture", "time"), QT_TRANSLATE_NOOP("x9capture", "Before this time."), ""},
    {"skip", QT_TRANSLATE_NOOP("x9capture", "number"), QT_TRANSLATE_NOOP("x9capture", "Leaves out the first so many."),
     ""},
    {"count", QT_TRANSLATE_NOOP("x9capture", "number"), QT_TRANSLATE_NOOP("x9capture", "No more frames than these."),
     ""},
    {"id", QT_TRANSLATE_NOOP("x9capture", "range"),
     QT_TRANSLATE_NOOP("x9capture", "Identifiers, hexadecimal: 7DF or 100-1FF. May be given several times."), ""},
    {"channel", QT_TRANSLATE_NOOP("x9capture", "number"),
     QT_TRANSLATE_NOOP("x9capture", "A channel, from 1. May be given several times."), ""},
    {"database", QT_TRANSLATE_NOOP("x9capture", "file"),
     QT_TRANSLATE_NOOP("x9capture", "The DBC or LDF file. May be given several times."), ""},
    {"wide", nullptr, QT_TRANSLATE_NOOP("x9capture", "A column for each signal instead of a line."), ""},
    {"fill", nullptr, QT_TRANSLATE_NOOP("x9capture", "With --wide: a column keeps its last value."), ""},
    {"signal", QT_TRANSLATE_NOOP("x9capture", "name"),
     QT_TRANSLATE_NOOP("x9capture",
                       "Only this: \"Message\" or \"Message.Signal\", with * and ?. May be given several times."),
     ""},
};

bool isChineseUser()
{
    // Windows knows of no such variable; here it is for scripts that read messages.
    const QString wanted = qEnvironmentVariable("LANGUAGE");
    const QStringList languages = wanted.isEmpty() ? QLocale::system().uiLanguages() : QStringList{wanted};
    return !languages.isEmpty() && languages.first().startsWith(QLatin1String("zh"));
}

QString overview()
{
    QString text =
        Texts::tr("Reads, checks, turns into each other and decodes captures of CAN, CAN FD and LIN buses.") +
        QStringLiteral("\n\n") + Texts::tr("Commands:") + QLatin1Char('\n');
    for (const Command &command : commands()) {
        text += QStringLiteral("  %1  %2\n").arg(QLatin1String(command.name), -8).arg(Texts::tr(command.description));
    }
    text += QLatin1Char('\n') + Texts::tr("Kinds of captures:") + QLatin1Char('\n');
    for (const ExchangeFormat &format : exchangeFormats()) {
        text += QStringLiteral("  %1  %2 (%3)\n")
                    .arg(QLatin1String(format.name), -8)
                    .arg(QLatin1String(format.title), QLatin1String(format.endings));
    }
    return text + QLatin1Char('\n') +
           Texts::tr("x9capture COMMAND --help tells more. \"-\" stands for standard input or output.\n"
                     "It ends with 0 when all went well, 1 when a file cannot be read or written, 2 when it was called "
                     "wrongly,\n3 when verify has found something or --strict has kept something from being lost.");
}

QString helpOf(const Command &command)
{
    return Texts::tr(command.description) + QStringLiteral("\n\n") + Texts::tr("Examples:") + QStringLiteral("\n  ") +
           QString::fromLatin1(command.examples).replace(QLatin1Char('\n'), QLatin1String("\n  "));
}

void addOptions(QCommandLineParser &parser, const Command &command)
{
    const QStringList names = QString::fromLatin1(command.options).split(QLatin1Char(' '));
    for (const Option &option : Options) {
        const QString name = QLatin1String(option.name);
        if (names.contains(name)) {
            parser.addOption({name, Texts::tr(option.description),
                              option.value != nullptr ? Texts::tr(option.value) : QString(),
                              QLatin1String(option.usual)});
        }
    }
}

/// An option that is one of a few words, or not set.
bool isWordIn(const CommandContext &context, const char *option, const char *words)
{
    return !context.isSet(option) || QString::fromLatin1(words).split(QLatin1Char(' ')).contains(context.value(option));
}

int runCommand(const Command &command, QStringList arguments, bool isChinese)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(helpOf(command));
    const QCommandLineOption help = parser.addHelpOption();
    addOptions(parser, command);
    arguments.removeAt(1);
    const bool isParsed = parser.parse(arguments);
    if (parser.isSet(help)) {
        const QString usage = parser.helpText();
        std::fputs(qPrintable(QStringLiteral("x9capture %1 [options] %2\n\n")
                                  .arg(QLatin1String(command.name), QLatin1String(command.arguments)) +
                              usage.mid(usage.indexOf(QLatin1Char('\n')) + 1)),
                   stdout);
        return Done;
    }
    CommandContext context(parser, QString::fromLatin1(command.options).split(QLatin1Char(' ')), isChinese);
    const QStringList files = context.files();
    if (!isParsed) {
        return context.fail(parser.errorText(), WrongUse);
    }
    if (files.size() < command.least || files.size() > command.most) {
        return context.fail(
            Texts::tr("%1 wants: %2").arg(QLatin1String(command.name), QLatin1String(command.arguments)), WrongUse);
    }
    if (!isWordIn(context, "words", "en zh") || !isWordIn(context, "times", "auto system device")) {
        return context.fail(Texts::tr("--words is en or zh, --times is auto, system or device."), WrongUse);
    }
    return command.run(context);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("x9capture"));
    QCoreApplication::setApplicationVersion(QStringLiteral(X9_VERSION));
    const bool isChinese = isChineseUser();
    QTranslator translator;
    if (isChinese && translator.load(QStringLiteral(":/Language/CN.qm"))) {
        QCoreApplication::installTranslator(&translator);
    }
    const QStringList arguments = QCoreApplication::arguments();
    const QString name = arguments.value(1);
    const auto &all = commands();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&name](const Command &command) { return name == QLatin1String(command.name); });
    if (found != all.end()) {
        return runCommand(*found, arguments, isChinese);
    }
    if (name == QLatin1String("--version")) {
        std::puts("x9capture " X9_VERSION);
        return Done;
    }
    const bool isHelp = name == QLatin1String("--help") || name == QLatin1String("-h");
    std::fputs(qPrintable(QStringLiteral("x9capture COMMAND [options] FILE...\n\n") + overview() + QLatin1Char('\n')),
               isHelp ? stdout : stderr);
    return isHelp ? Done : WrongUse;
}
