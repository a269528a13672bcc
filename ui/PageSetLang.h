#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class PageSetLang;
}

/// The page on which the operator picks a language and has the machine switch to it. It needs
/// g_pHostMachine to be set when the operator presses the button.
class PageSetLang : public QWidget
{
    Q_OBJECT

public:
    /// Lists the languages that the catalogue offers now, the default one selected.
    explicit PageSetLang(QWidget *parent = nullptr);
    ~PageSetLang() override;

    /// Whether the machine accepted the last change; false until one was tried.
    bool changeOk() const { return m_changeOk; }

private Q_SLOTS:
    // Misspelt, so that it is connected to nothing and Qt warns of it; kept as it is.
    void on_comboBo_lang_activated(int index);
    void on_pushButton_change_clicked();

private:
    void retranslateTexts();
    void fillLangList();

    const std::unique_ptr<Ui::PageSetLang> ui;
    bool m_changeOk = false;
};
