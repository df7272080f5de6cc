#include "app/OfferedPackage.h"

#include "app/Release.h"
#include "device/Version.h"

#include <QCoreApplication>
#include <QStringList>

namespace {
/// What can be shown of words that may be long.
QString shown(const QString &text)
{
    constexpr int Longest = 100; // characters
    return text.left(Longest);
}

/// The place of these texts in the translations.
class PackageText
{
    Q_DECLARE_TR_FUNCTIONS(OfferedPackage)
};

QString releaseProblem(const QString &version, const QStringList &kinds, const QString &kind)
{
    if (compareVersion(version, programVersion()) != 1) {
        return PackageText::tr("It is version %1, which is not newer than this program, version %2.")
            .arg(shown(version), programVersion());
    }
    if (!kinds.contains(kind)) {
        return PackageText::tr("It is the package for %1; this program needs the one for %2.")
            .arg(shown(kinds.join(QStringLiteral(", "))), kind);
    }
    return {};
}
} // namespace

QString packageProblem(const OfferedPackage &offered, const QByteArray &comment, const QString &kind)
{
    const QString text = QString::fromUtf8(comment);
    const QStringList words = text.split(QLatin1Char(' '));
    const QStringList beginning =
        offered.product.isEmpty() ? QStringList{QStringLiteral("X9CAN"), QStringLiteral("release")}
                                  : QStringList{QStringLiteral("X9CAN"), QStringLiteral("firmware"), offered.product};
    const int versionAt = beginning.size();
    const bool isWhole = offered.product.isEmpty() ? words.size() > versionAt + 1 : words.size() == versionAt + 1;
    if (!isWhole || words.contains(QString()) || words.mid(0, versionAt) != beginning) {
        return PackageText::tr("Its signature is for something else: %1").arg(shown(text.simplified()));
    }
    const QString &version = words.at(versionAt);
    if (version != offered.version && !offered.version.isEmpty()) {
        return PackageText::tr("It is version %1; what was offered is version %2.")
            .arg(shown(version), shown(offered.version));
    }
    return offered.product.isEmpty() ? releaseProblem(version, words.mid(versionAt + 1), kind) : QString();
}
