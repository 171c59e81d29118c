// The log of the whole process: entries from any thread go to one log file and to the registered listeners.
//
//     Qel::Logger::instance()->out(3, text, __FILE__, __LINE__).endl();
#pragma once

#include <QString>
#include <QtGlobal>

#include <cstddef>
#include <memory>

#ifdef QELLOGGER_BUILD
#define QELLOGGER_EXPORT Q_DECL_EXPORT
#else
#define QELLOGGER_EXPORT Q_DECL_IMPORT
#endif

namespace Qel {

/// The entry that one thread has begun with Logger::out() and completes with endl().
/// Each thread has one of its own; use it only on the thread that began it.
class QELLOGGER_EXPORT LogMessage final
{
public:
    LogMessage(const LogMessage &) = delete;
    LogMessage &operator=(const LogMessage &) = delete;

    /// Completes the entry: it is written to the log file and handed to the listeners.
    /// Does nothing when the entry is complete already.
    void endl() noexcept;

private:
    friend class Logger;
    struct Draft;

    constexpr LogMessage() = default;
    void begin(unsigned char level, const QString &message, const char *sourceFile, int sourceLine);
    void discard() noexcept;

    // Not a smart pointer: without a destructor an entry can still be logged while the thread's
    // objects are being destroyed.
    Draft *m_draft = nullptr;
};

/// The process-wide log. Every operation may be called from any thread, and none lets an exception out;
/// only the very first call of instance() needs memory that may be missing.
///
/// Entries reach the file and every listener in one order, the order in which they were completed.
/// A log file that cannot be written is told once on stderr and otherwise left out; nobody waits for it.
/// Nobody waits for listeners either, unless setMostWaiting() asks for it.
class QELLOGGER_EXPORT Logger final
{
public:
    /// Receives the completed entries.
    ///
    /// Both operations are called on the thread of the application object: inside endl() when the entry is
    /// completed on that thread, else from its event loop. Without an application object they are called
    /// inside endl(), on the calling thread; if another thread is just calling listeners, it takes the entry
    /// over. A listener may log, register and unregister while it is called.
    class QELLOGGER_EXPORT LogListener
    {
    public:
        virtual ~LogListener();

        /// Takes one entry: the name of its level, its local time as "yyyy-MM-dd hh:mm:ss.zzz" and the
        /// message exactly as it was given to out().
        virtual void handleMessage(QString level, QString time, QString message) = 0;

        /// Takes the same entry as the line that stands in the log file, without its line end.
        virtual void handleFormatedMessage(QString line);
    };

    Logger(const Logger &) = delete;
    Logger &operator=(const Logger &) = delete;

    /// Returns the one logger. It is never null and stays usable in destructors of static objects.
    static Logger *instance();

    /// Begins an entry; an entry that this thread has begun and not completed is dropped.
    ///
    /// Levels: 0 emergency, 1 alert, 2 critical, 3 error, 4 warning, 5 notice, 6 system, 7 info; any other
    /// number is debug. The texts are copied.
    LogMessage &out(unsigned char level, QString const &message, char const *sourceFile,
                    int sourceLine) noexcept;

    /// Lets the listener receive every entry that is completed from now on. The listener stays the caller's;
    /// registering it again changes nothing.
    static void registerLogListener(LogListener *listener) noexcept;

    /// Lets the listener receive nothing more, not even entries that wait for delivery.
    /// When the listener is being called on another thread, waits until that call has ended: afterwards the
    /// listener may be destroyed.
    static void unregisterLogListener(LogListener *listener) noexcept;

    /// Lets threads wait in endl() while more than `most` of their entries wait for another thread to call
    /// the listeners; 0, as at first, never. The thread that calls them never waits. Whoever makes that
    /// thread wait for one that logs sets 0 before.
    static void setMostWaiting(std::size_t most) noexcept;

    /// Returns the absolute path of the log file, whether or not the file exists:
    /// QEL/Vantrel/Vantrel.log below $XDG_STATE_HOME or else below ~/.local/state; without a home, below a
    /// folder of the user's among the temporary files.
    static QString getLogFilePath() noexcept;

private:
    friend class LogMessage;
    class Q_DECL_HIDDEN Private;

    Logger();
    ~Logger();

    const std::unique_ptr<Private> d;
};

} // namespace Qel
