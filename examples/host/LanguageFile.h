#pragma once

#include <QMap>
#include <QString>

class QTextCodec;

/// The language catalogue, as the host keeps the machine's display language in it. It is read by
/// the plug-in's rules. Everything but the default number belongs to others, and is written back
/// byte for byte, even what makes no sense in the file's encoding.
class LanguageFile
{
public:
    explicit LanguageFile(QString fileName);

    /// Reads the file; on failure returns false and knows no languages.
    bool read();

    /// Reads the file and writes it back with @p number as its default; on failure returns false
    /// and leaves the file as it is.
    bool setDefaultLanguage(int number);

    /// The default number as last read or written; 0 if there was none.
    int defaultLanguage() const { return m_defaultLanguage; }

    /// Display name of a language; empty if it has none.
    QString languageName(int number) const { return m_names.value(number); }

    /// After a failure: names the file and the reason.
    QString errorString() const { return m_errorString; }

private:
    bool fail(const QString &action, const QString &reason);
    void takeBytes(const QByteArray &bytes);
    QByteArray toBytes(const QString &units) const;
    QString decoded(int start, int end) const;
    void scan();
    void scanKeyLine(int start, int end);
    QString unitsWithDefault(int number) const;
    bool write(const QString &units);

    const QString m_fileName;
    QString m_errorString;

    // The file's content: the mark, then code units of 8 or 16 bits, each as one character, then
    // the odd last byte of a damaged UTF-16 file.
    QTextCodec *m_codec = nullptr; ///< Null for UTF-16, whose units need no decoding.
    bool m_bigEndian = false;
    QByteArray m_mark;
    QString m_units;
    QByteArray m_rest;

    // What the units mean; positions are -1 where there is no such thing.
    int m_afterHeader = -1; ///< Start of the line after the first header of the section.
    int m_valueStart = -1;  ///< Of the default number that counts.
    int m_valueEnd = -1;
    int m_defaultLanguage = 0;
    QMap<int, QString> m_names;
};
