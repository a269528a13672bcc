// Tests that months of use don't leak: loads and unloads the plug-in, opens the dialog, changes the
// language and closes the dialog, many times. The heap must not grow more than with a dialog made
// by Qt alone, with the same widgets and style sheet.
//
// ZENDEL_STEPS is the number of measured cycles. QTEST_FUNCTION_TIMEOUT, in ms, raises Qt Test's
// limit of 5 minutes.

#include "support/BareDialog.h"
#include "support/DialogWidgets.h"
#include "support/PluginTest.h"
#include "support/Settings.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QTest>

#include <malloc.h>

#include <functional>
#include <limits>

namespace {

/// Growth per cycle that isn't a leak, in bytes. The smallest leak would be a block of 16 bytes.
const double noise = 4;

/// Returns the number of bytes that are allocated on the heap.
qint64 liveBytes()
{
    const auto heap = mallinfo2();
    return qint64(heap.uordblks) + qint64(heap.hblkhd);
}

} // namespace

class tst_cycles : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void openChangeClose();
    void loadShowUnload();

private:
    double growth(const char *name, const std::function<void()> &cycle);
    void showBareDialog(bool change);

    QString m_styleSheet;
};

void tst_cycles::init()
{
    PluginTest::init();
    QFile style(QStringLiteral(":/res/qss/style.css"));
    QVERIFY(style.open(QIODevice::ReadOnly));
    m_styleSheet = QString::fromUtf8(style.readAll());
}

/// Returns the least growth of the heap per cycle, in bytes.
double tst_cycles::growth(const char *name, const std::function<void()> &cycle)
{
    const int count = static_cast<int>(Settings::stepCount(1000));
    const auto run = [&](int times) {
        for (int i = 0; i < times; ++i) {
            cycle();
            takeAll();
        }
    };

    const int part = count / 3;
    run(50); // Fills all caches.
    // A leak shows in each part, unlike what Qt allocates once, for instance by a timer.
    double least = std::numeric_limits<double>::max();
    for (int i = 0; i < 3; ++i) {
        const qint64 before = liveBytes();
        run(part);
        least = qMin(least, double(liveBytes() - before) / part);
    }
    qInfo("%s: %.1f bytes per cycle, %d cycles", name, least, count);
    return qMax(least, 0.0);
}

/// Shows a dialog like the plug-in's that uses only Qt.
void tst_cycles::showBareDialog(bool change)
{
    BareDialogContent content {QStringLiteral("Settings"),
                               QStringLiteral("Language"),
                               QStringLiteral("Language:"),
                               QStringLiteral("Change"),
                               {},
                               1,
                               m_styleSheet};
    for (int id : {1, 2})
        content.languages.append({id, true, QString::number(id), QString(), QString()});
    BareDialog dialog(content);
    auto *const button = &DialogWidgets::button(dialog);
    connect(button, &QPushButton::clicked, button, [button] {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        QApplication::restoreOverrideCursor();
        QMessageBox::information(button->parentWidget(), QStringLiteral("Success"),
                                 QStringLiteral("Change successful!"));
    });

    m_operator.onDialog = [change, button](QDialog &) {
        if (change)
            button->click();
    };
    dialog.setModal(true);
    dialog.winId();
    dialog.exec();
}

void tst_cycles::openChangeClose()
{
    const double bare = growth("bare dialog with a change", [this] { showBareDialog(true); });

    QVERIFY(m_mgr->Init(&m_machine));
    m_operator.onDialog = DialogWidgets::pressChange;
    const double ours = growth("open, change, close", [&] {
        QVERIFY(m_mgr->ShowSettingsDlg(nullptr));
        QCOMPARE(m_operator.takeBoxes().size(), 1);
    });
    QVERIFY(ours < bare + noise);
}

void tst_cycles::loadShowUnload()
{
    const double bare = growth("bare dialog", [this] { showBareDialog(false); });

    m_operator.onDialog = nullptr;
    const double ours = growth("load, show, unload", [this] {
        unload();
        load();
        QVERIFY(m_mgr->Init(&m_machine));
        QVERIFY(!m_mgr->ShowSettingsDlg(nullptr));
        QCOMPARE(m_operator.takeDialogs().size(), 1);
    });
    QVERIFY(ours < bare + noise);
}

QTEST_MAIN(tst_cycles)
#include "tst_cycles.moc"
