#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <array>

/// What langcheck can find, in the order of kFindings.
enum class FindingKind {
    CatalogueUnreadable,
    Utf16WithoutBom,
    Utf8WithoutBom,
    SecondBom,
    Undecodable,
    SwallowedLine,
    CarriageReturn,
    NoSection,
    Header,
    OutsideSection,
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
    DefaultNumber,
    DefaultUnknown,
    DefaultHidden,
    ApplicationFolder,
    FolderMissing,
    QmMissing,
    QmUnreadable,
    QmSource,
    QmDamaged,
    QmForeign,
    QmLanguage,
    TextMissing,
    TextClipped,
    DllUnusable,
    QtVersion,
    QtVersionUnknown,
    QtFamily,
    QtVersionsDiffer,
    PluginFamily,
    PlatformMissing,
    RuntimeMissing,
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
    QVector<int> lines;     ///< All of them, in order, if it is about more than one.
    QVector<int> languages; ///< The numbers of the languages that it is about
    QString quote;          ///< The line of the catalogue as it was read, shortened if it is long.

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

/// Describes a kind of finding. The texts contain %1 to %9 for the values.
struct FindingDescription
{
    FindingKind kind;
    const char *id;
    Finding::Severity severity; ///< The usual one
    const char *problem;
    const char *effect;
    const char *remedy;
};

/// The descriptions of all kinds of findings.
extern const std::array<FindingDescription, static_cast<std::size_t>(FindingKind::Count)> kFindings;
