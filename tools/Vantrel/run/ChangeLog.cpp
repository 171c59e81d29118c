// The change log of a run.
#include "ChangeLog.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// The spellings are part of the file format.
constexpr QLatin1StringView header =
    "Status; Image File; Shape File; Image-Object; Replace by Shape-Object; Uminitalisation; Error\n"_L1;

void appendRow(const STBlock &block, TextBuffer<char> &out)
{
    const QString imageObject = withoutTag(block.imageObject);
    QString shapeObject = withoutTag(block.shapeObject);
    if (shapeObject == imageObject)
        shapeObject.clear();
    const std::array fields{
        statusText(block.status), block.imageFile, block.shapeFile, imageObject, shapeObject,
        block.initText,           block.error};

    QString row = u"%1;%2;%3;%4;%5;%6;%7"_s;
    if (std::any_of(fields.begin(), fields.end(),
                    [](const QString &field) { return field.contains(u'%'); })) {
        // A placeholder in a field takes in one of the fields behind it.
        for (const QString &field : fields)
            row = row.arg(field);
        out.append(QStringView(row));
    } else {
        for (std::size_t index = 0; index < fields.size(); ++index) {
            if (index > 0)
                out.append(fieldSeparator);
            out.append(QStringView(fields[index]));
        }
    }
    out.append('\n');
}

/// Opens the folder that a log lies in; a link to a folder is none.
int openFolderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    QByteArray folder = slash < 0 ? "."_ba : path.first(slash + 1);
    // With a slash behind it, a link would be followed.
    while (folder.size() > 1 && folder.endsWith('/'))
        folder.chop(1);
    return ::open(folder.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

QByteArray nameIn(const QByteArray &path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}

bool takesRows(const struct stat &status)
{
    return S_ISREG(status.st_mode) && status.st_nlink == 1;
}

bool takesRows(int folder, const QByteArray &name)
{
    struct stat status = {};
    return fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 && takesRows(status);
}

} // namespace

ChangeLog::~ChangeLog()
{
    close();
}

void ChangeLog::append(const STBlock &block, const QString &path)
{
    add(block);
    write(path);
}

void ChangeLog::add(const STBlock &block)
{
    appendRow(block, m_rows);
}

void ChangeLog::write(const QString &path)
{
    if (m_rows.size() == 0)
        return;
    if (const QByteArray encoded = QFile::encodeName(path); m_path != encoded) {
        close();
        m_path = encoded;
    }
    if (m_descriptor < 0 || !isAtItsPath())
        open();
    writeText(m_rows.data(), m_rows.size());
    m_rows.clear();
}

bool ChangeLog::isAtItsPath() const
{
    struct stat status = {};
    return lstat(m_path.constData(), &status) == 0 && status.st_dev == m_device && status.st_ino == m_inode;
}

/// Like the failure to open the log, that of writing it is passed over.
void ChangeLog::writeText(const char *text, qsizetype size) const
{
    if (m_descriptor >= 0) {
        [[maybe_unused]] const ssize_t written = ::write(m_descriptor, text, static_cast<std::size_t>(size));
    }
}

void ChangeLog::open()
{
    constexpr mode_t permissions = 0666;
    constexpr int flags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    close();
    const int folder = openFolderOf(m_path);
    if (folder < 0)
        return;
    const QByteArray name = nameIn(m_path);
    m_descriptor = openat(folder, name.constData(), flags | O_CREAT | O_EXCL, permissions);
    const bool isNew = m_descriptor >= 0;
    // Looked at before as well: some devices act when they are opened.
    if (!isNew && errno == EEXIST && takesRows(folder, name))
        m_descriptor = openat(folder, name.constData(), flags);
    ::close(folder);

    struct stat status = {};
    if (m_descriptor < 0 || fstat(m_descriptor, &status) != 0 || !takesRows(status)) {
        close();
        return;
    }
    m_device = status.st_dev;
    m_inode = status.st_ino;
    if (isNew)
        writeText(header.data(), header.size());
}

void ChangeLog::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

QString withoutTag(const QString &object)
{
    constexpr qsizetype tagLength = 4;
    return object.right(object.size() - tagLength);
}

bool isChangeLog(const QString &path)
{
    const QByteArray encoded = QFile::encodeName(path);
    const int folder = openFolderOf(encoded);
    if (folder < 0)
        return false;
    const bool isLog = takesRows(folder, nameIn(encoded));
    ::close(folder);
    return isLog;
}

void writeChangeLog(const STBlock &block, const QString &path)
{
    ChangeLog().append(block, path);
}
