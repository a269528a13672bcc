#pragma once

#include "support/Interpose.h"

#include <QList>
#include <QMessageBox>

#include <utility>

/// The default buttons that QMessageBox's static functions were called with. A box doesn't show
/// it: without one, Qt makes the first accepting button the default.
namespace DefaultButtons {

inline QList<int> given;

/// The default button of each box since the last call, in order.
inline QList<int> take()
{
    return std::exchange(given, {});
}

} // namespace DefaultButtons

/// Defines the replacement for one of these functions, given by its mangled name.
#define RECORD_DEFAULT_BUTTON(symbol)                                                              \
    INTERPOSE(QMessageBox::StandardButton, symbol,                                                 \
              (QWidget * parent, const QString &title, const QString &text,                        \
               QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton))   \
    {                                                                                              \
        DefaultButtons::given += defaultButton;                                                    \
        return ORIGINAL(symbol)(parent, title, text, buttons, defaultButton);                      \
    }
