#pragma once

/// @file
/// The translator manager, and the name of the files that it loads.

#include "lang/LangEntry.h"

#include <QList>
#include <QMap>
#include <QObject>

class QIODevice;
class QTextCodec;
class QTranslator;

/// File name of a compiled translation, the same in every language's folder.
extern const QString kQmFileName;

/// Owns the plug-in's translator and the language catalogue, Lang/Lang.ini below the application
/// directory. Lives from the first instance() until the plug-in is unloaded; for the GUI thread
/// only. The translator is never installed into the application: dialogs ask it directly, with
/// their class name as context, and show what comes back, empty where the translation lacks the
/// text. They keep no pointer to it between uses.
class CTranslatorMgr : public QObject
{
    Q_OBJECT

public:
    /// With nothing loaded. The plug-in makes no other than instance().
    explicit CTranslatorMgr(QObject *parent = nullptr);
    ~CTranslatorMgr() override;

    /// The one manager of the process, created on first use; never null.
    static CTranslatorMgr *instance();

    /// The translator, always the same object; owned by the manager, never null.
    QTranslator *translator() const { return m_translator; }

    /// Reads the catalogue again and loads the translation of its default language, or that of
    /// the folder chs where the default is not in the catalogue, is hidden or has no file.
    /// Failures are shown in message boxes; one to load leaves the translator empty.
    void loadTranslator();

    /// The number that the catalogue names as default, which need not be one of its languages;
    /// 0 while no catalogue is loaded.
    int defaultLangId() const;

    /// Path of the translation file of language @p langId; empty if that language is not in the
    /// catalogue or is hidden.
    QString langFilePath(int langId) const;

    /// The languages to offer, in ascending number: those shown that have a name and a folder.
    QList<LangEntry> visibleLanguages() const;

    /// Replaces the catalogue by what the file holds now; leaves it empty and not loaded, after a
    /// warning box, when the file cannot be opened. Lines that make no sense are skipped.
    void loadLangConfig();

    /// Returns the codec that the first bytes of @p device, an opened catalogue, call for: UTF-16LE
    /// or UTF-8 after their BOM, otherwise GB2312. Null if Qt lacks it. Consumes nothing.
    static QTextCodec *detectCodec(QIODevice *device);

private:
    QTranslator *m_translator;
    bool m_loaded = false;
    int m_defaultLangId = 0;
    QMap<int, LangEntry> m_langMap;
};
