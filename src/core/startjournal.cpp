// SPDX-License-Identifier: BSD-3-Clause
#include "startjournal.h"

#include "debugoutput_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QObject>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

#ifdef Q_OS_UNIX
#    include <fcntl.h>
#    include <sys/mman.h>
#    include <unistd.h>
#endif

namespace ExtensionSystem {
namespace Internal {

namespace {

// The file is one page: a header, then two slots. A record is written into the
// slot not in use, then the header is pointed at it with one aligned store, so
// that a process that dies at any instant leaves a whole record behind: the
// new one or the one before it.
const char journalMagic[8] = {'E', 'S', 'J', 'R', 'N', 'L', '1', '\0'};
const QString journalSuffix = QStringLiteral(".journal");
const QString unfinishedSuffix = QStringLiteral(".journal.new");

struct JournalHeader
{
    char magic[8];
    quint32 current; // the slot in use, 0 or 1
    quint32 pid;
    quint32 hangMsecs; // written by the watchdog only: how long ...
    quint32 hangSequence; // ... the record of this sequence had run
    quint32 reserved[10];
};

struct JournalSlot
{
    quint32 sequence;
    quint32 phase; // 0: outside plug-in code
    qint64 time; // ms since the epoch, when the phase began
    quint32 nameLength; // in UTF-16 code units
    quint32 fileLength;
    quint32 checksum; // over the fields above and the text
    quint32 reserved;
    // The name, then the file, as the QStrings hold them: copied, not converted.
    char16_t text[(2016 - 32) / sizeof(char16_t)];
};

const int journalSize = 4096;
static_assert(sizeof(JournalHeader) == 64, "the header is 64 bytes");
static_assert(sizeof(JournalHeader) + 2 * sizeof(JournalSlot) == journalSize, "the journal is one page");

// FNV-1a over eight bytes at a time: enough to tell a record from garbage, and
// quick, since every phase of every plug-in writes one; it guards against no one.
const quint64 fnvBasis = 14695981039346656037ull;
const quint64 fnvPrime = 1099511628211ull;

quint32 textHash(const char16_t *text, size_t units)
{
    quint64 hash = fnvBasis;
    const auto *bytes = reinterpret_cast<const uchar *>(text);
    size_t size = units * sizeof(char16_t);
    for (; size >= sizeof(quint64); size -= sizeof(quint64), bytes += sizeof(quint64)) {
        quint64 word;
        std::memcpy(&word, bytes, sizeof word);
        hash = (hash ^ word) * fnvPrime;
    }
    for (; size > 0; --size, ++bytes)
        hash = (hash ^ *bytes) * fnvPrime;
    return quint32(hash ^ (hash >> 32));
}

quint32 checksum(const JournalSlot &slot, quint32 text)
{
    quint64 hash = fnvBasis ^ text;
    for (const quint64 field : {quint64(slot.sequence), quint64(slot.phase), quint64(slot.time),
                                quint64(slot.nameLength), quint64(slot.fileLength)})
        hash = (hash ^ field) * fnvPrime;
    return quint32(hash ^ (hash >> 32));
}

const size_t slotCapacity = sizeof(JournalSlot::text) / sizeof(char16_t);

qint64 steadyMsecs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
}

// The record of a journal's bytes, or why they are not one. A journal that ended
// outside plug-in code gives a null record and no reason.
PluginCrash parseJournal(const QByteArray &bytes, QString *why)
{
    if (bytes.size() < journalSize) {
        *why = bytes.isEmpty() ? QObject::tr("it is empty") : QObject::tr("it is truncated");
        return PluginCrash();
    }
    JournalHeader header;
    std::memcpy(&header, bytes.constData(), sizeof header);
    if (std::memcmp(header.magic, journalMagic, sizeof journalMagic) != 0 || header.current > 1) {
        *why = QObject::tr("it is not a journal");
        return PluginCrash();
    }
    JournalSlot slot;
    std::memcpy(&slot, bytes.constData() + sizeof header + header.current * sizeof slot, sizeof slot);
    if (size_t(slot.nameLength) + slot.fileLength > slotCapacity
        || slot.checksum != checksum(slot, textHash(slot.text, size_t(slot.nameLength) + slot.fileLength))
        || slot.phase > PluginCrash::HandlerCall) {
        *why = QObject::tr("its record is damaged");
        return PluginCrash();
    }
    if (slot.phase == PluginCrash::NoPhase)
        return PluginCrash();
    PluginCrash crash(QString::fromUtf16(slot.text, int(slot.nameLength)),
                      QString::fromUtf16(slot.text + slot.nameLength, int(slot.fileLength)),
                      PluginCrash::Phase(slot.phase), QDateTime::fromMSecsSinceEpoch(slot.time, Qt::UTC));
    if (header.hangSequence == slot.sequence && header.hangMsecs > 0)
        crash.setHangSeconds(int((header.hangMsecs + 999) / 1000));
    return crash;
}

} // namespace

// The journal's file, mapped: a record costs two copies and no system call.
struct JournalFile
{
    QString path;
    int fd = -1;
    uchar *map = nullptr;
    quint32 sequence = 0;

    JournalHeader *header() const { return reinterpret_cast<JournalHeader *>(map); }
    JournalSlot *slot(quint32 index) const
    {
        return reinterpret_cast<JournalSlot *>(map + sizeof(JournalHeader) + index * sizeof(JournalSlot));
    }

    static std::unique_ptr<JournalFile> create(const QDir &directory);
    void write(PluginCrash::Phase phase, qint64 time, const QString &plugin, const QString &file);
    ~JournalFile();
};

#ifdef Q_OS_UNIX

std::unique_ptr<JournalFile> JournalFile::create(const QDir &directory)
{
    // Made and locked under a name no reader takes, then renamed: a reader never
    // meets a journal that is new and not locked yet.
    const QString base =
            directory.absoluteFilePath(QStringLiteral("plugins-%1").arg(QCoreApplication::applicationPid()));
    const QByteArray unfinished = QFile::encodeName(base + unfinishedSuffix);
    std::unique_ptr<JournalFile> journal(new JournalFile);
    journal->path = base + journalSuffix;
    journal->fd = ::open(unfinished.constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (journal->fd < 0)
        return nullptr;
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    void *map = MAP_FAILED;
    if (::fcntl(journal->fd, F_SETLK, &lock) == 0 && ::ftruncate(journal->fd, journalSize) == 0)
        map = ::mmap(nullptr, journalSize, PROT_READ | PROT_WRITE, MAP_SHARED, journal->fd, 0);
    if (map == MAP_FAILED) {
        ::unlink(unfinished.constData());
        return nullptr;
    }
    journal->map = static_cast<uchar *>(map);
    JournalHeader *header = journal->header();
    std::memcpy(header->magic, journalMagic, sizeof journalMagic);
    header->pid = quint32(QCoreApplication::applicationPid());
    journal->write(PluginCrash::NoPhase, 0, QString(), QString());
    if (::rename(unfinished.constData(), QFile::encodeName(journal->path).constData()) != 0) {
        ::unlink(unfinished.constData());
        return nullptr;
    }
    return journal;
}

void JournalFile::write(PluginCrash::Phase phase, qint64 time, const QString &plugin, const QString &file)
{
    const quint32 next = 1 - header()->current;
    JournalSlot *target = slot(next);
    target->sequence = ++sequence;
    target->phase = quint32(phase);
    target->time = time;
    target->nameLength = quint32(qMin<size_t>(size_t(plugin.size()), slotCapacity));
    target->fileLength = quint32(qMin<size_t>(size_t(file.size()), slotCapacity - target->nameLength));
    std::memcpy(target->text, plugin.utf16(), target->nameLength * sizeof(char16_t));
    std::memcpy(target->text + target->nameLength, file.utf16(), target->fileLength * sizeof(char16_t));
    target->checksum = checksum(*target, textHash(target->text, size_t(target->nameLength) + target->fileLength));
    // The record is whole before the header points at it.
    __atomic_store_n(&header()->current, next, __ATOMIC_RELEASE);
}

JournalFile::~JournalFile()
{
    // A clean end: what remains of the run is nothing.
    if (map) {
        ::unlink(QFile::encodeName(path).constData());
        ::munmap(map, journalSize);
    }
    if (fd >= 0)
        ::close(fd);
}

#else

// The journal needs a POSIX system: without one a host simply keeps none.
std::unique_ptr<JournalFile> JournalFile::create(const QDir &)
{
    return nullptr;
}

void JournalFile::write(PluginCrash::Phase, qint64, const QString &, const QString &) { }

JournalFile::~JournalFile() = default;

#endif

// Reports a phase that runs too long, from a thread of its own: the thread the
// phase runs on is the one that is blocked. It sees the journal's top through a
// sequence lock of atomics, and writes only its own two fields of the file.
class HangWatchdog
{
public:
    HangWatchdog(int msecs, JournalHeader *header)
        : interval(msecs)
        , header(header)
        , thread(&HangWatchdog::run, this)
    { }

    ~HangWatchdog()
    {
        {
            std::lock_guard<std::mutex> guard(mutex);
            stopping = true;
        }
        wake.notify_all();
        thread.join();
    }

    void publish(quint32 record, PluginCrash::Phase phase, qint64 began, const QByteArray &plugin)
    {
        sequence.fetch_add(1, std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_release);
        recordSequence.store(record, std::memory_order_relaxed);
        currentPhase.store(int(phase), std::memory_order_relaxed);
        beganAt.store(began, std::memory_order_relaxed);
        const int length = qMin(plugin.size(), int(sizeof(quint64) * name.size()));
        nameLength.store(length, std::memory_order_relaxed);
        for (size_t i = 0; i < name.size() && int(i * sizeof(quint64)) < length; ++i) {
            quint64 word = 0;
            std::memcpy(&word, plugin.constData() + i * sizeof word,
                        size_t(qMin<int>(int(sizeof word), length - int(i * sizeof word))));
            name[i].store(word, std::memory_order_relaxed);
        }
        sequence.fetch_add(1, std::memory_order_release);
    }

    const int interval;

private:
    struct Snapshot
    {
        quint32 record = 0;
        int phase = 0;
        qint64 began = 0;
        QByteArray name;
    };

    Snapshot read() const
    {
        Snapshot snapshot;
        for (;;) {
            const quint32 before = sequence.load(std::memory_order_acquire);
            if (before & 1) {
                std::this_thread::yield();
                continue;
            }
            snapshot.record = recordSequence.load(std::memory_order_relaxed);
            snapshot.phase = currentPhase.load(std::memory_order_relaxed);
            snapshot.began = beganAt.load(std::memory_order_relaxed);
            const int length = nameLength.load(std::memory_order_relaxed);
            std::array<quint64, 16> words;
            for (size_t i = 0; i < words.size(); ++i)
                words[i] = name[i].load(std::memory_order_relaxed);
            std::atomic_thread_fence(std::memory_order_acquire);
            if (sequence.load(std::memory_order_relaxed) == before) {
                snapshot.name = QByteArray(reinterpret_cast<const char *>(words.data()), length);
                return snapshot;
            }
        }
    }

    void run()
    {
        std::unique_lock<std::mutex> lock(mutex);
        quint32 watched = 0;
        qint64 reported = 0;
        while (!stopping) {
            const Snapshot now = read();
            qint64 wait = interval;
            if (now.phase != PluginCrash::NoPhase) {
                if (now.record != watched) {
                    watched = now.record;
                    reported = 0;
                }
                const qint64 elapsed = steadyMsecs() - now.began;
                if (elapsed / interval > reported) {
                    reported = elapsed / interval;
                    report(now, elapsed);
                }
                wait = (reported + 1) * interval - elapsed;
            }
            wake.wait_for(lock, std::chrono::milliseconds(qMax<qint64>(wait, 1)));
        }
    }

    void report(const Snapshot &hung, qint64 elapsed)
    {
        // Seconds first: a note whose sequence is written names its own record.
        __atomic_store_n(&header->hangMsecs, quint32(qMin<qint64>(elapsed, 0xffffffffLL)), __ATOMIC_RELAXED);
        __atomic_store_n(&header->hangSequence, hung.record, __ATOMIC_RELEASE);
        ES_DEBUG_IF_SHOWN() << "[Watchdog] >" << QString::fromUtf8(hung.name) << "has been in"
                            << qPrintable(PluginCrash::phaseName(PluginCrash::Phase(hung.phase))) << "for"
                            << qPrintable(QString::number(elapsed / 1000.0, 'f', 1)) << "s";
    }

    JournalHeader *header;
    std::atomic<quint32> sequence{0};
    std::atomic<quint32> recordSequence{0};
    std::atomic<int> currentPhase{0};
    std::atomic<qint64> beganAt{0};
    std::atomic<int> nameLength{0};
    std::array<std::atomic<quint64>, 16> name{};
    std::mutex mutex;
    std::condition_variable wake;
    bool stopping = false;
    std::thread thread;
};

namespace {

QWeakPointer<StartJournal> &processJournal()
{
    static QWeakPointer<StartJournal> journal;
    return journal;
}

} // namespace

StartJournal::StartJournal() = default;

StartJournal::~StartJournal()
{
    hangWatchdog.reset();
    // The file object's destructor removes the file: the run ended cleanly.
}

QSharedPointer<StartJournal> StartJournal::acquire(const QDir &configDir)
{
    QSharedPointer<StartJournal> journal = processJournal().toStrongRef();
    if (journal)
        return journal;
    std::unique_ptr<JournalFile> file = JournalFile::create(configDir);
    if (!file)
        return journal;
    journal.reset(new StartJournal);
    journal->file = std::move(file);
    processJournal() = journal;
    return journal;
}

QSharedPointer<StartJournal> StartJournal::current()
{
    return processJournal().toStrongRef();
}

QString StartJournal::fileName() const
{
    return file->path;
}

void StartJournal::setWatchdog(int msecs)
{
    if (hangWatchdog && hangWatchdog->interval == msecs)
        return;
    hangWatchdog.reset();
    if (msecs > 0 && file->map) {
        hangWatchdog.reset(new HangWatchdog(msecs, file->header()));
        publish();
    }
}

int StartJournal::watchdog() const
{
    return hangWatchdog ? hangWatchdog->interval : 0;
}

void StartJournal::push(PluginCrash::Phase phase, const QString &plugin, const QString &file)
{
    stack.append({phase, plugin, file, QDateTime::currentMSecsSinceEpoch(), hangWatchdog ? steadyMsecs() : 0});
    publish();
}

void StartJournal::pop()
{
    if (!stack.isEmpty())
        stack.removeLast();
    publish();
}

void StartJournal::publish()
{
    if (!file->map)
        return;
    if (stack.isEmpty()) {
        file->write(PluginCrash::NoPhase, 0, QString(), QString());
        if (hangWatchdog)
            hangWatchdog->publish(file->sequence, PluginCrash::NoPhase, 0, QByteArray());
        return;
    }
    const Entry &top = stack.constLast();
    file->write(top.phase, top.time, top.plugin, top.file);
    if (hangWatchdog)
        hangWatchdog->publish(file->sequence, top.phase, top.began ? top.began : steadyMsecs(), top.plugin.toUtf8());
}

StartJournal::Scope::Scope(PluginCrash::Phase phase, const QString &plugin, const QString &file)
    : journal(StartJournal::current())
{
    if (journal)
        journal->push(phase, plugin, file);
}

StartJournal::Scope::~Scope()
{
    if (journal)
        journal->pop();
}

QList<PluginCrash> StartJournal::finishedRuns(const QDir &configDir, bool take, QStringList *notes)
{
    QList<PluginCrash> crashes;
#ifdef Q_OS_UNIX
    const QSharedPointer<StartJournal> own = current();
    const QString ownPath = own ? own->fileName() : QString();
    const QStringList names =
            configDir.entryList({QLatin1Char('*') + journalSuffix, QLatin1Char('*') + unfinishedSuffix},
                                QDir::Files | QDir::Hidden, QDir::Name);
    QMultiMap<QDateTime, PluginCrash> byTime;
    for (const QString &name : names) {
        const QString path = configDir.absoluteFilePath(name);
        // Closing any descriptor of a file drops this process's lock on it.
        if (path == ownPath)
            continue;
        const QByteArray encoded = QFile::encodeName(path);
        const int fd = ::open(encoded.constData(), (take ? O_RDWR : O_RDONLY) | O_CLOEXEC);
        const auto ignore = [&](const QString &why) {
            if (take) {
                ES_DEBUG_IF_SHOWN() << "[Journal] > ignored" << path << ":" << qPrintable(why);
            } else if (notes) {
                notes->append(QObject::tr("%1 was ignored: %2").arg(path, why));
            }
        };
        if (fd < 0) {
            ignore(QObject::tr("it cannot be opened"));
            continue;
        }
        // A journal whose process still runs is locked: it is that host's, alive.
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        bool alive;
        if (take) {
            alive = ::fcntl(fd, F_SETLK, &lock) != 0;
        } else {
            alive = ::fcntl(fd, F_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
        }
        if (alive) {
            ::close(fd);
            continue;
        }
        if (name.endsWith(unfinishedSuffix)) {
            // A process that died while it made its journal ran no plug-in code.
            if (take)
                ::unlink(encoded.constData());
            ::close(fd);
            continue;
        }
        QByteArray bytes(journalSize, Qt::Uninitialized);
        const ssize_t read = ::pread(fd, bytes.data(), size_t(bytes.size()), 0);
        bytes.resize(read < 0 ? 0 : int(read));
        QString why;
        const PluginCrash crash = parseJournal(bytes, &why);
        if (read < 0)
            ignore(QObject::tr("it cannot be read"));
        else if (!why.isEmpty())
            ignore(why);
        else if (!crash.isNull())
            byTime.insert(crash.time(), crash);
        if (take)
            ::unlink(encoded.constData());
        ::close(fd);
    }
    crashes = byTime.values();
#else
    Q_UNUSED(configDir)
    Q_UNUSED(take)
    Q_UNUSED(notes)
#endif
    return crashes;
}

} // namespace Internal
} // namespace ExtensionSystem
