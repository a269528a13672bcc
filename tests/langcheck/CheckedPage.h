#pragma once

#include "langcheck/write/Page.h"

#include <QFile>
#include <QProcess>
#include <QTest>
#include <QXmlStreamReader>

/// Pages of langcheck, for tests that define TIDY, the path of the validator.
namespace CheckedPage {

/// Makes the page of a report.
inline QByteArray make(const Report &report)
{
    return makePage(report, drawStart(report), drawLanguages(report));
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What a browser would make of a page.
struct Contents
{
    QStringList anchors;  ///< The ids of elements.
    QStringList links;    ///< The values of href and src.
    QStringList elements; ///< The names of all elements.
    QStringList texts;    ///< The contents of elements without children.
    QString error;        ///< Why the page is not well-formed; empty if it is.
};

inline Contents read(const QByteArray &page)
{
    Contents result;
    QXmlStreamReader reader(page);
    QString text;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            text.clear();
            result.elements += reader.name().toString();
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes) {
                if (attribute.name() == QLatin1String("id"))
                    result.anchors += attribute.value().toString();
                if (attribute.name() == QLatin1String("href")
                    || attribute.name() == QLatin1String("src"))
                    result.links += attribute.value().toString();
            }
        } else if (reader.isCharacters()) {
            text += reader.text();
        } else if (reader.isEndElement()) {
            result.texts += text;
            text.clear();
        }
    }
    if (reader.hasError())
        result.error = reader.errorString();
    return result;
}

/// Validates pages, on Linux with the validator. Fails the test if one has an error or a warning,
/// a script, or a reference to another file.
inline void validate(const QList<QByteArray> &pages)
{
    for (const QByteArray &page : pages) {
        const Contents contents = read(page);
        QVERIFY2(contents.error.isEmpty(), qPrintable(contents.error));
        QVERIFY(!contents.elements.contains(QStringLiteral("script")));
        QStringList anchors = contents.anchors;
        QCOMPARE(anchors.removeDuplicates(), 0);
        for (const QString &link : contents.links) {
            QVERIFY2(link.startsWith(QLatin1String("data:image/png;base64,iVBOR"))
                         || (link.startsWith(QLatin1Char('#')) && anchors.contains(link.mid(1))),
                     qPrintable(link.left(100)));
        }
    }
#ifdef TIDY
    QStringList arguments {QStringLiteral("-quiet"), QStringLiteral("-errors"),
                           QStringLiteral("-utf8")};
    for (int i = 0; i < pages.size(); ++i) {
        arguments +=
            QStringLiteral("%1/page%2.html").arg(QCoreApplication::applicationDirPath()).arg(i);
        QFile file(arguments.last());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(pages.at(i)), pages.at(i).size());
    }
    QProcess tidy;
    tidy.setProcessChannelMode(QProcess::MergedChannels);
    tidy.start(QStringLiteral(TIDY), arguments);
    QVERIFY2(tidy.waitForFinished(120000), qPrintable(tidy.errorString()));
    QCOMPARE(QString::fromUtf8(tidy.readAll()), QString());
    QCOMPARE(tidy.exitCode(), 0);
#endif
}

inline void validate(const QByteArray &page)
{
    validate(QList<QByteArray> {page});
}

} // namespace CheckedPage
