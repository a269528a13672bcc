// Measures the time from the host's call to the settings dialog's first paint, compared with a bare
// dialog that has the same widgets and performs the same steps.

#include "bench/CpuTimer.h"
#include "bench/Deployment.h"
#include "lang/CTranslatorMgr.h"
#include "plugin/CZendelIns.h"
#include "plugin/IHostMachine.h"

#include "support/BareDialog.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFile>
#include <QTranslator>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace {

class Machine : public IHostMachine
{
public:
    void NotifySettingChanged() override { }
    bool SetLanguage(std::uint8_t /*langId*/) override { return true; }
} machine;

QString text(const char *context, const char *source)
{
    return CTranslatorMgr::instance()->translator()->translate(context, source);
}

/// Measures the time until the first paint of the next dialog, and closes it.
class FirstPaint : public QObject
{
public:
    FirstPaint() { qApp->installEventFilter(this); }

    double seconds() const { return m_seconds; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *const dialog =
            event->type() == QEvent::Paint && !m_seen ? qobject_cast<QDialog *>(watched) : nullptr;
        if (dialog) {
            m_seen = true;
            // Queued, because the dialog's widgets are painted after it, before the next event.
            QMetaObject::invokeMethod(
                dialog,
                [this, dialog] {
                    m_seconds = m_timer.seconds();
                    dialog->reject();
                },
                Qt::QueuedConnection);
        }
        return false;
    }

private:
    const CpuTimer m_timer;
    bool m_seen = false;
    double m_seconds = -1;
};

void showSettingsDlg()
{
    CZendelIns mgr;
    mgr.ShowSettingsDlg(nullptr);
}

void showBareDialog()
{
    QFile style(QStringLiteral(":/res/qss/style.css"));
    style.open(QIODevice::ReadOnly);
    const CTranslatorMgr *const mgr = CTranslatorMgr::instance();
    BareDialog dialog({text("DlgSettings", "Settings"), text("DlgSettings", "Language"),
                       text("PageSetLang", "Language:"), text("PageSetLang", "Change"),
                       mgr->visibleLanguages(), mgr->defaultLangId(),
                       QString::fromUtf8(style.readAll())});
    dialog.exec();
}

/// Returns the processor time, in seconds, from the call of @p show until its dialog is painted.
double openingTime(void (*show)())
{
    const FirstPaint firstPaint;
    show();
    return firstPaint.seconds();
}

/// Opens both dialogs alternately, because they differ by less than the load of a busy machine. The
/// counter is the median of the ratios of the pairs.
void openBoth(benchmark::State &state, int languages)
{
    if (useDeployment(languages).isEmpty() || !CZendelIns().Init(&machine)) {
        state.SkipWithError("the catalogue can't be written");
        return;
    }
    if (CTranslatorMgr::instance()->visibleLanguages().size() != languages) {
        state.SkipWithError("not all languages are read");
        return;
    }

    std::vector<double> ratios;
    for ([[maybe_unused]] auto _ : state) {
        double bare = 0;
        const bool bareFirst = ratios.size() % 2 == 0;
        if (bareFirst)
            bare = openingTime(showBareDialog);
        const double settings = openingTime(showSettingsDlg);
        if (!bareFirst)
            bare = openingTime(showBareDialog);
        ratios.push_back(settings / bare);
        state.SetIterationTime(settings);
    }
    const auto median = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), median, ratios.end());
    state.counters["bareDialog"] = *median;
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    // Drops the warning about the page's unconnected slot.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    for (const int languages : {10, 57, 255, 10000}) {
        const std::string name = "ShowSettingsDlg/" + std::to_string(languages);
        benchmark::RegisterBenchmark(name.c_str(), openBoth, languages)
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }

    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
