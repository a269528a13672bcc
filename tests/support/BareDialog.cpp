#include "support/BareDialog.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

/// Has the language page's slots: Qt connects one by name and warns about the other.
class BarePage : public QWidget
{
    Q_OBJECT

public:
    explicit BarePage(const BareDialogContent &content)
    {
        auto *const label = new QLabel(content.label, this);
        label->setObjectName(QStringLiteral("label_info1"));
        label->setGeometry(20, 20, 81, 31);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto *const button = new QPushButton(content.button, this);
        button->setObjectName(QStringLiteral("pushButton_change"));
        button->setGeometry(290, 20, 91, 31);
        auto *const list = new QComboBox(this);
        list->setObjectName(QStringLiteral("comboBox_language"));
        list->setGeometry(110, 20, 171, 31);
        QMetaObject::connectSlotsByName(this);

        for (const LangEntry &entry : content.languages)
            list->addItem(entry.name, entry.id);
        list->setCurrentIndex(list->findData(content.defaultLangId));
    }

private Q_SLOTS:
    void on_comboBo_lang_activated(int /*index*/) { }
    void on_pushButton_change_clicked() { }
};

} // namespace

BareDialog::BareDialog(const BareDialogContent &content)
{
    setFixedSize(700, 470);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowTitle(content.title);
    setStyleSheet(content.styleSheet);
    auto *const tabs = new QTabWidget(this);
    tabs->setDocumentMode(true);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tabs);
    tabs->addTab(new BarePage(content), content.tab);
}

#include "BareDialog.moc"
