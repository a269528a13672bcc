#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

#include <array>

/// What langcheck can find, in the order of kFindings.
enum class FindingKind {
    CatalogueMissing,
    CatalogueUnreadable,
    CatalogueEmpty,
    CatalogueNotText,
    CatalogueForeign,
    ZeroTail,
    OddByte,
    TextTransfer,
    Utf16WithoutBom,
    Utf8WithoutBom,
    NoBom,
    SecondBom,
    Undecodable,
    HalfCharacter,
    AppendedBytes,
    SwallowedLine,
    CarriageReturn,
    NoSection,
    Header,
    OutsideSection,
    TwoKeys,
    NoKey,
    KeyCase,
    UnknownKey,
    RepeatedKey,
    RepeatedLanguage,
    NumberTooLong,
    NumberAbove255,
    SameMachineNumber,
    IdDiffers,
    QuotedValue,
    CommentInValue,
    LostLetters,
    GarbledName,
    EscapedName,
    MixedScripts,
    NameScript,
    NameInvisible,
    SameName,
    NameClipped,
    FolderDots,
    FolderAbsolute,
    FolderPercent,
    FolderCase,
    SameFolder,
    ShowNumber,
    ShowOther,
    ShowMissing,
    Incomplete,
    NoLanguages,
    DefaultMissing,
    DefaultNumber,
    DefaultUnknown,
    DefaultHidden,
    ApplicationFolder,
    FolderMissing,
    FolderUnreadable,
    QmMissing,
    QmUnreadable,
    QmSource,
    QmDamaged,
    QmForeign,
    QmLanguage,
    NameLanguage,
    QmEnglish,
    SameTexts,
    TextMissing,
    TextBlank,
    TextAmpersand,
    TextHtml,
    TextGarbled,
    TextClipped,
    Host32Bit,
    QtOther,
    HostFolder,
    QtMissing,
    DllUnreadable,
    DllUnusable,
    QtFamily,
    QtVersionsDiffer,
    FunctionMissing,
    PluginMissing,
    PluginForeign,
    PluginFamily,
    PluginFunctions,
    PlatformMissing,
    PlatformPath,
    RuntimeMissing,
    RuntimeOld,
    Count
};

/// A probable mistake in the deployment. Its texts are those of its kind, with its values.
struct Finding
{
    enum Severity {
        Warning, ///< Has no effect, or a surprising one.
        Error    ///< The operator sees something go wrong.
    };

    FindingKind kind = FindingKind::Count;
    QString file;       ///< Path below the application directory.
    int line = 0;       ///< From 1; 0 for the file as a whole.
    QStringList values; ///< For the placeholders in its texts
    Severity severity = Warning;
    QVector<int> lines;       ///< All of them, in order, if it is about more than one.
    QVector<int> languages;   ///< The numbers of the languages that it is about
    QStringList consequences; ///< Whole sentences, appended to the effect
    QString quote; ///< The line of the catalogue as it was read, shortened if it is long.

    /// Returns a finding with the usual severity of its kind.
    static Finding make(FindingKind kind, const QString &file, int line, const QStringList &values);

    QLatin1String id() const;
    QString problem() const; ///< What is wrong
    QString effect() const;  ///< What that costs
    QString remedy() const;  ///< What to do
    QString text() const;    ///< All three
};

/// Returns "warning" or "error".
QString severityName(Finding::Severity severity);

/// The texts of a finding. They contain %1 to %9 for the values, and %0 for the lines.
struct FindingTexts
{
    const char *problem;
    const char *effect;
    const char *remedy;
};

/// Describes a kind of finding.
struct FindingDescription
{
    FindingKind kind;
    const char *id;
    Finding::Severity severity; ///< The usual one
    FindingTexts one;
    FindingTexts many; ///< For several lines; null if each has its own finding.
};

/// The descriptions of all kinds of findings.
extern const std::array<FindingDescription, static_cast<std::size_t>(FindingKind::Count)> kFindings;

/// Makes one finding of several of the same kind, and puts what matters most first: errors, then
/// the catalogue, then by line.
void arrange(QList<Finding> &findings);
