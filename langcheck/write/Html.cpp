#include "langcheck/write/Html.h"

HtmlWriter::HtmlWriter()
    : m_out(&m_bytes)
{
    m_out.writeDTD(QStringLiteral("<!DOCTYPE html>\n"));
    open("html");
    attribute("lang", QStringLiteral("en"));
}

QByteArray HtmlWriter::finish()
{
    close();
    m_out.writeEndDocument();
    return m_bytes;
}

void HtmlWriter::open(const char *name, const char *className, const QString &id)
{
    m_out.writeStartElement(QLatin1String(name));
    if (className)
        attribute("class", QLatin1String(className));
    if (!id.isEmpty())
        attribute("id", id);
}

void HtmlWriter::openVoid(const char *name)
{
    m_out.writeEmptyElement(QLatin1String(name));
}

void HtmlWriter::attribute(const char *name, const QString &value)
{
    m_out.writeAttribute(QLatin1String(name), value);
}

void HtmlWriter::text(const QString &content)
{
    m_out.writeCharacters(content);
}

void HtmlWriter::close()
{
    text({}); // Otherwise an element without contents would be closed in its start tag.
    m_out.writeEndElement();
}

void HtmlWriter::element(const char *name, const QString &content, const char *className)
{
    open(name, className);
    text(content);
    close();
}

void HtmlWriter::foreignText(const char *name, const QString &content, const QString &tag, int most)
{
    open(name);
    attribute("dir", QStringLiteral("auto"));
    if (!tag.isEmpty())
        attribute("lang", tag);
    text(printable(content, most));
    close();
}

void HtmlWriter::openLink(const QString &anchor)
{
    open("a");
    attribute("href", QLatin1Char('#') + anchor);
}

void HtmlWriter::link(const QString &anchor, const QString &title)
{
    openLink(anchor);
    text(title);
    close();
}

void HtmlWriter::meta(const char *name, const QString &content)
{
    openVoid("meta");
    attribute("name", QLatin1String(name));
    attribute("content", content);
}
