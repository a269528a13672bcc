#pragma once

#include <QString>
#include <QStringList>

#include <array>

/// A probable mistake in the deployment.
struct Finding
{
    enum Severity {
        Warning, ///< Has no effect, or a surprising one.
        Error    ///< The operator sees something go wrong.
    };

    QString file; ///< Path below the application directory.
    int line = 0; ///< From 1; 0 for the file as a whole.
    Severity severity = Warning;
    QString id;     ///< The id of its kind.
    QString text;   ///< What is wrong, the effect and the remedy.
    QString remedy; ///< The last part of the text.
    QString quote;  ///< The line of the catalogue as it was read, shortened if it is long.
};

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

/// Describes a kind of finding.
struct FindingDescription
{
    FindingKind kind;
    const char *id;
    Finding::Severity severity; ///< The usual one.
    const char *text;           ///< With %1 to %9 for the values.
};

/// The descriptions of all kinds of findings.
extern const std::array<FindingDescription, static_cast<std::size_t>(FindingKind::Count)> kFindings;

/// Returns a finding with its usual severity and with @p values in its text.
Finding makeFinding(FindingKind kind, const QString &file, int line, const QStringList &values);
