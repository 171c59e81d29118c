// Gives the completed entries of all threads their common order, writes them to the log file and calls the
// listeners. spdlog writes and rotates the file; nothing of it shows outside this source.
#include "Logger.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Qel {

namespace {

constexpr std::array levelNames{"emergency"_L1, "alert"_L1,  "critical"_L1, "error"_L1,
                                "warning"_L1,   "notice"_L1, "system"_L1,   "info"_L1};
constexpr QLatin1StringView otherLevelName = "debug"_L1;

constexpr std::size_t maxFileSize = 5'000'000;
constexpr std::size_t keptOlderFiles = 3;

constexpr QLatin1StringView levelName(unsigned char level)
{
    return level < levelNames.size() ? levelNames[level] : otherLevelName;
}

/// Runs the step and drops what it throws: a log must never break what it reports on.
template <typename Step>
void quietly(Step &&step) noexcept
{
    try {
        step();
    } catch (...) {
    }
}

bool wouldSpoilLine(QChar character)
{
    const auto category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

QString escapeSequence(QChar character)
{
    switch (character.unicode()) {
    case u'\n':
        return u"\\n"_s;
    case u'\r':
        return u"\\r"_s;
    case u'\t':
        return u"\\t"_s;
    default:
        return u"\\u%1"_s.arg(uint{character.unicode()}, 4, 16, QChar(u'0'));
    }
}

/// Fits any text onto one line; a backslash stays single, for messages name folders with it.
///     "a<line feed>b\c"  ->  "a\nb\c"
std::string onOneLine(QStringView text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar character : text) {
        if (wouldSpoilLine(character))
            line += escapeSequence(character);
        else
            line += character;
    }
    return line.toStdString();
}

/// Where state lies that no home can hold: below the folder for temporary files, for this user alone.
QString homelessFolder()
{
    return u"%1/vantrel-%2"_s.arg(QDir::tempPath(), QString::number(geteuid()));
}

/// Whether a folder can be written to, or made below one that is there. Nothing is made in the root folder:
/// it is nobody's home, even where a service is told so, nor is one that lies in it and is missing.
bool canHoldState(const QString &folder)
{
    QString there = QDir::cleanPath(folder);
    while (there.size() > 1 && !QFileInfo::exists(there))
        there = QFileInfo(there).path();
    const QByteArray name = QFile::encodeName(there);
    return folder.startsWith(u'/') && there.size() > 1 && QFileInfo(there).isDir() &&
           faccessat(AT_FDCWD, name.constData(), W_OK | X_OK, AT_EACCESS) == 0;
}

QString stateFolder()
{
    const QString configured = qEnvironmentVariable("XDG_STATE_HOME");
    if (configured.startsWith(u'/'))
        return configured;
    const QString home = qEnvironmentVariable("HOME");
    const QString inHome = home + "/.local/state"_L1;
    const bool isHome = home.startsWith(u'/') && QDir::cleanPath(home) != "/"_L1;
    return isHome && canHoldState(inHome) ? inHome : homelessFolder();
}

// What the log tells of a plant is for its user alone.
constexpr mode_t folderForOwner = 0700;
constexpr mode_t fileForOwner = 0600;
constexpr mode_t forOthers = 0077;

/// Makes the missing folders above a file.
void makeFoldersOf(const std::string &path)
{
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        mkdir(path.substr(0, slash).c_str(), folderForOwner);
}

/// Makes the folder below the one for temporary files, where everybody may make one of its name. Throws
/// where it is not this user's own.
void takeHomelessFolder()
{
    const QByteArray path = QFile::encodeName(homelessFolder());
    mkdir(path.constData(), folderForOwner);
    struct stat folder = {};
    const bool isOwn = lstat(path.constData(), &folder) == 0 && S_ISDIR(folder.st_mode) &&
                       folder.st_uid == geteuid() && (folder.st_mode & forOthers) == 0;
    if (!isOwn)
        throw std::runtime_error(path.toStdString() + " is no folder of this user alone");
}

/// Makes a log file where there is none, which no other user may read. Throws where something else than a
/// file is there: a pipe would be waited for, and a link may lead to what is not to be written.
void takeFile(const std::string &path)
{
    makeFoldersOf(path);
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, fileForOwner);
    const int error = descriptor < 0 ? errno : 0;
    struct stat file = {};
    const bool isFile = descriptor >= 0 && fstat(descriptor, &file) == 0 && S_ISREG(file.st_mode);
    // One that an earlier version has made.
    if (isFile && file.st_uid == geteuid() && (file.st_mode & forOthers) != 0)
        fchmod(descriptor, fileForOwner);
    if (descriptor >= 0)
        close(descriptor);
    // A link; a pipe that nobody reads, or a socket.
    const bool isElse = error == ELOOP || error == ENXIO || (error == 0 && !isFile);
    if (isElse)
        throw std::runtime_error(path + " is a link or no file");
}

/// Throws where what was opened is not what lies there: somebody has exchanged it meanwhile.
void refuseWhatWasExchanged(const std::string &path, std::FILE *stream)
{
    struct stat opened = {};
    struct stat lying = {};
    const bool isSame = fstat(fileno(stream), &opened) == 0 && lstat(path.c_str(), &lying) == 0 &&
                        S_ISREG(opened.st_mode) && opened.st_dev == lying.st_dev &&
                        opened.st_ino == lying.st_ino;
    if (!isSame)
        throw std::runtime_error(path + " is a link or no file");
}

/// The rotating log file. It is opened with the first line, so that asking for its path creates nothing.
class LogFile final
{
public:
    const QString &path();
    void write(const std::string &line);

private:
    void open();
    void tellOnce(const std::string &reason);

    QString m_path;
    std::optional<spdlog::logger> m_writer;
    bool m_openTried = false;
    bool m_isOpen = false;
    bool m_lastLineMayBeCut = false;
    bool m_told = false;
};

const QString &LogFile::path()
{
    if (m_path.isEmpty())
        m_path = QFileInfo(stateFolder() + "/QEL/Vantrel/Vantrel.log"_L1).absoluteFilePath();
    return m_path;
}

void LogFile::write(const std::string &line)
{
    if (!std::exchange(m_openTried, true))
        open();
    if (!m_isOpen)
        return;
    const std::string text = std::exchange(m_lastLineMayBeCut, false) ? '\n' + line : line;
    m_writer->log(spdlog::level::info, spdlog::string_view_t(text));
}

void LogFile::open()
try {
    // The sink would write through a null stream once it failed to open the next file of a rotation.
    spdlog::file_event_handlers watch;
    watch.before_open = [](const auto &file) { takeFile(file); };
    watch.after_open = [this](const auto &file, std::FILE *stream) {
        refuseWhatWasExchanged(file, stream);
        m_isOpen = true;
    };
    watch.after_close = [this](const auto &) { m_isOpen = false; };

    if (path().startsWith(homelessFolder() + u'/'))
        takeHomelessFolder();
    const std::string name = QFile::encodeName(path()).toStdString();
    m_writer.emplace("QelLogger", std::make_shared<spdlog::sinks::rotating_file_sink_st>(
                                      name, maxFileSize, keptOlderFiles, false, watch));
    m_writer->set_pattern("%v");
    m_writer->flush_on(spdlog::level::trace);
    m_writer->set_error_handler([this](const std::string &reason) {
        m_lastLineMayBeCut = true;
        tellOnce(reason);
    });
} catch (const std::exception &error) {
    tellOnce(error.what());
}

void LogFile::tellOnce(const std::string &reason)
{
    if (!std::exchange(m_told, true))
        std::fprintf(stderr, "The log file cannot be written: %s\n",
                     onOneLine(QString::fromStdString(reason)).c_str());
}

/// Tells the local time as "yyyy-MM-dd hh:mm:ss.zzz".
class Clock final
{
public:
    std::string now();

private:
    spdlog::pattern_formatter m_format{"%Y-%m-%d %H:%M:%S.%e", spdlog::pattern_time_type::local, ""};
};

std::string Clock::now()
{
    spdlog::memory_buf_t text;
    m_format.format({spdlog::string_view_t(), spdlog::level::info, spdlog::string_view_t()}, text);
    return fmt::to_string(text);
}

/// A completed entry on its way to the listeners.
struct Entry
{
    quint64 number = 0;
    QString level;
    QString time;
    QString message;
    QString line;
};

struct Registration
{
    quint64 id = 0;
    quint64 firstNumber = 0;
    Logger::LogListener *listener = nullptr;
};

} // namespace

struct LogMessage::Draft
{
    unsigned char level = 0;
    QString message;
    QString sourceFile;
    int sourceLine = 0;
};

/// Everything shared between threads, guarded by one mutex. No listener is called under it.
class Logger::Private final
{
public:
    void complete(const LogMessage::Draft &draft);
    void add(LogListener *listener);
    void remove(LogListener *listener);
    void setMostWaiting(std::size_t most);
    QString filePath();

private:
    using Lock = std::unique_lock<std::mutex>;

    void record(const LogMessage::Draft &draft);
    void deliverWaiting();
    void waitForRoom();
    bool hasRoom() const;
    void takeFirst(Lock &lock);
    void deliver(const Entry &entry, Lock &lock);
    template <typename Operation>
    void call(const Registration &receiver, Lock &lock, Operation &&operation);
    std::optional<Registration> nextReceiver(quint64 afterId, quint64 entryNumber) const;
    bool isRegistered(const Registration &registration) const;
    bool isDeliveryThread() const;
    void wakeApplication();
    void onWakeUp();

    static void followApplication();
    void applicationStarted();
    void applicationEnds();

    std::mutex m_mutex;
    LogFile m_file;
    Clock m_clock;
    quint64 m_nextNumber = 0;
    std::deque<Entry> m_waiting;
    std::size_t m_mostWaiting = 0;
    std::condition_variable m_roomWasMade;

    std::vector<Registration> m_registrations;
    quint64 m_lastRegistrationId = 0;

    bool m_delivering = false;
    std::thread::id m_deliverer;
    quint64 m_deliveryEnd = 0;
    LogListener *m_called = nullptr;
    quint64 m_callCount = 0;
    std::thread::id m_caller;
    std::condition_variable m_callEnded;

    QCoreApplication *m_application = nullptr;
    bool m_wakeUpPosted = false;

    static const bool s_followsApplications;
};

// Asking Qt for the application object on other threads would race with its destruction.
const bool Logger::Private::s_followsApplications = (qAddPreRoutine(&Private::followApplication), true);

void Logger::Private::complete(const LogMessage::Draft &draft)
{
    record(draft);
    deliverWaiting();
    waitForRoom();
}

/// After the entry is in the file and on its way: what happened is known even if nobody listens any more.
void Logger::Private::waitForRoom()
{
    Lock lock(m_mutex);
    m_roomWasMade.wait(lock, [this] { return hasRoom(); });
}

/// Whether the calling thread may go on.
bool Logger::Private::hasRoom() const
{
    if (m_mostWaiting == 0 || m_waiting.size() <= m_mostWaiting || m_registrations.empty())
        return true;
    return m_application ? isDeliveryThread() : !m_delivering || m_deliverer == std::this_thread::get_id();
}

void Logger::Private::setMostWaiting(std::size_t most)
{
    {
        const Lock lock(m_mutex);
        m_mostWaiting = most;
    }
    m_roomWasMade.notify_all();
}

/// Number, file and queue are served under one lock: this makes the one order.
void Logger::Private::record(const LogMessage::Draft &draft)
{
    const QLatin1StringView level = levelName(draft.level);
    const std::string place = fmt::format("{}:{}", onOneLine(draft.sourceFile), draft.sourceLine);
    const std::string message = onOneLine(draft.message);

    const Lock lock(m_mutex);
    const std::string time = m_clock.now();
    const std::string line = fmt::format("{} [{}] {} (thread {}) {}", time, level.data(), place,
                                         spdlog::details::os::thread_id(), message);
    const quint64 number = m_nextNumber++;
    m_file.write(line);
    if (!m_registrations.empty())
        m_waiting.push_back(
            {number, level, QString::fromStdString(time), draft.message, QString::fromStdString(line)});
}

/// One delivery runs at a time and takes along what a listener or, without an application, another thread
/// completes meanwhile. It ends before later entries of worker threads, so that the event loop gets its turn
/// however fast they log.
void Logger::Private::deliverWaiting()
{
    Lock lock(m_mutex);
    if (!isDeliveryThread()) {
        wakeApplication();
        return;
    }

    m_deliveryEnd = m_nextNumber;
    if (std::exchange(m_delivering, true))
        return;
    m_deliverer = std::this_thread::get_id();
    while (!m_waiting.empty() && m_waiting.front().number < m_deliveryEnd && isDeliveryThread())
        takeFirst(lock);
    m_delivering = false;
    m_roomWasMade.notify_all();
    wakeApplication();
}

void Logger::Private::takeFirst(Lock &lock)
{
    const Entry entry = std::move(m_waiting.front());
    m_waiting.pop_front();
    // Woken for each entry, the two threads would take turns.
    if (m_waiting.size() == m_mostWaiting / 2)
        m_roomWasMade.notify_all();
    deliver(entry, lock);
}

void Logger::Private::deliver(const Entry &entry, Lock &lock)
{
    quint64 lastId = 0;
    while (const auto receiver = nextReceiver(lastId, entry.number)) {
        lastId = receiver->id;
        call(*receiver, lock, [&entry](LogListener &listener) {
            listener.handleMessage(entry.level, entry.time, entry.message);
        });
        if (isRegistered(*receiver)) {
            call(*receiver, lock,
                 [&entry](LogListener &listener) { listener.handleFormatedMessage(entry.line); });
        }
    }
}

template <typename Operation>
void Logger::Private::call(const Registration &receiver, Lock &lock, Operation &&operation)
{
    m_called = receiver.listener;
    m_caller = std::this_thread::get_id();
    ++m_callCount;

    lock.unlock();
    quietly([&] { operation(*receiver.listener); });
    lock.lock();

    m_called = nullptr;
    m_callEnded.notify_all();
}

/// Looks anew before each call, because listeners come and go while others are called.
std::optional<Registration> Logger::Private::nextReceiver(quint64 afterId, quint64 entryNumber) const
{
    for (const Registration &registration : m_registrations) {
        if (registration.id > afterId && registration.firstNumber <= entryNumber)
            return registration;
    }
    return std::nullopt;
}

bool Logger::Private::isRegistered(const Registration &registration) const
{
    return std::any_of(m_registrations.begin(), m_registrations.end(),
                       [&](const Registration &other) { return other.id == registration.id; });
}

void Logger::Private::add(LogListener *listener)
{
    const Lock lock(m_mutex);
    const bool known = std::any_of(m_registrations.begin(), m_registrations.end(),
                                   [&](const Registration &other) { return other.listener == listener; });
    if (!listener || known)
        return;
    m_registrations.push_back({m_lastRegistrationId + 1, m_nextNumber, listener});
    ++m_lastRegistrationId;
}

void Logger::Private::remove(LogListener *listener)
{
    Lock lock(m_mutex);
    std::erase_if(m_registrations, [&](const Registration &other) { return other.listener == listener; });
    m_roomWasMade.notify_all();
    if (m_called != listener || m_caller == std::this_thread::get_id())
        return;
    const quint64 runningCall = m_callCount;
    m_callEnded.wait(lock, [&] { return !m_called || m_callCount != runningCall; });
}

QString Logger::Private::filePath()
{
    const Lock lock(m_mutex);
    return m_file.path();
}

bool Logger::Private::isDeliveryThread() const
{
    return !m_application || m_application->thread() == QThread::currentThread();
}

/// Called under the lock, which keeps the application alive: its end takes the lock too.
void Logger::Private::wakeApplication()
{
    if (!m_application || m_waiting.empty() || m_wakeUpPosted)
        return;
    QMetaObject::invokeMethod(
        m_application, [this] { quietly([this] { onWakeUp(); }); }, Qt::QueuedConnection);
    m_wakeUpPosted = true;
}

void Logger::Private::onWakeUp()
{
    {
        const Lock lock(m_mutex);
        m_wakeUpPosted = false;
    }
    deliverWaiting();
}

/// Qt calls this for each application object of the process, on its thread.
void Logger::Private::followApplication()
{
    quietly([] { instance()->d->applicationStarted(); });
    qAddPostRoutine([] { quietly([] { instance()->d->applicationEnds(); }); });
}

void Logger::Private::applicationStarted()
{
    const Lock lock(m_mutex);
    m_application = QCoreApplication::instance();
}

/// From here on nothing is posted to the application; what waits for it is delivered while it still exists.
void Logger::Private::applicationEnds()
{
    {
        const Lock lock(m_mutex);
        m_application = nullptr;
        m_wakeUpPosted = false;
    }
    deliverWaiting();
    m_roomWasMade.notify_all();
}

void LogMessage::begin(unsigned char level, const QString &message, const char *sourceFile, int sourceLine)
{
    discard();
    m_draft = new Draft{level, message, QString::fromUtf8(sourceFile), sourceLine};
}

void LogMessage::discard() noexcept
{
    delete std::exchange(m_draft, nullptr);
}

void LogMessage::endl() noexcept
{
    const std::unique_ptr<const Draft> draft(std::exchange(m_draft, nullptr));
    if (draft)
        quietly([&] { Logger::instance()->d->complete(*draft); });
}

Logger::LogListener::~LogListener() = default;

void Logger::LogListener::handleFormatedMessage(QString) {}

Logger::Logger()
    : d(std::make_unique<Private>())
{
}

Logger::~Logger() = default;

Logger *Logger::instance()
{
    // Never deleted, because destructors of static objects log too.
    static auto *const logger = new Logger;
    return logger;
}

LogMessage &Logger::out(unsigned char level, QString const &message, char const *sourceFile,
                        int sourceLine) noexcept
{
    static constinit thread_local LogMessage entry;
    struct DropAtThreadEnd
    {
        ~DropAtThreadEnd() { entry.discard(); }
    };
    static thread_local const DropAtThreadEnd dropAtThreadEnd{};

    quietly([&] { entry.begin(level, message, sourceFile, sourceLine); });
    return entry;
}

void Logger::registerLogListener(LogListener *listener) noexcept
{
    quietly([&] { instance()->d->add(listener); });
}

void Logger::unregisterLogListener(LogListener *listener) noexcept
{
    quietly([&] { instance()->d->remove(listener); });
}

void Logger::setMostWaiting(std::size_t most) noexcept
{
    quietly([&] { instance()->d->setMostWaiting(most); });
}

QString Logger::getLogFilePath() noexcept
{
    QString path;
    quietly([&] { path = instance()->d->filePath(); });
    return path;
}

} // namespace Qel
