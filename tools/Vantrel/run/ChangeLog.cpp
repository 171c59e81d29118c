// The change log of a run.
#include "ChangeLog.h"

#include <QFile>

#include <algorithm>
#include <array>

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
    struct stat status = {};
    const bool exists = ::stat(m_path.constData(), &status) == 0;
    if (m_descriptor < 0 || !exists || status.st_dev != m_device || status.st_ino != m_inode)
        open();
    if (!exists)
        writeText(header.data(), header.size());
    writeText(m_rows.data(), m_rows.size());
    m_rows.clear();
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
    close();
    struct stat status = {};
    m_descriptor = ::open(m_path.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, permissions);
    if (m_descriptor < 0 || fstat(m_descriptor, &status) != 0)
        return;
    m_device = status.st_dev;
    m_inode = status.st_ino;
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

void writeChangeLog(const STBlock &block, const QString &path)
{
    ChangeLog().append(block, path);
}
