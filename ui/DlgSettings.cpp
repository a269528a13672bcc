#include "ui/DlgSettings.h"
#include "ui_DlgSettings.h"

#include "lang/CTranslatorMgr.h"
#include "ui/PageSetLang.h"

#include <QFile>
#include <QTranslator>

DlgSettings::DlgSettings(QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::DlgSettings>())
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    buildTabs();
}

DlgSettings::~DlgSettings() = default;

void DlgSettings::accept()
{
    updateChanged();
    QDialog::accept();
}

void DlgSettings::reject()
{
    updateChanged();
    QDialog::reject();
}

void DlgSettings::buildTabs()
{
    // Deliberate: the sheet keeps a background and a border of the tab bar that Qt doesn't draw.
    if (QFile style(QLatin1String(":/res/qss/style.css")); style.open(QIODevice::ReadOnly))
        setStyleSheet(QString::fromUtf8(style.readAll()));

    m_pageSetLang = new PageSetLang(ui->tabWidget);
    ui->tabWidget->addTab(
        m_pageSetLang,
        CTranslatorMgr::instance()->translator()->translate("DlgSettings", "Language"));
    setWindowTitle(CTranslatorMgr::instance()->translator()->translate("DlgSettings", "Settings"));

    ui->tabWidget->setCurrentIndex(0);
    // Deliberate: repeats what the form sets, because the style sheet is made for this mode.
    ui->tabWidget->setDocumentMode(true);
}

void DlgSettings::updateChanged()
{
    m_changed = m_pageSetLang && m_pageSetLang->changeOk();
}
