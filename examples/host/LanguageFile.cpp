#include "examples/host/LanguageFile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextCodec>
#include <QtEndian>

#include <utility>

namespace {

bool isBlank(QChar unit)
{
    return unit == QLatin1Char(' ') || unit == QLatin1Char('\t');
}

} // namespace

LanguageFile::LanguageFile(QString fileName)
    : m_fileName(std::move(fileName))
{
}

bool LanguageFile::read()
{
    takeBytes(QByteArray());
    scan();

    QFile file(m_fileName);
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("read"), file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        return fail(QStringLiteral("read"), file.errorString());

    takeBytes(bytes);
    scan();
    return true;
}

bool LanguageFile::setDefaultLanguage(int number)
{
    if (!read())
        return false;

    const QString units = unitsWithDefault(number);
    if (!write(units))
        return false;

    m_units = units;
    scan();
    return true;
}

bool LanguageFile::fail(const QString &action, const QString &reason)
{
    m_errorString = QStringLiteral("Cannot %1 %2: %3")
                        .arg(action, QDir::toNativeSeparators(m_fileName), reason);
    return false;
}

void LanguageFile::takeBytes(const QByteArray &bytes)
{
    const bool littleEndian = bytes.startsWith("\xFF\xFE");
    m_bigEndian = bytes.startsWith("\xFE\xFF");
    if (littleEndian || m_bigEndian) {
        m_codec = nullptr;
        m_mark = bytes.left(2);
        m_units.clear();
        int i = 2;
        for (; i + 1 < bytes.size(); i += 2) {
            const char *const unit = bytes.constData() + i;
            m_units += QChar(m_bigEndian ? qFromBigEndian<quint16>(unit)
                                         : qFromLittleEndian<quint16>(unit));
        }
        m_rest = bytes.mid(i);
        return;
    }

    const bool utf8 = bytes.startsWith("\xEF\xBB\xBF");
    m_codec = QTextCodec::codecForName(utf8 ? "UTF-8" : "GB2312");
    if (!m_codec)
        m_codec = QTextCodec::codecForLocale(); // Not every Qt has the Chinese ones.
    m_mark = bytes.left(utf8 ? 3 : 0);
    // With the length, because otherwise the text would end at a zero byte.
    m_units = QString::fromLatin1(bytes.constData() + m_mark.size(), bytes.size() - m_mark.size());
    m_rest.clear();
}

QByteArray LanguageFile::toBytes(const QString &units) const
{
    if (m_codec)
        return m_mark + units.toLatin1();

    QByteArray bytes = m_mark;
    for (const QChar unit : units) {
        const char low = static_cast<char>(unit.cell());
        const char high = static_cast<char>(unit.row());
        bytes += m_bigEndian ? high : low;
        bytes += m_bigEndian ? low : high;
    }
    return bytes + m_rest;
}

QString LanguageFile::decoded(int start, int end) const
{
    const QString units = m_units.mid(start, end - start);
    return m_codec ? m_codec->toUnicode(units.toLatin1()) : units;
}

void LanguageFile::scan()
{
    m_afterHeader = m_valueStart = m_valueEnd = -1;
    m_defaultLanguage = 0;
    m_names.clear();

    // A line feed is never part of a longer character, so the units can be split at it.
    bool inLangMgr = false;
    int end = 0;
    for (int start = 0; start < m_units.size(); start = end + 1) {
        end = m_units.indexOf(QLatin1Char('\n'), start);
        if (end < 0)
            end = m_units.size();

        const QString line = decoded(start, end).trimmed();
        if (line.startsWith(QLatin1Char('[')) && line.endsWith(QLatin1Char(']'))) {
            inLangMgr = line == QLatin1String("[LANG_MGR]");
            if (inLangMgr && m_afterHeader < 0)
                m_afterHeader = qMin(end + 1, m_units.size());
        } else if (inLangMgr) {
            scanKeyLine(start, end);
        }
    }
}

/// Comments need no look: what they start with makes their key another one.
void LanguageFile::scanKeyLine(int start, int end)
{
    const int equals = m_units.midRef(0, end).indexOf(QLatin1Char('='), start);
    if (equals < 0)
        return;
    const QString key = decoded(start, equals).trimmed();
    const QString value = decoded(equals + 1, end).trimmed();

    if (key == QLatin1String("DEFAULT")) {
        m_defaultLanguage = value.toInt();
        m_valueStart = equals + 1;
        while (m_valueStart < end && isBlank(m_units.at(m_valueStart)))
            ++m_valueStart;
        m_valueEnd = end;
        while (m_valueEnd > m_valueStart
               && (isBlank(m_units.at(m_valueEnd - 1))
                   || m_units.at(m_valueEnd - 1) == QLatin1Char('\r'))) {
            --m_valueEnd;
        }
        return;
    }

    static const QRegularExpression pattern(QStringLiteral("^LANG(\\d+)_NAME$"));
    const QRegularExpressionMatch match = pattern.match(key);
    if (match.hasMatch())
        m_names.insert(match.capturedRef(1).toInt(), value);
}

QString LanguageFile::unitsWithDefault(int number) const
{
    QString units = m_units;
    if (m_valueStart >= 0)
        return units.replace(m_valueStart, m_valueEnd - m_valueStart, QString::number(number));

    const bool onlyLineFeeds =
        units.contains(QLatin1Char('\n')) && !units.contains(QLatin1String("\r\n"));
    const QString lineEnd = QLatin1String(onlyLineFeeds ? "\n" : "\r\n");
    QString lines = QStringLiteral("DEFAULT=%1").arg(number) + lineEnd;
    if (m_afterHeader < 0)
        lines.prepend(QLatin1String("[LANG_MGR]") + lineEnd);

    const int position = m_afterHeader < 0 ? units.size() : m_afterHeader;
    if (position > 0 && units.at(position - 1) != QLatin1Char('\n'))
        lines.prepend(lineEnd);
    return units.insert(position, lines);
}

bool LanguageFile::write(const QString &units)
{
    QSaveFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("write"), file.errorString());
    file.write(toBytes(units));
    if (!file.commit()) // Fails if the writing has failed before.
        return fail(QStringLiteral("write"), file.errorString());
    return true;
}
