#pragma once

#include <QDialog>
#include <QPointer>

#include <memory>

class PageSetLang;

namespace Ui {
class DlgSettings;
}

/// The settings dialog, which has a fixed size and one tab, the language page. The operator closes
/// it with Escape or in the title bar; both call reject().
class DlgSettings : public QDialog
{
    Q_OBJECT

public:
    /// Constructs the dialog with the languages and the translation that are loaded now.
    explicit DlgSettings(QWidget *parent = nullptr);
    ~DlgSettings() override;

    /// Returns true if the dialog has closed and the page's last change of language succeeded.
    bool changed() const { return m_changed; }

    /// Closes the dialog and updates changed().
    void accept() override;

    /// Does the same as accept(), because changes are not reverted.
    void reject() override;

private:
    void buildTabs();
    void updateChanged();

    const std::unique_ptr<Ui::DlgSettings> ui;
    QPointer<PageSetLang> m_pageSetLang;
    bool m_changed = false;
};
