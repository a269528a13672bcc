#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class PageSetLang;
}

/// The page on which the operator selects the machine's language. g_pHostMachine must not be null
/// when the operator presses the button.
class PageSetLang : public QWidget
{
    Q_OBJECT

public:
    /// Constructs the page with the languages that are visible now, the default one selected.
    explicit PageSetLang(QWidget *parent = nullptr);
    ~PageSetLang() override;

    /// Returns true if the machine accepted the last change; false if there was none.
    bool changeOk() const { return m_changeOk; }

private Q_SLOTS:
    // Deliberate: misspelt, so Qt does not connect it and logs a warning, because hosts know that
    // line in their logs.
    void on_comboBo_lang_activated(int index);
    void on_pushButton_change_clicked();

private:
    void retranslateTexts();
    void fillLangList();

    const std::unique_ptr<Ui::PageSetLang> ui;
    bool m_changeOk = false;
};
