#include "LanguageFile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextCodec>

#include <utility>

namespace {

bool isSpaceOrTab(QChar unit)
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
    QFile file(m_fileName);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    const bool ok = file.error() == QFile::NoError;
    setBytes(ok ? bytes : QByteArray());
    scan();
    return ok || fail(QStringLiteral("read"), file.errorString());
}

bool LanguageFile::setDefaultLanguage(int number)
{
    if (!read())
        return false;

    const QString units = unitsWithDefault(number);
    QSaveFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(toBytes(units)) < 0 || !file.commit())
        return fail(QStringLiteral("write"), file.errorString());

    m_units = units;
    scan();
    return true;
}

bool LanguageFile::fail(const QString &action, const QString &reason)
{
    m_errorString = QStringLiteral("Can't ") + action + QLatin1Char(' ')
        + QDir::toNativeSeparators(m_fileName) + QStringLiteral(": ") + reason;
    return false;
}

void LanguageFile::setBytes(const QByteArray &bytes)
{
    m_bigEndian = bytes.startsWith("\xFE\xFF");
    if (m_bigEndian || bytes.startsWith("\xFF\xFE")) {
        m_codec = nullptr;
        m_bom = bytes.left(2);
        m_units.resize(bytes.size() / 2 - 1);
        const char *from = bytes.constData() + 2;
        for (QChar &unit : m_units) {
            const auto first = static_cast<uchar>(*from++);
            const auto second = static_cast<uchar>(*from++);
            unit = m_bigEndian ? QChar(second, first) : QChar(first, second);
        }
        m_rest = bytes.mid(bytes.size() / 2 * 2);
        return;
    }

    const bool utf8 = bytes.startsWith("\xEF\xBB\xBF");
    m_codec = QTextCodec::codecForName(utf8 ? "UTF-8" : "GB2312");
    if (!m_codec)
        m_codec = QTextCodec::codecForLocale(); // Qt may lack the Chinese codecs.
    m_bom = bytes.left(utf8 ? 3 : 0);
    // With the length, because otherwise the string would end at a zero byte.
    m_units = QString::fromLatin1(bytes.constData() + m_bom.size(), bytes.size() - m_bom.size());
    m_rest.clear();
}

QByteArray LanguageFile::toBytes(const QString &units) const
{
    if (m_codec)
        return m_bom + units.toLatin1();

    QByteArray bytes;
    bytes.reserve(2 * units.size());
    for (const QChar unit : units) {
        bytes += static_cast<char>(m_bigEndian ? unit.row() : unit.cell());
        bytes += static_cast<char>(m_bigEndian ? unit.cell() : unit.row());
    }
    return m_bom + bytes + m_rest;
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

    // A line feed is never part of a multi-byte character, so the units can be split at it.
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

/// Does not treat comments specially, because ";" or "#" makes their key an unknown one.
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
        while (m_valueStart < end && isSpaceOrTab(m_units.at(m_valueStart)))
            ++m_valueStart;
        m_valueEnd = end;
        while (m_valueEnd > m_valueStart
               && (isSpaceOrTab(m_units.at(m_valueEnd - 1))
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
