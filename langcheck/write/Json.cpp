#include "langcheck/write/Json.h"

#include <QJsonArray>

QJsonObject toJson(const Report &report)
{
    QJsonArray languages;
    for (int i = 0; i < report.listed.size(); ++i) {
        const LangEntry &lang = report.listed.at(i);
        languages.append(QJsonObject {{QStringLiteral("number"), lang.id},
                                      {QStringLiteral("name"), lang.name},
                                      {QStringLiteral("folder"), lang.folder},
                                      {QStringLiteral("translation"), lang.qmPath},
                                      {QStringLiteral("selected"), i == report.selected}});
    }
    QJsonArray messageBoxes;
    for (const Box &box : report.boxes) {
        messageBoxes.append(QJsonObject {{QStringLiteral("icon"), box.icon},
                                         {QStringLiteral("title"), box.title},
                                         {QStringLiteral("text"), box.text}});
    }
    QJsonArray all;
    for (const Finding &finding : report.findings) {
        all.append(QJsonObject {{QStringLiteral("file"), finding.file},
                                {QStringLiteral("line"), finding.line},
                                {QStringLiteral("severity"), severityName(finding.severity)},
                                {QStringLiteral("kind"), QString(finding.id())},
                                {QStringLiteral("text"), finding.text()},
                                {QStringLiteral("quote"), finding.quote}});
    }
    QJsonObject json = {{QStringLiteral("formatVersion"), 1},
                        {QStringLiteral("applicationDir"), report.applicationDir},
                        {QStringLiteral("encoding"), report.encoding},
                        {QStringLiteral("encodingReason"), report.encodingReason},
                        {QStringLiteral("languages"), languages},
                        {QStringLiteral("default"), report.defaultLangId},
                        {QStringLiteral("translation"), report.translation},
                        {QStringLiteral("fallback"), report.fallback},
                        {QStringLiteral("boxes"), messageBoxes},
                        {QStringLiteral("hostFails"), report.hostFails},
                        {QStringLiteral("findings"), all}};
    if (report.hostQt) {
        json.insert(QStringLiteral("hostQt"),
                    QJsonObject {{QStringLiteral("version"), report.hostQt->version},
                                 {QStringLiteral("compiler"), report.hostQt->compiler}});
    }
    return json;
}
