// Writing whole files.
#pragma once

#include "FolderListing.h"

#include <QByteArray>
#include <QString>

#include <memory>

class RootFolder;

/// What becomes of a file that lies in the place of a new one.
enum class IfThere {
    Fail,    ///< it stays: EEXIST
    Replace, ///< the new one takes its place when it is whole; a link is replaced, not followed
};

/// When others see a new file.
enum class Appears {
    WhenWhole, ///< where the file system can do that
    AtOnce,    ///< cheaper, in a folder whose files nobody takes for whole yet
};

/// The name of a file that has not taken its place. One that an interruption left is replaced by
/// the next in its folder.
inline constexpr const char *unfinishedFile = ".vantrel.copy";

/// A file below a root that is written once, from its beginning to its end. Its folder is held open
/// meanwhile.
class FileWriter final
{
public:
    /// Opens a new file with these permissions. A file of the same name shows when the content is
    /// written; one that may not be written to, and what is no file, shows at once.
    FileWriter(const RootFolder &root, const QString &path, unsigned mode, IfThere ifThere);
    /// The same in a folder that is open, or says why not.
    FileWriter(std::shared_ptr<const OpenFolder> folder, QByteArray name, unsigned mode, IfThere ifThere,
               Appears appears);
    ~FileWriter();

    FileWriter(FileWriter &&other) noexcept;
    FileWriter(const FileWriter &) = delete;
    FileWriter &operator=(const FileWriter &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    /// The reason of the last failure, an errno.
    int error() const { return m_error; }

    /// Writes the whole content and closes the file. Removes it and returns false where not all
    /// of the content arrived.
    bool write(const char *bytes, qsizetype size);

    /// The same in parts: what is appended is the content when the file is finished. Where either
    /// returns false, the file is closed and removed.
    bool append(const char *bytes, qsizetype size);
    bool finish();
    /// Closes and removes the file, for the reason of an errno.
    void discard(int error);

private:
    void open(Appears appears);
    bool isAsWanted();
    bool nameIt(const QByteArray &name);
    bool takePlace();
    bool close();
    void removeNamed();

    std::shared_ptr<const OpenFolder> m_folder;
    QByteArray m_name;
    unsigned m_mode;
    IfThere m_ifThere;
    int m_descriptor = -1;
    int m_error = 0;
    QByteArray m_nameNow; ///< empty while it has none
};
