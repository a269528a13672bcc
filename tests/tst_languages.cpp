// The dialog in every language of the sample deployment, with the fonts that it gets here: no text
// is clipped, and no character is missing. Leaves a picture of all of them, to be looked at.

#include "lang/ApplicationDir.h"
#include "lang/CTranslatorMgr.h"
#include "tools/langcheck/TextFit.h"
#include "ui/DlgSettings.h"

#include <QComboBox>
#include <QDir>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QRawFont>
#include <QScreen>
#include <QTest>
#include <QTextLayout>
#include <QTranslator>

#include <algorithm>
#include <tuple>

QString applicationDir()
{
    return QStringLiteral(SAMPLE_DIR);
}

namespace {

const char *const kPageTexts[] = {"Change",  "Language:",      "Change successful!",
                                  "Success", "Change failed!", "Error"};

QString pageText(const char *source)
{
    return CTranslatorMgr::instance()->translator()->translate("PageSetLang", source);
}

/// Whether every character is in the font of the widget or in one that stands in for it.
bool hasAllGlyphs(const QWidget &widget, const QString &text)
{
    QTextLayout layout(text, widget.font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    return !runs.isEmpty() && std::none_of(runs.begin(), runs.end(), [](const QGlyphRun &run) {
        return run.glyphIndexes().contains(0);
    });
}

} // namespace

class tst_languages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void textsAreWhole_data();
    void textsAreWhole();
    void tooLongTextsAreNoticed();
    void missingGlyphsAreNoticed();

private:
    void addToSheet(int index, const QString &title, const QList<QPixmap> &pictures);

    QList<LangEntry> m_languages;
    QImage m_sheet;
};

namespace {

const QSize kCell(760, 205);
const int kColumns = 2;

} // namespace

void tst_languages::initTestCase()
{
    CTranslatorMgr::instance()->loadLangConfig();
    m_languages = CTranslatorMgr::instance()->visibleLanguages();
    QVERIFY(m_languages.size() >= 22);
    const int rows = (m_languages.size() + kColumns - 1) / kColumns;
    m_sheet = QImage(kCell.width() * kColumns, kCell.height() * rows, QImage::Format_RGB32);
    m_sheet.fill(Qt::lightGray);
}

void tst_languages::cleanupTestCase()
{
    QVERIFY(m_sheet.save(QStringLiteral(SHEET_FILE)));
}

void tst_languages::textsAreWhole_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < m_languages.size(); ++i)
        QTest::newRow(qPrintable(m_languages.at(i).folder)) << i;
}

void tst_languages::textsAreWhole()
{
    QFETCH(int, index);

    const LangEntry lang = m_languages.at(index);
    QVERIFY(CTranslatorMgr::instance()->translator()->load(lang.qmPath));
    DlgSettings dialog;
    dialog.findChild<QComboBox *>()->setCurrentIndex(index);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(clippedTexts(dialog), QStringList());
    QVERIFY(!nameIsClipped(dialog, index));

    QList<QPixmap> pictures {dialog.grab()};
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
        pictures += box.grab();
    }

    for (const char *const text : kPageTexts)
        QVERIFY2(hasAllGlyphs(dialog, pageText(text)), text);
    QVERIFY(hasAllGlyphs(dialog, dialog.windowTitle()));
    QVERIFY(hasAllGlyphs(dialog, lang.name));
    addToSheet(index, dialog.windowTitle(), pictures);
}

/// The upper part of the dialog, where all is that it shows, and the boxes beside it.
void tst_languages::addToSheet(int index, const QString &title, const QList<QPixmap> &pictures)
{
    const QPoint corner(index % kColumns * kCell.width(), index / kColumns * kCell.height());
    QPainter painter(&m_sheet);
    painter.drawText(QRect(corner, QSize(kCell.width(), 25)).adjusted(10, 0, -10, 0),
                     Qt::AlignVCenter | Qt::AlignLeft, title);
    painter.drawPixmap(corner + QPoint(10, 25), pictures.at(0), QRect(0, 0, 400, 175));
    painter.drawPixmap(corner + QPoint(420, 25), pictures.at(1));
    painter.drawPixmap(corner + QPoint(420, 115), pictures.at(2));
}

void tst_languages::tooLongTextsAreNoticed()
{
    const DlgSettings dialog;
    const QString longText(200, QLatin1Char('x'));
    dialog.findChild<QLabel *>(QStringLiteral("label_info1"))->setText(longText);
    QCOMPARE(clippedTexts(dialog), QStringList(longText));
    dialog.findChild<QComboBox *>()->setItemText(0, longText);
    QVERIFY(nameIsClipped(dialog, 0));
    QVERIFY(!nameIsClipped(dialog, 1));
}

void tst_languages::missingGlyphsAreNoticed()
{
    const DlgSettings dialog;
    QVERIFY(hasAllGlyphs(dialog, QStringLiteral("x")));
    QVERIFY(!hasAllGlyphs(dialog, QString(QChar(0xE123)))); // For private use
}

QTEST_MAIN(tst_languages)
#include "tst_languages.moc"
