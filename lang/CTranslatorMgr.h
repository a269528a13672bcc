#pragma once

/// @file
/// The translator manager and the name of the files that it loads.

#include "lang/LangEntry.h"

#include <QList>
#include <QMap>
#include <QObject>

class QIODevice;
class QTextCodec;
class QTranslator;

/// The file name of every compiled translation.
extern const QString kQmFileName;

/// Owns the plug-in's translator and the language catalogue, Lang/Lang.ini below applicationDir().
/// Exists from the first instance() until the plug-in is unloaded; for the GUI thread only.
///
/// The translator is not installed in the application. Dialogs ask it directly at each use, with
/// their class name as the context. Deliberate: a text that the translation lacks is empty, not
/// English, so that it is noticed.
class CTranslatorMgr : public QObject
{
    Q_OBJECT

public:
    /// Constructs a manager with nothing loaded. The plug-in itself uses only instance().
    explicit CTranslatorMgr(QObject *parent = nullptr);
    ~CTranslatorMgr() override;

    /// Returns the plug-in's manager, which is created on first use; never null.
    static CTranslatorMgr *instance();

    /// Returns the translator, always the same object; owned by the manager, never null.
    QTranslator *translator() const { return m_translator; }

    /// Reloads the catalogue and loads the translation of its default language, or the one in
    /// Lang/chs if that language is unknown, hidden or has no file. Shows failures in message
    /// boxes. If loading fails, the translator is empty.
    void loadTranslator();

    /// Returns the catalogue's DEFAULT, which need not be the number of a language; 0 if no
    /// catalogue is loaded.
    int defaultLangId() const;

    /// Returns the path of a language's translation; empty if the language is unknown or hidden.
    QString langFilePath(int langId) const;

    /// Returns the shown languages that have a name and a folder, in ascending order of number.
    QList<LangEntry> visibleLanguages() const;

    /// Reloads the catalogue, skipping invalid lines. If the file can't be opened, shows a warning
    /// and leaves the catalogue empty and not loaded.
    void loadLangConfig();

    /// Returns the codec for the catalogue @p device: UTF-16LE or UTF-8 if it starts with their
    /// BOM, otherwise GB2312; null if Qt lacks the codec. Does not move the read position.
    static QTextCodec *detectCodec(QIODevice *device);

private:
    QTranslator *m_translator;
    bool m_loaded = false;
    int m_defaultLangId = 0;
    QMap<int, LangEntry> m_langMap;
};
