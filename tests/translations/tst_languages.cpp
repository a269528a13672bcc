// Tests the dialog in each language of the sample deployment with this system's fonts: no text is
// clipped, and no character is missing. Leaves a screenshot of all languages for inspection.

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "lang/SourceTexts.h"
#include "langcheck/draw/TextFit.h"
#include "ui/DlgSettings.h"

#include "support/TestFile.h"

#include <QComboBox>
#include <QDir>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QRawFont>
#include <QScreen>
#include <QTabWidget>
#include <QTest>
#include <QTranslator>

#include <algorithm>
#include <tuple>

QString applicationDir()
{
    return testFile(QStringLiteral(SAMPLE_DIR));
}

namespace {

QString pageText(const char *source)
{
    return CTranslatorMgr::instance()->translator()->translate("PageSetLang", source);
}

QStringList textsThatAreClipped(const QDialog &dialog)
{
    QStringList result;
    const QVector<ShownText> texts = clippedTexts(dialog);
    for (const ShownText &text : texts)
        result += text.text;
    return result;
}

/// Returns true if the widget's font, or a substitute for it, has every character.
bool hasAllGlyphs(const QWidget &widget, const QString &text)
{
    const QList<QGlyphRun> runs = glyphRuns(widget, text);
    return !runs.isEmpty() && std::none_of(runs.begin(), runs.end(), [](const QGlyphRun &run) {
        return run.glyphIndexes().contains(0);
    });
}

const QSize kCell(760, 230);
const int kColumns = 2;

} // namespace

class tst_languages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { QVERIFY(m_sheet.save(testFile(QStringLiteral(SHEET_FILE)))); }
    void textsAreNotClipped_data();
    void textsAreNotClipped();
    void clippedTextsAreDetected();
    void onlyCharactersThatAreCutOffAreTooHigh();
    void missingGlyphsAreDetected();

private:
    void addToSheet(int index, const QStringList &titles, const QList<QPixmap> &screenshots);

    QList<LangEntry> m_languages;
    QImage m_sheet;
};

void tst_languages::initTestCase()
{
    CTranslatorMgr::instance()->loadLangConfig();
    m_languages = CTranslatorMgr::instance()->visibleLanguages();
    QVERIFY(m_languages.size() >= 22);
    const QDir folders(testFile(QStringLiteral(SAMPLE_DIR "/Lang")));
    QCOMPARE(folders.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), m_languages.size());
    const int rows = (m_languages.size() + kColumns - 1) / kColumns;
    m_sheet = QImage(kCell.width() * kColumns, kCell.height() * rows, QImage::Format_RGB32);
    m_sheet.fill(Qt::lightGray);
}

void tst_languages::textsAreNotClipped_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < m_languages.size(); ++i)
        QTest::newRow(qPrintable(m_languages.at(i).folder)) << i;
}

void tst_languages::textsAreNotClipped()
{
    QFETCH(int, index);

    const LangEntry lang = m_languages.at(index);
    QVERIFY(CTranslatorMgr::instance()->translator()->load(lang.qmPath));
    DlgSettings dialog;
    dialog.findChild<QComboBox *>()->setCurrentIndex(index);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(textsThatAreClipped(dialog), QStringList());
    QVERIFY(!languageName(dialog, index).clipped);

    QList<QPixmap> screenshots {dialog.grab()};
    QStringList titles {dialog.windowTitle()};
    for (const auto &[icon, title, text] :
         {std::make_tuple(QMessageBox::Information, "Success", "Change successful!"),
          std::make_tuple(QMessageBox::Critical, "Error", "Change failed!")}) {
        QMessageBox box(icon, pageText(title), pageText(text), QMessageBox::Ok, &dialog);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        const auto *const label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
        QVERIFY(label->width() >= label->sizeHint().width());
        QVERIFY(label->height() >= label->sizeHint().height());
        QVERIFY(box.width() < box.screen()->geometry().width());
        screenshots += box.grab();
        titles += box.windowTitle();
    }

    for (const SourceText &text : kSourceTexts) {
        const QTranslator &translator = *CTranslatorMgr::instance()->translator();
        QVERIFY2(hasAllGlyphs(dialog, translator.translate(text.context, text.text)), text.text);
    }
    QVERIFY(hasAllGlyphs(dialog, lang.name));
    addToSheet(index, titles, screenshots);
}

/// Draws the upper part of the dialog, which has all its contents, and the message boxes next to
/// it, each with its title above.
void tst_languages::addToSheet(int index, const QStringList &titles,
                               const QList<QPixmap> &screenshots)
{
    const QPoint corner(index % kColumns * kCell.width(), index / kColumns * kCell.height());
    const QList<QPoint> positions {QPoint(10, 0), QPoint(420, 0), QPoint(420, 112)};
    QPainter painter(&m_sheet);
    for (int i = 0; i < screenshots.size(); ++i) {
        const QRect title(corner + positions.at(i), QSize(330, 25));
        painter.drawText(title, Qt::AlignVCenter | Qt::AlignLeft, titles.at(i));
        painter.drawPixmap(title.bottomLeft(), screenshots.at(i),
                           i == 0 ? QRect(0, 0, 400, 195) : screenshots.at(i).rect());
    }
}

void tst_languages::clippedTextsAreDetected()
{
    DlgSettings dialog;
    const QString longText(200, QLatin1Char('x'));
    dialog.findChild<QLabel *>(QStringLiteral("label_info1"))->setText(longText);
    QCOMPARE(textsThatAreClipped(dialog), QStringList(longText));
    dialog.findChild<QTabWidget *>()->setTabText(0, longText);
    QCOMPARE(textsThatAreClipped(dialog), QStringList({longText, longText}));
    dialog.setWindowTitle(longText);
    QCOMPARE(textsThatAreClipped(dialog), QStringList({longText, longText, longText}));
    dialog.findChild<QComboBox *>()->setItemText(0, longText);
    QVERIFY(languageName(dialog, 0).clipped);
    QVERIFY(!languageName(dialog, 1).clipped);
}

/// Part of a line's height is empty, more with some fonts than with others.
void tst_languages::onlyCharactersThatAreCutOffAreTooHigh()
{
    const DlgSettings dialog;
    auto *const list = dialog.findChild<QComboBox *>();
    QFont font = list->font();
    font.setPixelSize(26);
    list->setFont(font);
    list->setItemText(0, QStringLiteral("x"));
    QVERIFY(list->fontMetrics().height() > list->height() - 6);
    QVERIFY(!languageName(dialog, 0).clipped);
    list->setItemText(0, QStringLiteral("Ågj"));
    QVERIFY(languageName(dialog, 0).tooTall);
}

void tst_languages::missingGlyphsAreDetected()
{
    const DlgSettings dialog;
    QVERIFY(hasAllGlyphs(dialog, QStringLiteral("x")));
    QVERIFY(!hasAllGlyphs(dialog, QString(QChar(0xE123)))); // In the private use area
}

QTEST_MAIN(tst_languages)
#include "tst_languages.moc"
