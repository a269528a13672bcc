#include "langcheck/write/Json.h"

#include "lang/QmFile.h"
#include "lang/SourceTexts.h"
#include "langcheck/Deployment.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QTranslator>

namespace {

QJsonArray toArray(const QVector<int> &numbers)
{
    QJsonArray result;
    for (const int number : numbers)
        result.append(number);
    return result;
}

/// Returns the texts that the dialog shows after a change to the language.
QJsonArray textsOf(const LangEntry &language, const Report &report)
{
    QTranslator translator;
    loadQmFile(translator,
               QFileInfo::exists(language.qmPath) ? language.qmPath
                                                  : fallbackPath(report.applicationDir));
    QJsonArray result;
    for (const SourceText &text : kSourceTexts) {
        result.append(
            QJsonObject {{QStringLiteral("context"), QLatin1String(text.context)},
                         {QStringLiteral("source"), QLatin1String(text.text)},
                         {QStringLiteral("text"), translator.translate(text.context, text.text)}});
    }
    return result;
}

QJsonArray languages(const Report &report)
{
    QJsonArray result;
    for (int i = 0; i < report.listed.size(); ++i) {
        const LangEntry &lang = report.listed.at(i);
        result.append(QJsonObject {{QStringLiteral("number"), lang.id},
                                   {QStringLiteral("machineNumber"), lang.id & 0xFF},
                                   {QStringLiteral("name"), lang.name},
                                   {QStringLiteral("folder"), lang.folder},
                                   {QStringLiteral("translation"), lang.qmPath},
                                   {QStringLiteral("selected"), i == report.selected},
                                   {QStringLiteral("texts"), textsOf(lang, report)}});
    }
    return result;
}

QJsonArray hidden(const Report &report)
{
    QJsonArray result;
    for (const HiddenLanguage &language : report.hidden) {
        result.append(QJsonObject {{QStringLiteral("number"), language.number},
                                   {QStringLiteral("name"), language.name},
                                   {QStringLiteral("folder"), language.folder},
                                   {QStringLiteral("line"), language.line}});
    }
    return result;
}

QJsonArray boxes(const Report &report)
{
    QJsonArray result;
    for (const Box &box : report.boxes) {
        result.append(QJsonObject {{QStringLiteral("icon"), box.icon},
                                   {QStringLiteral("title"), box.title},
                                   {QStringLiteral("text"), box.text}});
    }
    return result;
}

QJsonArray findings(const Report &report)
{
    QJsonArray result;
    for (const Finding &finding : report.findings) {
        result.append(QJsonObject {{QStringLiteral("file"), finding.file},
                                   {QStringLiteral("line"), finding.line},
                                   {QStringLiteral("lines"), toArray(finding.lines)},
                                   {QStringLiteral("languages"), toArray(finding.languages)},
                                   {QStringLiteral("severity"), severityName(finding.severity)},
                                   {QStringLiteral("kind"), QString(finding.id())},
                                   {QStringLiteral("problem"), finding.problem()},
                                   {QStringLiteral("effect"), finding.effect()},
                                   {QStringLiteral("remedy"), finding.remedy()},
                                   {QStringLiteral("quote"), finding.quote}});
    }
    return result;
}

QString withoutLoneSurrogates(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (text.at(i).isSurrogate())
            text.replace(i, 1, QChar(QChar::ReplacementCharacter));
    }
    return text;
}

/// Replaces what strict parsers refuse; QJsonDocument would write it.
QJsonValue strict(const QJsonValue &value)
{
    if (value.isString())
        return withoutLoneSurrogates(value.toString(QString()));
    if (value.isArray()) {
        QJsonArray result;
        const QJsonArray array = value.toArray();
        for (const QJsonValue &element : array)
            result.append(strict(element));
        return result;
    }
    if (value.isObject()) {
        QJsonObject result;
        const QJsonObject object = value.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it)
            result.insert(it.key(), strict(it.value()));
        return result;
    }
    return value;
}

} // namespace

QJsonObject toJson(const Report &report)
{
    const char *const verdicts[] = {"good", "warnings", "errors"};
    QJsonObject json = {
        {QStringLiteral("formatVersion"), 2},
        {QStringLiteral("tool"),
         QJsonObject {{QStringLiteral("name"), QStringLiteral("langcheck")},
                      {QStringLiteral("version"), QCoreApplication::applicationVersion()}}},
        {QStringLiteral("applicationDir"), report.applicationDir},
        {QStringLiteral("verdict"), QLatin1String(verdicts[report.exitCode()])},
        {QStringLiteral("errors"), report.count(Finding::Error)},
        {QStringLiteral("warnings"), report.count(Finding::Warning)},
        {QStringLiteral("encoding"), report.encoding},
        {QStringLiteral("encodingReason"), report.encodingReason},
        {QStringLiteral("languages"), languages(report)},
        {QStringLiteral("hidden"), hidden(report)},
        {QStringLiteral("unusedFolders"), QJsonArray::fromStringList(report.unusedFolders)},
        {QStringLiteral("default"), report.defaultLangId},
        {QStringLiteral("translation"), report.translation},
        {QStringLiteral("fallback"), report.fallback},
        {QStringLiteral("boxes"), boxes(report)},
        {QStringLiteral("hostChecked"), report.hostChecked},
        {QStringLiteral("hostFails"), report.hostFails},
        {QStringLiteral("findings"), findings(report)}};
    if (report.hostQt) {
        json.insert(QStringLiteral("hostQt"),
                    QJsonObject {{QStringLiteral("version"), report.hostQt->version},
                                 {QStringLiteral("compiler"), report.hostQt->compiler}});
    }
    return strict(json).toObject();
}
