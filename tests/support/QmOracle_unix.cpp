#include "support/QmOracle_unix.h"

#include "lang/SourceTexts.h"

#include <QTranslator>

#include <algorithm>
#include <csignal>
#include <cstring>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const std::size_t before = std::size_t {2} << 30;
const std::size_t after = std::size_t {4} << 30;

void *reserve(std::size_t size, int protection, int sharing)
{
    void *const memory =
        mmap(nullptr, size, protection, sharing | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        qFatal("Can't reserve memory");
    return memory;
}

void limitProcessorTime()
{
    const itimerval limit {{0, 0}, {1, 0}};
    setitimer(ITIMER_PROF, &limit, nullptr);
}

/// noexcept: Qt throws if a file makes it copy too much, which then ends the process.
bool answers(char *target, const QByteArray &bytes, const QString &directory) noexcept
{
    std::memcpy(target, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    QTranslator translator;
    if (!translator.load(reinterpret_cast<const uchar *>(target), bytes.size(), directory))
        return false;
    for (const SourceText &text : kSourceTexts)
        translator.translate(text.context, text.text);
    return true;
}

} // namespace

namespace QmOracle {

QVector<Verdict> ask(const QList<QByteArray> &files, const QString &directory)
{
    int longest = 0;
    for (const QByteArray &bytes : files)
        longest = std::max(longest, bytes.size());
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t room = (static_cast<std::size_t>(longest) / page + 1) * page;
    const std::size_t size = before + room + after;
    char *const memory = static_cast<char *>(reserve(size, PROT_NONE, MAP_PRIVATE));
    char *const first = memory + before;
    if (mprotect(first, room, PROT_READ | PROT_WRITE) != 0)
        qFatal("Can't use memory");

    // The number of the current file and the verdicts, which are all Died at first.
    const std::size_t sharedSize = sizeof(int) + static_cast<std::size_t>(files.size());
    void *const shared = reserve(sharedSize, PROT_READ | PROT_WRITE, MAP_SHARED);
    auto *const current = static_cast<volatile int *>(shared);
    auto *const verdicts = static_cast<char *>(shared) + sizeof(int);

    for (*current = 0; *current < files.size(); *current = *current + 1) {
        const pid_t child = fork();
        if (child < 0)
            qFatal("Can't fork");
        if (child == 0) {
            const rlimit none {0, 0};
            setrlimit(RLIMIT_CORE, &none);
            for (const int number : {SIGSEGV, SIGBUS, SIGFPE, SIGABRT, SIGPROF}) {
                if (std::signal(number, SIG_DFL) == SIG_ERR) // A sanitizer's only reports.
                    qFatal("Can't set a signal's handler");
            }
            for (; *current < files.size(); *current = *current + 1) {
                limitProcessorTime();
                const QByteArray &bytes = files.at(*current);
                const bool loaded = answers(first + room - bytes.size(), bytes, directory)
                    && answers(first, bytes, directory);
                verdicts[*current] = loaded ? Answered : NotLoaded;
            }
            _exit(0);
        }
        waitpid(child, nullptr, 0); // The file that killed it keeps its verdict.
    }

    QVector<Verdict> result;
    for (int i = 0; i < files.size(); ++i)
        result += static_cast<Verdict>(verdicts[i]);
    munmap(shared, sharedSize);
    munmap(memory, size);
    return result;
}

} // namespace QmOracle
