#pragma once

#include "langcheck/Texts.h"

#include <QByteArray>
#include <QString>
#include <QXmlStreamWriter>

/// Writes the elements of an HTML page, and escapes all texts.
class HtmlWriter
{
public:
    /// Begins the page, which is in English.
    HtmlWriter();
    Q_DISABLE_COPY(HtmlWriter)

    /// Ends the page and returns it.
    QByteArray finish();

    void open(const char *name, const char *className = nullptr, const QString &id = {});
    /// Writes an element that has no end tag. Its attributes follow.
    void openVoid(const char *name);
    void attribute(const char *name, const QString &value);
    void text(const QString &content);
    void close();

    void element(const char *name, const QString &content, const char *className = nullptr);
    /// Writes a text of the deployment, in its own direction. @p tag is its language.
    void foreignText(const char *name, const QString &content, const QString &tag = {},
                     int most = kLongestText);
    /// Begins a link to an element of the page.
    void openLink(const QString &anchor);
    void link(const QString &anchor, const QString &title);
    void meta(const char *name, const QString &content);

private:
    QByteArray m_bytes;
    QXmlStreamWriter m_out;
};
