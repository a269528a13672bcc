#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

class PageSetLang;

namespace Ui {
class DlgSettings;
}

/// The settings dialog: fixed in size, its one tab the language page. It has no buttons of its
/// own; the operator closes it with Escape or the title bar, and both reach reject().
class DlgSettings : public QDialog
{
    Q_OBJECT

public:
    /// Builds the whole dialog, with the languages and in the language that are loaded now.
    explicit DlgSettings(QWidget *parent = nullptr);
    ~DlgSettings() override;

    /// Whether the last change of language on the page succeeded; false until the dialog closes.
    bool changed() const { return m_changed; }

    /// Closes the dialog; changed() then tells the outcome.
    void accept() override;

    /// The same: closing the dialog takes back nothing.
    void reject() override;

private:
    void buildTabs();
    void updateChanged();

    const std::unique_ptr<Ui::DlgSettings> ui;
    QPointer<PageSetLang> m_pageSetLang;
    bool m_changed = false;
};
