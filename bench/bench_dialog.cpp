// From the host's call to the settings dialog's first paint, against a bare dialog of the same
// widgets. Both close as soon as they are painted; only the time until then counts.

#include "bench/Deployment.h"
#include "lang/CTranslatorMgr.h"
#include "plugin/CZendelIns.h"
#include "plugin/IHostMachine.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <string>

namespace {

class Machine : public IHostMachine
{
public:
    void NotifySettingChanged() override { }
    bool SetLanguage(std::uint8_t /*langId*/) override { return true; }
} machine;

/// The settings dialog as it is quickest written, its texts fixed.
class BareDialog : public QDialog
{
public:
    BareDialog()
    {
        setFixedSize(700, 470);
        setWindowTitle(QStringLiteral("Settings"));
        QFile style(QStringLiteral(":/res/qss/style.css"));
        if (style.open(QIODevice::ReadOnly))
            setStyleSheet(QString::fromUtf8(style.readAll()));

        auto *const tabs = new QTabWidget(this);
        tabs->setDocumentMode(true);
        auto *const layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(tabs);

        auto *const page = new QWidget;
        auto *const label = new QLabel(QStringLiteral("Language:"), page);
        label->setGeometry(20, 20, 81, 31);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto *const button = new QPushButton(QStringLiteral("Change"), page);
        button->setGeometry(290, 20, 91, 31);
        auto *const box = new QComboBox(page);
        box->setGeometry(110, 20, 171, 31);
        for (const LangEntry &entry : qAsConst(entries))
            box->addItem(entry.name, entry.id);
        box->setCurrentIndex(box->count() - 1);
        tabs->addTab(page, QStringLiteral("Language"));
    }

    static QList<LangEntry> entries;
};

QList<LangEntry> BareDialog::entries;

/// Takes the time of the first paint of the next dialog and closes it.
class FirstPaint : public QObject
{
public:
    FirstPaint() { qApp->installEventFilter(this); }

    void start()
    {
        m_seen = false;
        m_timer.start();
    }

    double seconds() const { return static_cast<double>(m_nanoseconds) * 1e-9; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *const dialog = event->type() == QEvent::Paint && !m_seen
            ? qobject_cast<QDialog *>(watched)
            : nullptr;
        if (dialog) {
            m_seen = true;
            // The widgets in the dialog are painted behind it, in the same go.
            QMetaObject::invokeMethod(
                dialog,
                [this, dialog] {
                    m_nanoseconds = m_timer.nsecsElapsed();
                    dialog->reject();
                },
                Qt::QueuedConnection);
        }
        return false;
    }

private:
    QElapsedTimer m_timer;
    bool m_seen = true;
    qint64 m_nanoseconds = 0;
};

void showSettingsDlg()
{
    CZendelIns mgr;
    mgr.ShowSettingsDlg(nullptr);
}

void showBareDialog()
{
    BareDialog dialog;
    dialog.exec();
}

void add(const char *name, void (*show)(), int languages)
{
    const std::string fullName = std::string(name) + '/' + std::to_string(languages);
    benchmark::RegisterBenchmark(fullName.c_str(), [=](benchmark::State &state) {
        if (useDeployment(languages).isEmpty() || !CZendelIns().Init(&machine)) {
            state.SkipWithError("the catalogue can't be written");
            return;
        }
        BareDialog::entries = CTranslatorMgr::instance()->visibleLanguages();
        if (BareDialog::entries.size() != languages) {
            state.SkipWithError("not all languages are read");
            return;
        }

        FirstPaint firstPaint;
        for ([[maybe_unused]] auto _ : state) {
            QCoreApplication::processEvents();
            firstPaint.start();
            show();
            state.SetIterationTime(firstPaint.seconds());
        }
    })
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);

    for (const int languages : {10, 57, 255, 10000}) {
        add("ShowSettingsDlg", showSettingsDlg, languages);
        add("bareDialog", showBareDialog, languages);
    }

    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
