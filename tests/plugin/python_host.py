"""python_host.py PLUGIN

A host in a process that Microsoft's compiler built: Python for Windows with PyQt5. It calls the
manager over the slots of its virtual function table, and makes such a table for the machine. The
folder Lang next to the executable has the sample deployment's translations.
"""

import ctypes
import faulthandler
import os
import sys
from ctypes import CFUNCTYPE, POINTER, byref, c_bool, c_uint, c_uint8, c_void_p, c_wchar_p

from PyQt5.QtCore import QTimer, qInstallMessageHandler
from PyQt5.QtWidgets import (QApplication, QComboBox, QDialog, QMainWindow, QMessageBox,
                             QPushButton, QTabWidget)

FOLDER = os.path.dirname(sys.executable)
LANGUAGES = {3: ("Deutsch", "de"), 200: ("日本語", "ja"), 300: ("한국어", "ko")}
# Selected language, title, tab, button, message boxes after success and failure
GERMAN = ("Deutsch", "Einstellungen", "Sprache", "Ändern", ("Erfolg", "Änderung erfolgreich."),
          ("Fehler", "Änderung fehlgeschlagen."))
JAPANESE = ("日本語", "設定", "言語", "変更", ("完了", "変更しました。"), ("エラー", "変更できませんでした。"))
NOTIFIED = "notified"
DELETE, INIT, SHOW_SETTINGS_DLG = range(3)  # Slots of IZendelMgr
passed = 0


def check(what, actual, expected):
    global passed
    if actual != expected:
        raise AssertionError(f"{what}: {actual!r}, expected {expected!r}")
    passed += 1


def end(*error):
    sys.__excepthook__(*error)
    os._exit(1)  # Also within the plug-in's event loops


# Handles of windows have only 32 bits, as ctypes passes and returns by default.
user32, kernel32, version = map(ctypes.WinDLL, ("user32", "kernel32", "version"))
kernel32.GetModuleHandleW.restype = c_void_p


class Machine:
    """An object whose table has the functions of IHostMachine, which record the calls."""

    def __init__(self):
        self.calls, self.accepts = [], True
        self.functions = (CFUNCTYPE(None, c_void_p)(self.notify_setting_changed),
                          CFUNCTYPE(c_bool, c_void_p, c_uint8)(self.set_language))
        self.table = (c_void_p * 2)(*(ctypes.cast(slot, c_void_p) for slot in self.functions))
        self.object = c_void_p(ctypes.addressof(self.table))
        self.address = ctypes.addressof(self.object)

    def notify_setting_changed(self, this):
        check("object that is notified", this, self.address)
        self.calls.append(NOTIFIED)

    def set_language(self, this, number):
        check("object that gets the language", this, self.address)
        self.calls.append(number)
        return self.accepts


def call(slot, argument):
    table = ctypes.cast(manager, POINTER(POINTER(c_void_p))).contents
    # A bool is in the lowest byte of the register.
    return CFUNCTYPE(c_uint8, c_void_p, c_void_p)(table[slot])(manager, argument)


def show(owner, operate=None):
    """Operates the dialog; without a function for that, no dialog may open."""
    def opened(dialog):
        check("dialog is expected", operate is not None, True)
        operate(dialog)
        dialog.close()
    timer = when_open(QDialog, opened)
    result = call(SHOW_SETTINGS_DLG, owner)
    check("no dialog has opened", timer.isActive(), operate is None)
    timer.stop()
    return result


def when_open(kind, action):
    def look():
        window = QApplication.activeModalWidget()
        if isinstance(window, kind) and window.isVisible():
            timer.stop()
            action(window)
    timer = QTimer(app, timeout=look)
    timer.start()
    return timer


def load():
    global plugin
    plugin = ctypes.WinDLL(sys.argv[1])
    plugin.NewInterface.restype, plugin.ReleaseInterface.argtypes = c_void_p, [c_void_p]


def unload():
    check("FreeLibrary", kernel32.FreeLibrary(c_void_p(plugin._handle)), 1)
    check("handle of the unloaded DLL", kernel32.GetModuleHandleW("Zendel.dll"), None)


def set_default(number):
    with open(f"{FOLDER}/Lang/Lang.ini", "w", encoding="utf-8-sig") as file:
        print(f"[LANG_MGR]\nDEFAULT={number}", file=file)
        for n, (name, folder) in LANGUAGES.items():
            print(f"LANG{n}_NAME={name}\nLANG{n}_FOLDER={folder}\nLANG{n}_SHOW=1", file=file)


def change(dialog, language, accepts, texts):
    def answer(box):
        check("calls", machine.calls, [language % 256] + [NOTIFIED] * accepts)
        check("icon", box.icon(), QMessageBox.Information if accepts else QMessageBox.Critical)
        check("message box", (box.windowTitle(), box.text()), texts)
        box.button(QMessageBox.Ok).click()
    machine.calls, machine.accepts = [], accepts
    languages = dialog.findChild(QComboBox)
    languages.setCurrentIndex(languages.findData(language))
    timer = when_open(QMessageBox, answer)
    dialog.findChild(QPushButton, "pushButton_change").click()
    check("no message box has opened", timer.isActive(), False)


def run_dialog(texts, owner, *changes):
    """Makes changes (language, accepted by the machine) in the dialog and returns its result."""
    def operate(dialog):
        check("texts", (dialog.findChild(QComboBox).currentText(), dialog.windowTitle(),
                        dialog.findChild(QTabWidget).tabText(0),
                        dialog.findChild(QPushButton, "pushButton_change").text()), texts[:4])
        check("native window is enabled", user32.IsWindowEnabled(native), int(owner != native))
        check("owner is enabled", user32.IsWindowEnabled(owner or main), 0)  # Qt disables main.
        for language, accepts in changes:
            change(dialog, language, accepts, texts[4 if accepts else 5])
    result = show(owner, operate)
    if owner:
        check("owner is enabled afterwards", user32.IsWindowEnabled(owner), 1)
        check("foreground window afterwards", user32.GetForegroundWindow(), owner)
    return result


def check_modules():
    """Prints the files of the process' DLLs and which company made the C++ run-time library."""
    for name in ("python313", "Qt5Core", "Qt5Gui", "Qt5Widgets", "Zendel", "ucrtbase", "msvcp140",
                 "vcruntime140_1", "vcruntime140"):
        file, handle = ctypes.create_unicode_buffer(260), kernel32.GetModuleHandleW(f"{name}.dll")
        kernel32.GetModuleFileNameW(c_void_p(handle), file, len(file))
        print(file.value)
        if name.startswith("Qt"):
            check("file of Qt", file.value, f"{FOLDER}\\PyQt5\\Qt\\bin\\{name}.dll")
    info, company = ctypes.create_string_buffer(10000), c_wchar_p()
    version.GetFileVersionInfoW(file, 0, len(info), info)
    company_name = "\\StringFileInfo\\040904b0\\CompanyName"
    version.VerQueryValueW(info, company_name, byref(company), byref(c_uint()))
    print("    Company:", company.value or "none, so it is Wine's")
    if "ZENDEL_WINE_RUNTIME" in os.environ:  # wine.sh --runtime
        check("company", company.value, "Microsoft Corporation")


sys.excepthook, sys.unraisablehook = end, lambda error: end(*error[:3])
faulthandler.dump_traceback_later(120, exit=True)
messages = set()
qInstallMessageHandler(lambda kind, context, message: messages.add(message.split("(")[0]))
app = QApplication([])
main_window = QMainWindow()
main_window.show()
main = int(main_window.winId())
style = 0x10CF0000  # WS_OVERLAPPEDWINDOW | WS_VISIBLE
native = user32.CreateWindowExW(0, "STATIC", "", style, 9, 9, 300, 200, *[None] * 4)
machine = Machine()
print(sys.version)
check("compiler is Microsoft's", "MSC v." in sys.version, True)

set_default(3)
load()
manager = plugin.NewInterface()
check("Init", call(INIT, machine.address), 1)
for owner in (main, native):
    check("change", run_dialog(GERMAN, owner, (200, True)), 1)
    check("refused change", run_dialog(GERMAN, owner, (3, False)), 0)
check("without owner", run_dialog(GERMAN, None, (200, False), (300, True)), 1)

set_default(200)
check("second Init", call(INIT, machine.address), 1)
check("change after the second Init", run_dialog(JAPANESE, main, (3, True)), 1)
check("Init without a machine", call(INIT, None), 0)
check("ShowSettingsDlg without a machine", show(main), 0)
call(DELETE, 1)  # 1 to free the memory, too
unload()

load()
manager = plugin.NewInterface()
check("Init after loading again", call(INIT, machine.address), 1)
check("change after loading again", run_dialog(JAPANESE, main, (3, True)), 1)
check_modules()
plugin.ReleaseInterface(manager)
unload()
messages.discard("QPixmap::fromWinHICON")  # Wine has no icons for message boxes.
check("messages of Qt", messages,
      {"QMetaObject::connectSlotsByName: No matching signal for on_comboBo_lang_activated"})
print(f"{passed} checks passed")
