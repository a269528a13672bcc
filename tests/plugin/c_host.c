// A host in plain C, which knows the plug-in's interfaces only as tables of functions.
// tst_c_host.cpp declares the functions with external linkage.

#include <stdint.h>

#include <windows.h>

// The operations of IZendelMgr. The first slots hold the destructor: one in Microsoft's ABI, and
// two in the Itanium ABI, of which the second frees the object.
enum {
    DELETE_SLOT = DESTRUCTOR_SLOTS - 1,
    INIT_SLOT,
    SHOW_SETTINGS_DLG_SLOT,
};

typedef void (*Function)(void);

typedef struct Machine Machine;
typedef struct Mgr Mgr;

typedef Mgr *(*NewInterface)(void);
typedef void (*ReleaseInterface)(Mgr *mgr);
typedef void (*Delete)(Mgr *self, unsigned flags);
typedef uint8_t (*Init)(Mgr *self, Machine *host);
typedef uint8_t (*ShowSettingsDlg)(Mgr *self, HWND owner);

struct Mgr
{
    const Function *table;
};

typedef struct
{
    void (*NotifySettingChanged)(Machine *self);
    uint8_t (*SetLanguage)(Machine *self, uint8_t langId);
} MachineTable;

struct Machine
{
    const MachineTable *table;
    uint8_t accepts;
    int calls[8]; // A language number, or NOTIFIED
    int count;
};

enum { NOTIFIED = -1 };

static void add_call(Machine *self, int call)
{
    if (self->count < (int)(sizeof(self->calls) / sizeof(self->calls[0])))
        self->calls[self->count++] = call;
}

static void notify_setting_changed(Machine *self)
{
    add_call(self, NOTIFIED);
}

static uint8_t set_language(Machine *self, uint8_t langId)
{
    add_call(self, langId);
    return self->accepts;
}

static const MachineTable machine_table = {notify_setting_changed, set_language};
static Machine machine;

static HMODULE module;
static NewInterface new_interface;
static ReleaseInterface release_interface;

/// Loads the DLL. Returns 0 on failure.
int c_host_load(const wchar_t *file_name)
{
    module = LoadLibraryW(file_name);
    if (!module)
        return 0;
    new_interface = (NewInterface)(Function)GetProcAddress(module, "NewInterface");
    release_interface = (ReleaseInterface)(Function)GetProcAddress(module, "ReleaseInterface");
    return new_interface && release_interface;
}

/// Unloads the DLL. Returns 0 on failure.
int c_host_unload(void)
{
    return FreeLibrary(module);
}

Mgr *c_host_new(void)
{
    return new_interface();
}

void c_host_release(Mgr *mgr)
{
    release_interface(mgr);
}

/// Destroys and frees the manager as the C++ expression "delete mgr" does.
void c_host_delete(Mgr *mgr)
{
    const unsigned free_memory = 1; // For Microsoft's ABI. Other destructors don't read it.
    ((Delete)mgr->table[DELETE_SLOT])(mgr, free_memory);
}

/// Calls Init() with a machine that accepts or refuses changes of language. Returns its result.
int c_host_init(Mgr *mgr, int accepts)
{
    machine.table = &machine_table;
    machine.accepts = accepts != 0;
    machine.count = 0;
    return ((Init)mgr->table[INIT_SLOT])(mgr, &machine);
}

/// Calls Init() with null. Returns its result.
int c_host_init_null(Mgr *mgr)
{
    return ((Init)mgr->table[INIT_SLOT])(mgr, NULL);
}

/// Calls ShowSettingsDlg(). Returns its result.
int c_host_show(Mgr *mgr, HWND owner)
{
    return ((ShowSettingsDlg)mgr->table[SHOW_SETTINGS_DLG_SLOT])(mgr, owner);
}

/// Returns the machine's calls since c_host_init(): the number of the language for SetLanguage(),
/// -1 for NotifySettingChanged().
const int *c_host_calls(int *count)
{
    *count = machine.count;
    return machine.calls;
}
