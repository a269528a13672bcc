#pragma once

#include "lang/LangEntry.h"

#include <QDialog>
#include <QList>

/// The texts and languages that a BareDialog shows.
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

/// A dialog with the settings dialog's widgets and none of the plug-in's code, for comparisons of
/// time and memory. It performs each step of the construction once, and its button does nothing.
class BareDialog : public QDialog
{
public:
    explicit BareDialog(const BareDialogContent &content);
};
