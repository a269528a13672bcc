#pragma once

#include "lang/LangEntry.h"

#include <QDialog>
#include <QList>

/// What a dialog like the plug-in's shows.
struct BareDialogContent
{
    QString title;
    QString tab;
    QString label;
    QString button;
    QList<LangEntry> languages;
    int defaultLangId = 0;
    QString styleSheet;
};

/// A dialog with the widgets of the settings dialog, made by Qt alone as it is quickest written:
/// the peer in comparisons of time and memory. It takes the same steps once each, and its button
/// does nothing.
class BareDialog : public QDialog
{
public:
    explicit BareDialog(const BareDialogContent &content);
};
