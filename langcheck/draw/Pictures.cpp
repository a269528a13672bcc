#include "langcheck/draw/Pictures.h"

#include "lang/CTranslatorMgr.h"
#include "lang/QmFile.h"
#include "lang/SourceTexts.h"
#include "langcheck/Deployment.h"
#include "langcheck/Translation.h"
#include "langcheck/draw/MessageBoxes.h"
#include "langcheck/draw/WindowPicture.h"
#include "ui/DlgSettings.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QFileInfo>
#include <QPainter>
#include <QRawFont>
#include <QRegularExpression>
#include <QTranslator>

#include <algorithm>

namespace {

const int kGap = 10;
const int kMostPictures = 256;

QImage drawUpperPart(DlgSettings &dialog)
{
    dialog.grab({0, 0, 1, 1}); // Lays out the widgets.
    const auto *const list = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    QVector<ShownText> texts = dialogTexts(dialog);
    int bottom = 0;
    if (list->count() > 0)
        texts.prepend(languageName(dialog, list->currentIndex()));
    for (const ShownText &text : qAsConst(texts))
        bottom = std::max(bottom, text.space.bottom());
    return drawWindow(dialog, {dialog.width(), std::min(bottom + 4 * kGap, dialog.height())},
                      texts);
}

/// Returns the language as HTML writes it; empty if it may not be one.
QString languageTag(QString language)
{
    static const QRegularExpression tag(QStringLiteral("^[A-Za-z]{2,3}(-[A-Za-z0-9]{2,8})*$"));
    language.replace(QLatin1Char('_'), QLatin1Char('-'));
    return tag.match(language).hasMatch() ? language : QString();
}

void addFonts(QStringList &fonts, const QWidget &widget, const QString &text)
{
    // Longer texts are damaged, and slow to lay out.
    const QList<QGlyphRun> runs = glyphRuns(widget, text.left(1000));
    for (const QGlyphRun &run : runs) {
        const QString name = run.rawFont().familyName();
        if (!name.isEmpty() && !fonts.contains(name))
            fonts += name;
    }
}

QSize logicalSize(const QImage &image)
{
    return image.size() / image.devicePixelRatio();
}

QSize combinedSize(const LanguagePictures &pictures)
{
    QSize size(kGap, 0);
    for (const QImage &image : {pictures.dialog, pictures.success, pictures.failure}) {
        const QSize one = logicalSize(image);
        size = {size.width() + one.width() + kGap, std::max(size.height(), one.height())};
    }
    return size + QSize(0, 2 * kGap);
}

void drawCombined(QPainter &painter, QPoint corner, const LanguagePictures &pictures)
{
    corner += QPoint(kGap, kGap);
    for (const QImage &image : {pictures.dialog, pictures.success, pictures.failure}) {
        painter.drawImage(corner, image);
        corner.rx() += logicalSize(image).width() + kGap;
    }
}

LanguagePictures drawLanguage(const Report &report, int index)
{
    const LangEntry &language = report.listed.at(index);
    QTranslator &translator = *CTranslatorMgr::instance()->translator();
    const bool fallback = !QFileInfo::exists(language.qmPath);
    const Translation translation =
        loadTranslation(fallback ? fallbackPath(report.applicationDir) : language.qmPath)
            .value_or(Translation());

    DlgSettings dialog;
    dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"))->setCurrentIndex(index);
    LanguagePictures result;
    result.language = language;
    result.translation = translation.fileName;
    result.fallback = fallback;
    result.tag = languageTag(translation.language);
    addFonts(result.fonts, dialog, language.name);
    for (const SourceText &text : kSourceTexts) {
        result.texts += translator.translate(text.context, text.text);
        addFonts(result.fonts, dialog, result.texts.last());
    }
    result.dialog = drawUpperPart(dialog);
    result.success = boxAfterChange(dialog, true).picture;
    result.failure = boxAfterChange(dialog, false).picture;
    return result;
}

/// Draws the list as it opens below the dialog's box, with as many rows as it shows at a time.
void drawOpenList(StartPictures &result, const DlgSettings &dialog)
{
    auto &box = *dialog.findChild<QComboBox *>(QStringLiteral("comboBox_language"));
    const QAbstractItemView &view = *box.view();
    QWidget &popup = *view.window();
    popup.setAttribute(Qt::WA_DontShowOnScreen);
    const bool animated = QApplication::isEffectEnabled(Qt::UI_AnimateCombo);
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false); // It would be on the screen.
    box.showPopup();
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, animated);
    result.list = popup.grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (int row = 0; row < box.count(); ++row) {
        const QRect space = view.visualRect(view.model()->index(row, box.modelColumn()));
        if (space.top() >= 0 && space.bottom() < view.viewport()->height()) {
            if (result.rows == 0)
                result.firstRow = row;
            ++result.rows;
        }
    }
    box.hidePopup();
}

} // namespace

StartPictures drawStart(const Report &report)
{
    const Deployment deployment(report.applicationDir);
    QTranslator &translator = *CTranslatorMgr::instance()->translator();
    if (report.translation.isEmpty())
        translator.load(nullptr, 0); // Empties it.
    else
        loadQmFile(translator, report.translation);
    DlgSettings dialog;
    StartPictures result;
    result.dialog = drawUpperPart(dialog);
    if (!report.listed.isEmpty())
        drawOpenList(result, dialog);
    return result;
}

QVector<LanguagePictures> drawLanguages(const Report &report,
                                        const std::function<void(int, int)> &progress)
{
    const Deployment deployment(report.applicationDir);
    QVector<LanguagePictures> result;
    const int count = std::min(report.listed.size(), kMostPictures);
    for (int i = 0; i < count; ++i) {
        result += drawLanguage(report, i);
        if (progress)
            progress(i + 1, count);
    }
    return result;
}

QImage combined(const LanguagePictures &pictures)
{
    const qreal ratio = pictures.dialog.devicePixelRatio();
    QImage image(combinedSize(pictures) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawCombined(painter, {0, 0}, pictures);
    return image;
}

QImage sheet(const QVector<LanguagePictures> &all)
{
    const int columns = 2;
    QSize size;
    for (const LanguagePictures &pictures : all)
        size = size.expandedTo(combinedSize(pictures));
    const int rows = (all.size() + columns - 1) / columns;
    // Very many are drawn smaller, because the picture would otherwise need much memory. Qt paints
    // up to this height.
    const qreal scale =
        std::min(all.size() > 64 ? 0.5 : 1.0, 32767.0 / std::max(1, rows * size.height()));
    QImage image(QSize(columns * size.width(), rows * size.height()) * scale, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(scale, scale);
    for (int i = 0; i < all.size(); ++i) {
        const QPoint corner(i % columns * size.width(), i / columns * size.height());
        drawCombined(painter, corner, all.at(i));
    }
    return image;
}

QByteArray toPng(const QImage &image)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, "PNG");
    return file.data();
}
