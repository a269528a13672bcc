// Everything that a host, its operator and its files can do, in random order and from inside each
// other, beside a model that tells what must come of it.
//
// ZENDEL_STEPS is the number of steps, ZENDEL_SEED the seed. With QTEST_FUNCTION_TIMEOUT, in ms, Qt
// Test lets it run for longer than 5 minutes.

#include "plugin/IHostMachine.h"

#include "support/Deployment.h"
#include "support/NativeWindow.h"
#include "support/Operator.h"
#include "support/Plugin.h"
#include "support/Settings.h"
#include "support/TranslationBoxes.h"
#include "support/Warnings.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTextCodec>

#include <functional>
#include <memory>
#include <random>
#include <utility>

namespace {

/// A machine that hands on what the plug-in asks of it.
class Machine : public IHostMachine
{
public:
    virtual ~Machine() = default;

    void NotifySettingChanged() override { onNotify(); }
    bool SetLanguage(std::uint8_t langId) override { return onSetLanguage(langId); }

    std::function<void()> onNotify;
    std::function<bool(int)> onSetLanguage;
};

struct Language
{
    bool show = false;
    QString name;
    QString folder; // Null where the catalogue has no line for it.
};

struct Catalogue
{
    bool isThere = false;
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

/// What lies in the place of a translation, and what the plug-in has loaded.
enum class Translation { None, First, Second, Partial, Broken, Directory };

/// What is to be seen in an open dialog, and what it will return.
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

/// Title, tab, button and label.
QStringList textsOf(const QDialog &dialog)
{
    return {dialog.windowTitle(), dialog.findChild<QTabWidget *>()->tabText(0),
            dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change"))->text(),
            dialog.findChild<QLabel *>(QStringLiteral("label_info1"))->text()};
}

QComboBox &languagesOf(const QDialog &dialog)
{
    return *dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
}

QStringList itemsOf(const QComboBox &box)
{
    QStringList result;
    for (int i = 0; i < box.count(); ++i)
        result += box.itemText(i);
    return result;
}

QString describe(int value)
{
    return QString::number(value);
}

QString describe(const QStringList &value)
{
    return value.join(QStringLiteral(" | "));
}

} // namespace

class tst_random_walk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void walk();

private:
    // Chance
    int below(int limit) { return int(m_random() % quint32(limit)); }
    bool oneIn(int count) { return below(count) == 0; }
    template<typename Container>
    auto any(const Container &container)
    {
        return container.at(below(int(container.size())));
    }
    Catalogue anyCatalogue();

    // What the host does
    void step();
    void load();
    void unload();
    void newInterface();
    void releaseInterface();
    void initialize(bool mayBeNull);
    void showDialog();

    // What comes back to it
    bool setLanguage(int machine, int langId);
    void notifySettingChanged(int machine);
    void somethingInside();

    // What the operator does
    void work(QDialog &dialog);
    void pressChange(const QDialog &dialog);
    void close(QDialog &dialog);

    // What becomes of the files
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

    std::mt19937 m_random {1}; // NOLINT(cert-msc*): it is to be repeatable
    QStringList m_log;
    int m_depth = 0;
    bool m_failed = false;

    Plugin m_plugin {QStringLiteral(PLUGIN_FILE)};
    QList<IZendelMgr *> m_managers;
    QList<IZendelMgr *> m_busy; // With a dialog open
    Machine m_machines[3];
    QStringList m_calls;
    QStringList m_expectedCalls;
    Operator m_operator;
    QStringList m_expectedBoxes;
    QStringList m_expectedDialogs;
    QStringList m_expectedWarnings;
    std::unique_ptr<NativeWindow> m_owner;

    // On the disk
    Catalogue m_catalogue;
    QMap<QString, Translation> m_translations;

    // In the plug-in
    int m_host = -1;
    Catalogue m_read;
    Translation m_spoken = Translation::None;
    QList<Dialog> m_dialogs;
};

void tst_random_walk::initTestCase()
{
    Warnings::collect();
    Deployment::clear();
    m_owner = std::make_unique<NativeWindow>(QRect(100, 50, 800, 600));
    m_operator.onDialog = [this](QDialog &dialog) { work(dialog); };
    for (int i = 0; i < 3; ++i) {
        m_machines[i].onSetLanguage = [this, i](int langId) { return setLanguage(i, langId); };
        m_machines[i].onNotify = [this, i] { notifySettingChanged(i); };
    }
}

void tst_random_walk::walk()
{
    const quint32 seed = Settings::seed();
#ifdef Q_OS_WIN
    const quint32 steps = Settings::stepCount(300); // Windows are slow to open under Wine.
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
        while (m_log.size() > 50)
            m_log.removeFirst();
        if (m_failed) {
            qInfo("ZENDEL_SEED=%u ZENDEL_STEPS=%u, the last steps were\n%s", seed, i + 1,
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
    m_failed = true; // The first one tells; what follows may come of it.
    QTest::qFail(qPrintable(QStringLiteral("%1: %2, expected: %3")
                                .arg(QLatin1String(what), describe(actual), describe(expected))),
                 __FILE__, __LINE__);
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
    m_spoken = Translation::None;
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

void tst_random_walk::work(QDialog &dialog)
{
    const Dialog expected = m_dialogs.constLast();
    QComboBox &languages = languagesOf(dialog);
    compare("texts", textsOf(dialog), expected.texts);
    compare("items", itemsOf(languages), expected.items);
    compare("selected", languages.currentIndex(), expected.selected);
    for (int actions = below(4); actions > 0; --actions) {
        if (languages.count() > 0 && oneIn(2)) {
            const int index = below(languages.count());
            log(QStringLiteral("choose %1").arg(index));
            languages.setCurrentIndex(index);
            m_dialogs.last().selected = index;
        } else {
            pressChange(dialog);
        }
        // Nothing that happens meanwhile changes what stands in the dialog.
        compare("texts", textsOf(dialog), expected.texts);
        compare("items", itemsOf(languages), expected.items);
        compare("selected", languages.currentIndex(), m_dialogs.constLast().selected);
    }
    close(dialog);
    compare("visible", dialog.isVisible(), false);
}

void tst_random_walk::pressChange(const QDialog &dialog)
{
    log(QStringLiteral("press"));
    const int id = m_dialogs.constLast().ids.value(m_dialogs.constLast().selected, 0);
    m_expectedCalls += QStringLiteral("%1 SetLanguage(%2)").arg(m_host).arg(id % 256);
    QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("pushButton_change")),
                      Qt::LeftButton);
}

bool tst_random_walk::setLanguage(int machine, int langId)
{
    m_calls += QStringLiteral("%1 SetLanguage(%2)").arg(machine).arg(langId);
    const QCursor *const cursor = QApplication::overrideCursor();
    compare("wait cursor", cursor && cursor->shape() == Qt::WaitCursor, true);
    somethingInside();

    const bool accepts = oneIn(2);
    log(accepts ? QStringLiteral("accepted") : QStringLiteral("refused"));
    m_dialogs.last().changed = accepts;
    if (accepts) {
        m_expectedCalls += QStringLiteral("%1 NotifySettingChanged").arg(m_host);
    } else {
        m_expectedBoxes += Operator::box("critical", text("PageSetLang", "Error"),
                                         text("PageSetLang", "Change failed!"), "PageSetLang");
    }
    return accepts;
}

void tst_random_walk::notifySettingChanged(int machine)
{
    m_calls += QStringLiteral("%1 NotifySettingChanged").arg(machine);
    somethingInside();
    m_expectedBoxes += Operator::box("information", text("PageSetLang", "Success"),
                                     text("PageSetLang", "Change successful!"), "PageSetLang");
}

void tst_random_walk::somethingInside()
{
    ++m_depth;
    switch (below(8)) {
    case 0:
        changeDisk();
        break;
    case 1:
        initialize(false);
        break;
    case 2:
        changeDisk();
        initialize(false);
        break;
    case 3:
        if (m_dialogs.size() < 3)
            showDialog();
        break;
    case 4:
        newInterface();
        break;
    case 5:
        releaseInterface();
        break;
    default:
        break;
    }
    --m_depth;
}

void tst_random_walk::close(QDialog &dialog)
{
    switch (below(4)) {
    case 0:
        QTest::keyClick(&dialog, Qt::Key_Escape);
        break;
    case 1:
        dialog.close();
        break;
    case 2:
        dialog.accept();
        break;
    default:
        dialog.reject();
    }
}

void tst_random_walk::changeDisk()
{
    const QStringList folders {QStringLiteral("first"), QStringLiteral("second"),
                               QStringLiteral("chs")};
    if (oneIn(20)) {
        log(QStringLiteral("everything vanishes"));
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
    result.isThere = true;
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
        QVERIFY(QDir().mkpath(path)); // Cannot be opened.
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
    switch (translation) {
    case Translation::None:
        break;
    case Translation::First:
        Deployment::installTranslation(folder, QStringLiteral("first"));
        break;
    case Translation::Second:
        Deployment::installTranslation(folder, QStringLiteral("second"));
        break;
    case Translation::Partial:
        Deployment::installTranslation(folder, QStringLiteral("partial"));
        break;
    case Translation::Broken:
        Deployment::writeTranslation(folder, "This is no translation at all.");
        break;
    case Translation::Directory:
        QVERIFY(QDir().mkpath(path));
        break;
    }
}

/// What the operator reads, with the translation that is loaded now.
QString tst_random_walk::text(const char *context, const char *source) const
{
    const QString sourceText = QLatin1String(source);
    if (m_spoken == Translation::First)
        return QStringLiteral("1 ") + sourceText;
    if (m_spoken == Translation::Second)
        return QStringLiteral("2 ") + sourceText;
    if (m_spoken == Translation::Partial && qstrcmp(context, "PageSetLang") == 0
        && qstrcmp(source, "Change") == 0)
        return QStringLiteral("partial Change");
    return QString();
}

/// Reads the files as Init() does it.
void tst_random_walk::expectInit()
{
    m_read = m_catalogue;
    if (!m_read.isThere)
        m_expectedBoxes += TranslationBoxes::openFailed();

    const QString promised = m_read.translationPath(m_read.defaultId);
    QString folder = m_read.languages.value(m_read.defaultId).folder;
    if (promised.isEmpty() || m_translations.value(folder) == Translation::None) {
        folder = QStringLiteral("chs");
        if (m_translations.value(folder) == Translation::None)
            m_expectedBoxes += TranslationBoxes::notFound(promised);
    }

    m_spoken = m_translations.value(folder);
    if (m_spoken == Translation::Broken || m_spoken == Translation::Directory)
        m_spoken = Translation::None;
    if (m_spoken == Translation::None) {
        m_expectedBoxes +=
            TranslationBoxes::loadFailed(QStringLiteral("Lang/%1/Zendel.qm").arg(folder));
    }
}

/// What a dialog that opens now shows.
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
