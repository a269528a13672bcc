#include "CatalogueMaker.h"

#include "support/Deployment.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>

#include <utility>

void CatalogueMaker::makeDeployment()
{
    makeTranslations();
    const int damage = below(50);
    if (damage == 0) {
        QFile::remove(Deployment::path(QStringLiteral("Lang/Lang.ini")));
        return;
    }
    QByteArray bytes = makeCatalogue();
    if (damage == 1)
        bytes += QByteArray(1 + below(100), '\0');
    else if (damage == 2)
        bytes += "\nLANG2_NAME=appended\r\n";
    else if (damage == 3)
        bytes.chop(below(bytes.size()));
    else if (damage == 4)
        bytes.prepend("\xEF\xBB\xBF");
    Deployment::writeCatalogue(bytes);
}

QByteArray CatalogueMaker::makeCatalogue()
{
    QString text = oneOf({"[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]",
                          "[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[lang_mgr]", "LANG_MGR"})
        + end();
    for (int lines = below(40); lines > 0; --lines)
        text += line() + end();
    const QChar bom(QChar::ByteOrderMark);
    const int encoding = below(7);
    if (encoding == 0)
        return Deployment::utf16(bom + text);
    if (encoding == 1)
        return Deployment::utf16(bom + text, false);
    if (encoding == 2)
        return Deployment::utf16(QString(2, bom) + text);
    if (encoding == 3)
        return text.toUtf8();
    if (encoding == 4)
        return QTextCodec::codecForName("GB2312")->fromUnicode(text);
    if (encoding == 5)
        return text.toUtf8().replace("One", "\xD6");
    return "\xEF\xBB\xBF" + text.toUtf8();
}

/// Puts a translation, an invalid file or nothing into each folder.
void CatalogueMaker::makeTranslations()
{
    for (const auto &[folder, name] :
         {std::make_pair("first", "first"), std::make_pair("second", "second"),
          std::make_pair("chs", "long_texts")}) {
        QDir(Deployment::path(QStringLiteral("Lang/") + QLatin1String(folder))).removeRecursively();
        const int choice = below(8);
        if (choice == 0)
            Deployment::writeTranslation(QLatin1String(folder), "not a translation");
        else if (choice > 1)
            Deployment::installTranslation(QLatin1String(folder), QLatin1String(name));
    }
}

QString CatalogueMaker::oneOf(std::initializer_list<const char *> texts)
{
    return QString::fromUtf8(texts.begin()[below(static_cast<int>(texts.size()))]);
}

QString CatalogueMaker::end()
{
    return oneOf({"\n", "\n", "\n", "\r\n", "\r\n", "\r\n", "\r\n", "\r"});
}

QString CatalogueMaker::number()
{
    return oneOf({"1", "2", "3", "10", "01", "0", "300", "99999999999"});
}

QString CatalogueMaker::line()
{
    const int kind = below(18);
    if (kind == 0)
        return oneOf({"[LANG_MGR]", "[LANG_MGR]", "[LANG_MGR]", "[OTHER]", "[]", "[", "[LANG_MGR",
                      "[[LANG_MGR]]", "(LANG_MGR)", "\xEF\xBC\xBBLANG_MGR\xEF\xBC\xBD"});
    if (kind == 1)
        return oneOf({"", ";LANG1_SHOW=1", "#", "=", "LANG1_SHOW", "=1", "x=y", "// LANG1_SHOW=1",
                      "LANG1_NAME: One", "LANG1_NANE=One", "DEFUALT=1"});
    if (kind == 2)
        return QStringLiteral("DEFAULT=") + oneOf({"1", "2", " 3 ", "x", "", "300", "-1", "O2"});
    if (kind == 3)
        return oneOf({"lang", "LANG", "LANG-", "xLANG"}) + number()
            + oneOf({"_name", "_SHOWN", "NAME", "_SHOW"}) + QStringLiteral("=1");
    if (kind == 4)
        return QStringLiteral("LANG%1_ID=%2").arg(number(), number());
    if (kind <= 6)
        return QStringLiteral("LANG%1_NAME%2")
            .arg(number(),
                 oneOf({"=One", " = Two ", "=a=b;c", "=", "=中文", "=é", "=\"One\"", "=One\t; 1",
                        "=\xE2\x80\x8B"}));
    if (kind <= 9)
        return QStringLiteral("LANG%1_FOLDER%2")
            .arg(number(),
                 oneOf({"=first", "= second", "=none", "=", "=../Lang/second", "=%3", "=\"first\"",
                        "=first\\Zendel.qm", "=C:\\first"}));
    if (kind <= 11)
        return QStringLiteral("LANG%1_NAME=%2\nLANG%1_FOLDER=first\nLANG%1_SHOW=1")
            .arg(number(),
                 oneOf({"One", "中文", "é", "Two", "<script>x</script>", "\" ' & ]]> -->",
                        "\x1B[31m\x01\x7F", "\xEF\xBF\xBE"}));
    return QStringLiteral("LANG%1_SHOW%2")
        .arg(number(),
             oneOf({"=1", "=1", "=1", " = 01", "=0", "=yes", "=", "=1.0", "=\xEF\xBC\x91"}));
}
