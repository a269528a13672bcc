#pragma once

#include <QMap>
#include <QString>

class QTextCodec;

/// The language catalogue, in which the host stores the machine's display language as the default.
/// Follows the plug-in's rules. Everything else in the file is written back byte for byte, even if
/// it is invalid in the file's encoding.
///
/// Hosts may copy this class, which needs only Qt5Core of Qt 5.6 or later.
class LanguageFile
{
public:
    explicit LanguageFile(QString fileName);

    /// Reads the file. If that fails, returns false and has no languages.
    bool read();

    /// Reads the file and writes it with @p number as its default. If that fails, returns false and
    /// does not change the file.
    bool setDefaultLanguage(int number);

    /// Returns the default as last read or written; 0 if there is none.
    int defaultLanguage() const { return m_defaultLanguage; }

    /// Returns the name of a language; empty if it has none.
    QString languageName(int number) const { return m_names.value(number); }

    /// Returns the file that the last failure was about and the reason for it.
    QString errorString() const { return m_errorString; }

private:
    bool fail(const QString &action, const QString &reason);
    void setBytes(const QByteArray &bytes);
    QByteArray toBytes(const QString &units) const;
    QString decoded(int start, int end) const;
    void scan();
    void scanKeyLine(int start, int end);
    QString unitsWithDefault(int number) const;

    const QString m_fileName;
    QString m_errorString;

    // The file's content
    QTextCodec *m_codec = nullptr; ///< Null for UTF-16, which needs no decoding.
    bool m_bigEndian = false;
    QByteArray m_bom;
    QString m_units;   ///< Code units of 8 or 16 bits, each as one character.
    QByteArray m_rest; ///< The odd last byte of a damaged UTF-16 file.

    // Its meaning; a position is -1 if the file lacks it
    int m_afterHeader = -1; ///< The start of the line after the section's first header.
    int m_valueStart = -1;  ///< The start of the last DEFAULT's number.
    int m_valueEnd = -1;
    int m_defaultLanguage = 0;
    QMap<int, QString> m_names;
};
