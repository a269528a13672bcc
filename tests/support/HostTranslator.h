#pragma once

#include <QStringList>
#include <QTranslator>

#include <functional>

/// A translator of the host application: translates everything to "host" and records what it was
/// asked for.
class HostTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        asked += QStringLiteral("%1 %2 %3 %4")
                     .arg(QLatin1String(context), QLatin1String(sourceText),
                          QLatin1String(disambiguation), QString::number(n));
        if (onPageText && asked.constLast().startsWith(QLatin1String("PageSetLang ")))
            onPageText();
        return QStringLiteral("host");
    }
    bool isEmpty() const override { return false; }

    mutable QStringList asked;
    std::function<void()> onPageText; ///< Called when a text of the page is asked for.
};
