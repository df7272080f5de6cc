#include "app/ReleaseText.h"

#include "app/HttpClient.h"

#include <QDesktopServices>
#include <QImage>
#include <QRegularExpression>
#include <QTextDocument>

namespace {
constexpr int LongestText = 10000; ///< characters

void openInBrowser(const QUrl &url)
{
    if (isWebAddress(url)) {
        QDesktopServices::openUrl(url);
    }
}

/// Whether the text holds an element that the toolkit knows, or a character reference; else it is plain text.
bool isMarkup(const QString &text)
{
    constexpr int LongestElement = 300; ///< characters
    static const QRegularExpression reference(QStringLiteral("&(?:[a-z]+|#[0-9]+);"),
                                              QRegularExpression::CaseInsensitiveOption);
    if (reference.match(text).hasMatch()) {
        return true;
    }
    for (int start = text.indexOf(QLatin1Char('<')); start >= 0; start = text.indexOf(QLatin1Char('<'), start + 1)) {
        if (Qt::mightBeRichText(text.mid(start, LongestElement))) {
            return true;
        }
    }
    return false;
}

/// The text without the elements that do not stand on this list; what they enclose stays.
QString reduced(const QString &html)
{
    static const QRegularExpression others(
        QStringLiteral("<(?!/?(?:a|b|br|code|div|em|font|h[1-6]|hr|i|li|ol|p|pre|s|small|span|strong|sub|sup|u|ul)"
                       "(?:[\\s/>]|$))(?=[a-z/!?])[^>]*>?"),
        QRegularExpression::CaseInsensitiveOption);
    return QString(html).remove(others);
}
} // namespace

ReleaseText::ReleaseText(QWidget *parent)
    : QTextBrowser(parent)
{
    setOpenLinks(false);
    connect(this, &QTextBrowser::anchorClicked, this, openInBrowser);
}

void ReleaseText::setUntrustedHtml(const QString &html)
{
    const QString text = html.left(LongestText).replace(QLatin1String("\r\n"), QLatin1String("\n"));
    setHtml(isMarkup(text) ? reduced(text)
                           : QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(text.toHtmlEscaped()));
}

QVariant ReleaseText::loadResource(int type, const QUrl & /*name*/)
{
    // Without a value the document would go on and look for a file of that name.
    if (type == QTextDocument::ImageResource) {
        QImage nothing(1, 1, QImage::Format_ARGB32);
        nothing.fill(Qt::transparent);
        return nothing;
    }
    return QByteArray("");
}
