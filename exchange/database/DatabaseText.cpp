#include "exchange/database/DatabaseText.h"

#include <QTextCodec>

#include <memory>

namespace {

bool isValid(const QByteArray &bytes, QTextCodec *codec)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    codec->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

/// Whether more characters of two bytes are as written Chinese has them than not. The bytes are valid GBK.
bool looksChinese(const QByteArray &bytes)
{
    int chinese = 0;
    int other = 0;
    for (int i = 0; i + 1 < bytes.size(); ++i) {
        const auto lead = static_cast<uchar>(bytes[i]);
        if (lead < 0x80) {
            continue;
        }
        ++i;
        ++(lead >= 0xA1 && static_cast<uchar>(bytes[i]) >= 0xA1 ? chinese : other);
    }
    return chinese > other;
}

QTextCodec *codecOf(const QByteArray &bytes)
{
    QTextCodec *utf8 = QTextCodec::codecForName("UTF-8");
    QTextCodec *gbk = QTextCodec::codecForName("GBK");
    if (isValid(bytes, utf8)) {
        return utf8;
    }
    if (gbk != nullptr && isValid(bytes, gbk) && looksChinese(bytes)) {
        return gbk;
    }
    return QTextCodec::codecForName("windows-1252");
}

} // namespace

DatabaseText databaseText(const QByteArray &bytes, const QString &encoding)
{
    QTextCodec *codec = encoding.isEmpty() ? codecOf(bytes) : QTextCodec::codecForName(encoding.toLatin1());
    if (codec == nullptr) {
        return {bytes, encoding};
    }
    if (codec->mibEnum() == 106) { // UTF-8, which is not converted, but for its mark
        return {bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes, QStringLiteral("UTF-8")};
    }
    return {codec->toUnicode(bytes).toUtf8(), QString::fromLatin1(codec->name())};
}
