// Does everything that a host, its operator and its files can do, in random order and nested, and
// compares the plug-in with a model.
//
// ZENDEL_STEPS is the number of steps, ZENDEL_SEED the seed. QTEST_FUNCTION_TIMEOUT, in ms, raises
// Qt Test's limit of 5 minutes.

#include "support/Deployment.h"
#include "support/DialogWidgets.h"
#ifdef Q_OS_WIN
#    include "support/Heaps_win32.h"
#endif
#include "support/NativeWindow.h"
#include "support/Operator.h"
#include "support/Plugin.h"
#include "support/RecordingMachine.h"
#include "support/Settings.h"
#include "support/TestFile.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTest>
#include <QTextCodec>

#include <memory>
#include <random>
#include <utility>

namespace {

struct Language
{
    bool show = false;
    QString name;
    QString folder; // Null if the catalogue has no line for it
};

struct Catalogue
{
    bool exists = false;
    int defaultId = 0;
    QMap<int, Language> languages;

    QString translationPath(int id) const
    {
        const Language language = languages.value(id);
        return language.show && !language.folder.isNull()
            ? Deployment::path(QStringLiteral("Lang/%1/Zendel.qm").arg(language.folder))
            : QString();
    }

    QList<int> offered() const
    {
        QList<int> result;
        for (auto it = languages.begin(); it != languages.end(); ++it) {
            if (it->show && !it->name.isEmpty() && !it->folder.isEmpty())
                result += it.key();
        }
        return result;
    }
};

/// What is at a translation's path, or is loaded in the plug-in.
enum class Translation { None, First, Second, Partial, Broken, Directory };

/// What an open dialog shows, and what it will return.
struct Dialog
{
    QStringList texts;
    QStringList items;
    QList<int> ids;
    int selected = -1;
    bool changed = false;
};

void removeFromDisk(const QString &path)
{
    QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
}

} // namespace

class tst_random_walk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void walk();

private:
    // Random choices
    int below(int limit) { return int(m_random() % quint32(limit)); }
    bool oneIn(int count) { return below(count) == 0; }
    template<typename Container>
    auto any(const Container &container)
    {
        return container.at(below(int(container.size())));
    }
    Catalogue anyCatalogue();

    // Actions of the host
    void step();
    void load();
    void unload();
    void newInterface();
    void releaseInterface();
    void initialize(bool mayBeNull);
    void showDialog();

    // Calls to the host
    void setLanguage(RecordingMachine &machine);
    void notifySettingChanged(RecordingMachine &machine);
    void reenter();

    // Actions of the operator
    void operate(QDialog &dialog);
    void pressChange(const QDialog &dialog);
    void close(QDialog &dialog);

    // Changes of the files
    void changeDisk();
    void writeCatalogue();
    void writeTranslation(const QString &folder, Translation translation);

    // The model
    QString text(const char *context, const char *source) const;
    void expectInit();
    Dialog expectedDialog() const;

    void log(const QString &what) { m_log += QString(2 * m_depth, QLatin1Char(' ')) + what; }
    template<typename T>
    void compare(const char *what, const T &actual, const T &expected);

    std::mt19937 m_random {1}; // NOLINT(cert-msc*): it must be repeatable
    QStringList m_log;
    int m_depth = 0;
    bool m_failed = false;

    Plugin m_plugin {testFile(QStringLiteral(PLUGIN_FILE))};
    QList<IZendelMgr *> m_managers;
    QList<IZendelMgr *> m_busy; // With a dialog open
    RecordingMachine m_machines[3] {RecordingMachine {QStringLiteral("0 ")},
                                    RecordingMachine {QStringLiteral("1 ")},
                                    RecordingMachine {QStringLiteral("2 ")}};
    QStringList m_calls;
    QStringList m_expectedCalls;
    Operator m_operator;
    QStringList m_expectedBoxes;
    QStringList m_expectedDialogs;
    QStringList m_expectedWarnings;
    std::unique_ptr<NativeWindow> m_owner;

    // The model of the files
    Catalogue m_catalogue;
    QMap<QString, Translation> m_translations;

    // The model of the plug-in
    int m_host = -1;
    Catalogue m_read;
    Translation m_loaded = Translation::None;
    QList<Dialog> m_dialogs;
};

void tst_random_walk::initTestCase()
{
    Warnings::collect();
    Deployment::clear();
    m_owner = std::make_unique<NativeWindow>(QRect(100, 50, 800, 600));
    m_operator.onDialog = [this](QDialog &dialog) { operate(dialog); };
    for (RecordingMachine &machine : m_machines) {
        machine.onSetLanguage = [this, &machine] { setLanguage(machine); };
        machine.onNotify = [this, &machine] { notifySettingChanged(machine); };
    }
}

void tst_random_walk::walk()
{
    const quint32 seed = Settings::seed();
#ifdef Q_OS_WIN
    const quint32 steps = Settings::stepCount(300); // Opening windows is slow under Wine.
#else
    const quint32 steps = Settings::stepCount(2000);
#endif
    m_random.seed(seed);
    for (quint32 i = 0; i < steps && !m_failed; ++i) {
        step();
        compare("calls", std::exchange(m_calls, {}), std::exchange(m_expectedCalls, {}));
        compare("boxes", m_operator.takeBoxes(), std::exchange(m_expectedBoxes, {}));
        compare("dialogs", m_operator.takeDialogs(), std::exchange(m_expectedDialogs, {}));
        compare("warnings", Warnings::take(), std::exchange(m_expectedWarnings, {}));
        compare("modal", QApplication::activeModalWidget() != nullptr, false);
        compare("cursor", QApplication::overrideCursor() != nullptr, false);
#ifdef Q_OS_WIN
        compare("valid heaps", Heaps::areValid(), true);
#endif
        while (m_log.size() > 50)
            m_log.removeFirst();
        if (m_failed) {
            qInfo("ZENDEL_SEED=%u ZENDEL_STEPS=%u, the last steps:\n%s", seed, i + 1,
                  qPrintable(m_log.join(QLatin1Char('\n'))));
        }
    }
    if (m_plugin.isLoaded())
        unload();
    Deployment::clear();
}

template<typename T>
void tst_random_walk::compare(const char *what, const T &actual, const T &expected)
{
    if (m_failed || actual == expected)
        return;
    m_failed = true; // Later failures may be consequences.
    QString message;
    QDebug(&message).nospace() << what << ": " << actual << ", expected: " << expected;
    QTest::qFail(qPrintable(message), __FILE__, __LINE__);
}

void tst_random_walk::step()
{
    if (oneIn(4))
        changeDisk();
    else if (!m_plugin.isLoaded())
        load();
    else if (m_managers.isEmpty())
        newInterface();
    else if (oneIn(20))
        unload();
    else if (oneIn(8))
        oneIn(2) ? newInterface() : releaseInterface();
    else if (oneIn(3))
        initialize(true);
    else
        showDialog();
}

void tst_random_walk::load()
{
    log(QStringLiteral("load"));
    m_plugin.load();
    compare("style sheet", QFile::exists(QStringLiteral(":/res/qss/style.css")), true);
}

void tst_random_walk::unload()
{
    log(QStringLiteral("unload"));
    while (!m_managers.isEmpty())
        m_plugin.releaseInterface(m_managers.takeLast());
    m_plugin.unload();
    m_host = -1;
    m_read = {};
    m_loaded = Translation::None;
    compare("style sheet", QFile::exists(QStringLiteral(":/res/qss/style.css")), false);
}

void tst_random_walk::newInterface()
{
    log(QStringLiteral("new"));
    m_managers += m_plugin.newInterface();
}

void tst_random_walk::releaseInterface()
{
    log(QStringLiteral("release"));
    IZendelMgr *const mgr = oneIn(4) ? nullptr : any(m_managers);
    if (m_busy.contains(mgr))
        return;
    m_managers.removeOne(mgr);
    m_plugin.releaseInterface(mgr);
}

void tst_random_walk::initialize(bool mayBeNull)
{
    const int host = mayBeNull && oneIn(8) ? -1 : below(3);
    log(QStringLiteral("Init(%1)").arg(host));
    m_host = host;
    if (host >= 0)
        expectInit();
    compare("Init", any(m_managers)->Init(host >= 0 ? &m_machines[host] : nullptr), host >= 0);
}

void tst_random_walk::showDialog()
{
    IZendelMgr *const mgr = any(m_managers);
    const bool overOwner = oneIn(2);
    log(QStringLiteral("ShowSettingsDlg"));
    const bool opens = m_host >= 0;
    if (opens) {
        m_dialogs += expectedDialog();
        m_expectedDialogs += QStringLiteral("DlgSettings");
        m_expectedWarnings += Warnings::unconnectedSlot();
    }
    m_busy += mgr;
    ++m_depth;
    const bool changed = mgr->ShowSettingsDlg(overOwner ? m_owner->handle() : nullptr);
    --m_depth;
    m_busy.removeLast();
    compare("ShowSettingsDlg", changed, opens && m_dialogs.takeLast().changed);
    m_owner->takeInput();
}

void tst_random_walk::operate(QDialog &dialog)
{
    QComboBox &languages = DialogWidgets::comboBox(dialog);
    const auto compareDialog = [&] {
        const Dialog &expected = m_dialogs.constLast();
        compare("texts", DialogWidgets::texts(dialog), expected.texts);
        compare("items", DialogWidgets::languages(dialog), expected.items);
        compare("selected", languages.currentIndex(), expected.selected);
    };
    compareDialog();
    for (int actions = below(4); actions > 0; --actions) {
        if (languages.count() > 0 && oneIn(2)) {
            const int index = below(languages.count());
            log(QStringLiteral("choose %1").arg(index));
            languages.setCurrentIndex(index);
            m_dialogs.last().selected = index;
        } else {
            pressChange(dialog);
        }
        compareDialog(); // Nested actions must not change the open dialog.
    }
    close(dialog);
    compare("visible", dialog.isVisible(), false);
}

void tst_random_walk::pressChange(const QDialog &dialog)
{
    log(QStringLiteral("press"));
    const int id = m_dialogs.constLast().ids.value(m_dialogs.constLast().selected, 0);
    m_expectedCalls += QStringLiteral("%1 SetLanguage(%2)").arg(m_host).arg(id % 256);
    QTest::mouseClick(&DialogWidgets::button(dialog), Qt::LeftButton);
}

void tst_random_walk::setLanguage(RecordingMachine &machine)
{
    m_calls += machine.takeCalls();
    const QCursor *const cursor = QApplication::overrideCursor();
    compare("wait cursor", cursor && cursor->shape() == Qt::WaitCursor, true);
    reenter();

    machine.accepts = oneIn(2);
    log(machine.accepts ? QStringLiteral("accepted") : QStringLiteral("refused"));
    m_dialogs.last().changed = machine.accepts;
    if (machine.accepts) {
        m_expectedCalls += QStringLiteral("%1 NotifySettingChanged").arg(m_host);
    } else {
        m_expectedBoxes += Operator::box("critical", text("PageSetLang", "Error"),
                                         text("PageSetLang", "Change failed!"), "PageSetLang");
    }
}

void tst_random_walk::notifySettingChanged(RecordingMachine &machine)
{
    m_calls += machine.takeCalls();
    reenter();
    m_expectedBoxes += Operator::box("information", text("PageSetLang", "Success"),
                                     text("PageSetLang", "Change successful!"), "PageSetLang");
}

void tst_random_walk::reenter()
{
    ++m_depth;
    const int action = below(8);
    if (action == 0 || action == 2)
        changeDisk();
    if (action == 1 || action == 2)
        initialize(false);
    if (action == 3 && m_dialogs.size() < 3)
        showDialog();
    if (action == 4)
        newInterface();
    if (action == 5)
        releaseInterface();
    --m_depth;
}

void tst_random_walk::close(QDialog &dialog)
{
    const int action = below(4);
    if (action == 0)
        QTest::keyClick(&dialog, Qt::Key_Escape);
    else if (action == 1)
        dialog.close();
    else if (action == 2)
        dialog.accept();
    else
        dialog.reject();
}

void tst_random_walk::changeDisk()
{
    const QStringList folders {QStringLiteral("first"), QStringLiteral("second"),
                               QStringLiteral("chs")};
    if (oneIn(20)) {
        log(QStringLiteral("everything is removed"));
        Deployment::clear();
        m_catalogue = {};
        m_translations.clear();
    } else if (oneIn(2)) {
        writeCatalogue();
    } else {
        writeTranslation(any(folders), Translation(below(6)));
    }
}

Catalogue tst_random_walk::anyCatalogue()
{
    const QList<int> ids {0, 1, 2, 3, 44, 300, 65537};
    const QStringList names {QString(), QStringLiteral("One"), QStringLiteral("Two"),
                             QStringLiteral("简体中文")};
    const QStringList folders {QString(),
                               QStringLiteral(""),
                               QStringLiteral("first"),
                               QStringLiteral("first"),
                               QStringLiteral("second"),
                               QStringLiteral("chs"),
                               QStringLiteral("gone")};
    Catalogue result;
    result.exists = true;
    for (int count = below(5); count > 0; --count)
        result.languages[any(ids)] = {!oneIn(4), any(names), any(folders)};
    if (!oneIn(4))
        result.defaultId = any(ids);
    if (!result.languages.isEmpty() && !oneIn(4))
        result.defaultId = any(result.languages.keys());
    return result;
}

void tst_random_walk::writeCatalogue()
{
    const QString path = Deployment::path(QStringLiteral("Lang/Lang.ini"));
    removeFromDisk(path);
    m_catalogue = {};
    const int kind = below(8);
    log(QStringLiteral("catalogue of kind %1").arg(kind));
    if (kind == 0)
        return;
    if (kind == 1) {
        QVERIFY(QDir().mkpath(path)); // Can't be opened
        return;
    }

    m_catalogue = anyCatalogue();
    QStringList lines;
    for (auto it = m_catalogue.languages.cbegin(); it != m_catalogue.languages.cend(); ++it) {
        const QString key = QStringLiteral("LANG%1_").arg(it.key());
        lines += key + QStringLiteral("NAME=") + it->name;
        if (!it->folder.isNull())
            lines += key + QStringLiteral("FOLDER = ") + it->folder;
        lines += key + QStringLiteral("SHOW=%1").arg(int(it->show));
    }
    if (m_catalogue.defaultId != 0)
        lines += QStringLiteral("DEFAULT=%1").arg(m_catalogue.defaultId);
    lines += QStringLiteral("; DEFAULT=77");
    for (int i = lines.size() - 1; i > 0; --i)
        lines.swapItemsAt(i, below(i + 1));
    lines.prepend(QStringLiteral("[LANG_MGR]"));
    lines += {QStringLiteral("[OTHER]"), QStringLiteral("DEFAULT=78")};
    const QString file = lines.join(QLatin1Char('\n'));

    if (kind <= 3)
        Deployment::writeCatalogue("\xEF\xBB\xBF" + file.toUtf8());
    else if (kind <= 5)
        Deployment::writeCatalogue(Deployment::utf16(QChar(QChar::ByteOrderMark) + file));
    else
        Deployment::writeCatalogue(QTextCodec::codecForName("GB2312")->fromUnicode(file));
}

void tst_random_walk::writeTranslation(const QString &folder, Translation translation)
{
    log(QStringLiteral("translation %1 in %2").arg(int(translation)).arg(folder));
    const QString path = Deployment::path(QStringLiteral("Lang/%1/Zendel.qm").arg(folder));
    removeFromDisk(path);
    m_translations[folder] = translation;
    const QMap<Translation, QString> names {{Translation::First, QStringLiteral("first")},
                                            {Translation::Second, QStringLiteral("second")},
                                            {Translation::Partial, QStringLiteral("partial")}};
    if (names.contains(translation))
        Deployment::installTranslation(folder, names.value(translation));
    else if (translation == Translation::Broken)
        Deployment::writeTranslation(folder, "not a translation");
    else if (translation == Translation::Directory)
        QVERIFY(QDir().mkpath(path));
}

/// Returns the text that the operator sees with the loaded translation.
QString tst_random_walk::text(const char *context, const char *source) const
{
    const QString sourceText = QLatin1String(source);
    if (m_loaded == Translation::First)
        return QStringLiteral("1 ") + sourceText;
    if (m_loaded == Translation::Second)
        return QStringLiteral("2 ") + sourceText;
    const bool isChange =
        qstrcmp(context, "PageSetLang") == 0 && sourceText == QLatin1String("Change");
    if (m_loaded == Translation::Partial && isChange)
        return QStringLiteral("partial Change");
    return QString();
}

/// Reads the files like Init().
void tst_random_walk::expectInit()
{
    m_read = m_catalogue;
    if (!m_read.exists)
        m_expectedBoxes += TranslationBoxes::openFailed();

    const QString defaultPath = m_read.translationPath(m_read.defaultId);
    QString folder = m_read.languages.value(m_read.defaultId).folder;
    if (defaultPath.isEmpty() || m_translations.value(folder) == Translation::None) {
        folder = QStringLiteral("chs");
        if (m_translations.value(folder) == Translation::None)
            m_expectedBoxes += TranslationBoxes::notFound(defaultPath);
    }

    m_loaded = m_translations.value(folder);
    if (m_loaded == Translation::Broken || m_loaded == Translation::Directory)
        m_loaded = Translation::None;
    if (m_loaded == Translation::None) {
        m_expectedBoxes +=
            TranslationBoxes::loadFailed(QStringLiteral("Lang/%1/Zendel.qm").arg(folder));
    }
}

/// Returns what a new dialog shows.
Dialog tst_random_walk::expectedDialog() const
{
    Dialog dialog;
    dialog.texts = QStringList({text("DlgSettings", "Settings"), text("DlgSettings", "Language"),
                                text("PageSetLang", "Change"), text("PageSetLang", "Language:")});
    dialog.ids = m_read.offered();
    for (const int id : qAsConst(dialog.ids))
        dialog.items += m_read.languages.value(id).name;
    dialog.selected = dialog.ids.isEmpty() ? -1 : qMax(0, dialog.ids.indexOf(m_read.defaultId));
    return dialog;
}

QTEST_MAIN(tst_random_walk)
#include "tst_random_walk.moc"
