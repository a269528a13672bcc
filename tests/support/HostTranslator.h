#pragma once

#include <QApplication>
#include <QStringList>
#include <QTranslator>
#include <QWidget>

#include <functional>

/// A host's translator. It translates everything to "host" and records what it is asked for.
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
    std::function<void()> onPageText; ///< Called for each text of the page.
};

/// Returns the only widget of its class, which may still be under construction, or null.
template<typename Widget>
Widget *anyWidget()
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *const widget : widgets) {
        if (auto *const result = qobject_cast<Widget *>(widget))
            return result;
    }
    return nullptr;
}
