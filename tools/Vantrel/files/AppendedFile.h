// Files that grow by rows.
#pragma once

#include <QByteArray>

#include <sys/types.h>

/// A file that text is appended to. The name of such a file can be foreseen, so something else may lie
/// there: only a plain file without a second name takes text, in a folder that is no link, since another
/// name could be that of any file of the user. Nothing is waited for.
class AppendedFile final
{
public:
    AppendedFile() = default;
    ~AppendedFile();
    AppendedFile(const AppendedFile &) = delete;
    AppendedFile &operator=(const AppendedFile &) = delete;

    /// Opens the file of a path, or makes it; the one before is closed. Returns whether it was made.
    bool open(const QByteArray &path);
    void close();

    bool isOpen() const { return m_descriptor >= 0; }
    /// Whether the open file is still the one at its path.
    bool isAtItsPath() const;

    /// Appends a text. What fails is passed over, and so is a file that is not open.
    void append(const char *text, qsizetype size) const;

    /// Whether a file that takes text lies at a path.
    static bool isAt(const QByteArray &path);

private:
    QByteArray m_path;
    int m_descriptor = -1;
    dev_t m_device = 0;
    ino_t m_inode = 0;
};
