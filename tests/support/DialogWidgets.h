#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QTabWidget>

/// The settings dialog's widgets, which are also the language page's, by their names in the forms.
namespace DialogWidgets {

template<typename Widget>
Widget &child(const QWidget &window, const char *name)
{
    return *window.findChild<Widget *>(QLatin1String(name));
}

inline QTabWidget &tabWidget(const QWidget &window)
{
    return child<QTabWidget>(window, "tabWidget");
}

inline QComboBox &comboBox(const QWidget &window)
{
    return child<QComboBox>(window, "comboBox_language");
}

inline QPushButton &button(const QWidget &window)
{
    return child<QPushButton>(window, "pushButton_change");
}

inline QLabel &label(const QWidget &window)
{
    return child<QLabel>(window, "label_info1");
}

inline void pressChange(const QWidget &window)
{
    button(window).click();
}

/// Returns the texts of title, tab, button and label.
inline QStringList texts(const QDialog &dialog)
{
    return {dialog.windowTitle(), tabWidget(dialog).tabText(0), button(dialog).text(),
            label(dialog).text()};
}

/// Returns the languages to choose from.
inline QStringList languages(const QWidget &window)
{
    QStringList result;
    const QComboBox &list = comboBox(window);
    for (int i = 0; i < list.count(); ++i)
        result += list.itemText(i);
    return result;
}

} // namespace DialogWidgets
