#include "ui/PageSetLang.h"
#include "ui_PageSetLang.h"

#include "lang/CTranslatorMgr.h"
#include "plugin/HostMachine.h"
#include "plugin/IHostMachine.h"

#include <QApplication>
#include <QMessageBox>
#include <QTranslator>

PageSetLang::PageSetLang(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::PageSetLang>())
{
    ui->setupUi(this);
    retranslateTexts();
    fillLangList();
}

PageSetLang::~PageSetLang() = default;

void PageSetLang::on_comboBo_lang_activated(int /*index*/) { }

void PageSetLang::on_pushButton_change_clicked()
{
    // Deliberate: the machine takes 8 bits, so numbers above 255 wrap.
    const auto langId =
        static_cast<quint16>(ui->comboBox_language->currentData(Qt::UserRole).toInt());
    QApplication::setOverrideCursor(Qt::WaitCursor);
    // Deliberate: a failure replaces an earlier success, because hosts rely on the last outcome.
    m_changeOk = g_pHostMachine->SetLanguage(static_cast<quint8>(langId));
    QApplication::restoreOverrideCursor();

    // Translated after the calls, because the host may have loaded another translation in them. In
    // variables, because compilers evaluate the arguments of a call in different orders.
    if (m_changeOk) {
        g_pHostMachine->NotifySettingChanged();
        const QString text = CTranslatorMgr::instance()->translator()->translate(
            "PageSetLang", "Change successful!");
        const QString title =
            CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Success");
        QMessageBox::information(this, title, text, QMessageBox::Ok);
    } else {
        const QString text =
            CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Change failed!");
        const QString title =
            CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Error");
        QMessageBox::critical(this, title, text, QMessageBox::Ok);
    }
}

void PageSetLang::retranslateTexts()
{
    // Replaces the form's texts, which translators installed by the host may have changed.
    ui->pushButton_change->setText(
        CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Change"));
    ui->label_info1->setText(
        CTranslatorMgr::instance()->translator()->translate("PageSetLang", "Language:"));
}

void PageSetLang::fillLangList()
{
    ui->comboBox_language->clear();
    const QList<LangEntry> languages = CTranslatorMgr::instance()->visibleLanguages();
    for (const LangEntry &lang : languages) {
        // Deliberate: tested again, though always true, so that the page by itself never offers a
        // hidden language.
        if (lang.show) // GCOV_EXCL_BR_LINE
            ui->comboBox_language->addItem(lang.name, lang.id);
    }

    const int index = ui->comboBox_language->findData(CTranslatorMgr::instance()->defaultLangId());
    ui->comboBox_language->setCurrentIndex(index >= 0 ? index : 0);
}
