// A file that makes its readers wait.
#pragma once

#include <QString>

/// Holds a regular file: who opens it waits until it is released (at most some 45 seconds, the
/// system's patience).
class HeldFile final
{
public:
    explicit HeldFile(const QString &path);
    ~HeldFile();
    Q_DISABLE_COPY_MOVE(HeldFile)

    /// Whether somebody waits for the file.
    bool hasReader() const;
    /// Returns once somebody waits for the file; false where nobody comes.
    bool waitForReader() const;
    void release();

private:
    int m_descriptor = -1;
};
