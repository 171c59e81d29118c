// The change log of a run.
#include "ChangeLog.h"

#include "EngineLog.h"
#include "EscapedText.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// The spellings are part of the file format.
constexpr QLatin1StringView header =
    "Status; Image File; Shape File; Image-Object; Replace by Shape-Object; Uminitalisation; Error\n"_L1;

/// A row whose place holders are filled has fewer characters than this. With place holders in each
/// of its fields, some hundred characters would become a row of many megabytes.
constexpr qsizetype filledRowLimit = 1 << 16;

using Fields = std::array<QString, 7>;

Fields fieldsOf(const STBlock &block)
{
    const QString imageObject = withoutTag(block.imageObject);
    QString shapeObject = withoutTag(block.shapeObject);
    if (shapeObject == imageObject)
        shapeObject.clear();
    Fields fields{statusText(block.status), block.imageFile, block.shapeFile, imageObject, shapeObject,
                  block.initText,           block.error};
    // A line end would begin a row that no report stands behind.
    std::transform(fields.begin(), fields.end(), fields.begin(), withAsciiControlsEscaped);
    return fields;
}

bool holdsPlaceHolder(const Fields &fields)
{
    return std::any_of(fields.begin(), fields.end(),
                       [](const QString &field) { return field.contains(u'%'); });
}

/// How long a row becomes when a field takes the place of its next place holders.
qsizetype filledSize(const QString &row, const QString &field)
{
    const qsizetype without = row.arg(QString()).size();
    const qsizetype placeHolders = row.arg(u"x"_s).size() - without;
    return without + placeHolders * field.size();
}

/// The row of these fields; a place holder in a field takes in one of the fields behind it. Nothing
/// where the row would reach its limit on the way: its length is known before it is made.
std::optional<QString> filledRow(const Fields &fields)
{
    QString row = u"%1;%2;%3;%4;%5;%6;%7"_s;
    for (const QString &field : fields) {
        if (filledSize(row, field) >= filledRowLimit)
            return std::nullopt;
        row = row.arg(field);
    }
    return row;
}

void appendAsTheyStand(const Fields &fields, TextBuffer<char> &out)
{
    for (std::size_t index = 0; index < fields.size(); ++index) {
        if (index > 0)
            out.append(fieldSeparator);
        out.append(QStringView(fields[index]));
    }
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
    tellUnfilledRow();
}

void ChangeLog::add(const STBlock &block)
{
    const Fields fields = fieldsOf(block);
    const bool isToBeFilled = holdsPlaceHolder(fields);
    const std::optional<QString> row = isToBeFilled ? filledRow(fields) : std::nullopt;
    if (row)
        m_rows.append(QStringView(*row));
    else
        appendAsTheyStand(fields, m_rows);
    m_rows.append('\n');
    if (isToBeFilled && !row && !m_unfilledScreen)
        m_unfilledScreen = block.imageFile;
}

void ChangeLog::write(const QString &path)
{
    if (m_rows.size() == 0)
        return;
    if (const QByteArray encoded = QFile::encodeName(path); m_path != encoded) {
        close();
        m_path = encoded;
        m_hasToldUnfilledRow = false;
    }
    if (m_descriptor < 0 || !isAtItsPath())
        open();
    writeText(m_rows.data(), m_rows.size());
    m_rows.clear();
}

void ChangeLog::tellUnfilledRow()
{
    const std::optional<QString> screen = std::exchange(m_unfilledScreen, {});
    if (!screen || m_descriptor < 0 || std::exchange(m_hasToldUnfilledRow, true))
        return;
    logWarning(u"A row of the change log would be too long with the place holders in its names filled, "
               "so they were left as they are. The names stand on screen %1"_s.arg(*screen),
               LogPlace::ChangeLog);
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
