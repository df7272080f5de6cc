#include "app/ReleaseText.h"

#include <QDesktopServices>
#include <QImage>
#include <QRegularExpression>
#include <QTextDocument>
#include <QUrl>

namespace {
constexpr int LongestText = 10000; ///< characters

void openInBrowser(const QUrl &url)
{
    if (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) {
        QDesktopServices::openUrl(url);
    }
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
    setHtml(reduced(html.left(LongestText)));
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
