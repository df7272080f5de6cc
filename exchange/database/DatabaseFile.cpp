#include "exchange/database/DatabaseFile.h"

#include "exchange/database/DbcParser.h"
#include "exchange/database/LdfParser.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextCodec>

namespace {

struct DatabaseFile
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseFile)
};

/// A LIN description file begins with its first keyword, behind comments.
bool isLdf(const QByteArray &utf8)
{
    TextScanner in(utf8, TextScanner::CComments);
    const auto word = in.word();
    return word && (*word == "LIN_description_file" || *word == "LIN_protocol_version");
}

} // namespace

Database parseDatabase(const QByteArray &bytes, const QString &encoding)
{
    const DatabaseText text = databaseText(bytes, encoding);
    return isLdf(text.utf8) ? LdfParser(text).parse() : DbcParser(text).parse();
}

std::optional<Database> readDatabase(const QString &path, const QString &encoding, QString &error)
{
    if (!encoding.isEmpty() && QTextCodec::codecForName(encoding.toLatin1()) == nullptr) {
        error = DatabaseFile::tr("The encoding %1 is not known").arg(encoding);
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = DatabaseFile::tr("%1 cannot be read: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    const QByteArray bytes = file.read(MaxDatabaseSize + 1);
    if (file.error() != QFileDevice::NoError) {
        error = DatabaseFile::tr("%1 cannot be read: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    if (bytes.size() > MaxDatabaseSize) {
        error = DatabaseFile::tr("%1 is larger than %2 MB").arg(path, QString::number(MaxDatabaseSize >> 20));
        return std::nullopt;
    }
    Database database = parseDatabase(bytes, encoding);
    if (database.messages.isEmpty()) {
        error = DatabaseFile::tr("%1 has no messages that can be decoded").arg(path);
        if (!database.findings.isEmpty()) {
            const DatabaseFinding &first = database.findings.first();
            error += QStringLiteral(" (%1:%2: %3)").arg(first.place.line).arg(first.place.column).arg(first.text);
        }
        return std::nullopt;
    }
    return database;
}
