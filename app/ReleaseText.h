#pragma once

#include <QTextBrowser>

/// Shows the rich text of a release's summary, which comes from the network. It loads nothing, neither from the network
/// nor from this computer, runs nothing, and hands a link to the browser only when it leads to http or https.
class ReleaseText : public QTextBrowser
{
    Q_OBJECT

public:
    explicit ReleaseText(QWidget *parent = nullptr);

    /// Rich text, or plain text, which keeps its lines, of which at most the first 10,000 characters are shown. Tables
    /// and pictures are left out: laying out nested tables takes a time that doubles with every level.
    void setUntrustedHtml(const QString &html);

    /// A stand-in of one pixel, or of no bytes, for whatever the text asks for.
    QVariant loadResource(int type, const QUrl &name) override;
};
