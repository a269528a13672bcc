#pragma once

#include "support/Interpose.h"

#include <QMessageBox>
#include <QVector>

#include <utility>

/// The default buttons that were passed to QMessageBox's static functions. They can't be read from
/// a message box, because Qt makes its first accepting button the default if none was passed.
namespace DefaultButtons {

inline QVector<int> given;

/// Returns the default button of each message box since the last call, in order.
inline QVector<int> take()
{
    return std::exchange(given, {});
}

} // namespace DefaultButtons

/// Replaces the function that has this name with one that records the default button.
#define RECORD_DEFAULT_BUTTON(name)                                                                \
    INTERPOSE(QMessageBox::StandardButton, name,                                                   \
              (QWidget * parent, const QString &title, const QString &text,                        \
               QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton))   \
    {                                                                                              \
        DefaultButtons::given += defaultButton;                                                    \
        return ORIGINAL(name)(parent, title, text, buttons, defaultButton);                        \
    }
