// The change log of a run.
#include "ChangeLog.h"

#include "EngineLog.h"
#include "EscapedText.h"
#include "Limits.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// The spellings are part of the file format.
constexpr QLatin1StringView header =
    "Status; Image File; Shape File; Image-Object; Replace by Shape-Object; Uminitalisation; Error\n"_L1;

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
        if (filledSize(row, field) >= longestFilledRow)
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

} // namespace

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
        m_file.close();
        m_path = encoded;
        m_hasToldUnfilledRow = false;
    }
    if ((!m_file.isOpen() || !m_file.isAtItsPath()) && m_file.open(m_path))
        m_file.append(header.data(), header.size());
    m_file.append(m_rows.data(), m_rows.size());
    m_rows.clear();
}

void ChangeLog::tellUnfilledRow()
{
    const std::optional<QString> screen = std::exchange(m_unfilledScreen, {});
    if (!screen || !m_file.isOpen() || std::exchange(m_hasToldUnfilledRow, true))
        return;
    logWarning(u"A row of the change log would be too long with the place holders in its names filled, "
               "so they were left as they are. The names stand on screen %1"_s.arg(*screen),
               LogPlace::ChangeLog);
}

QString withoutTag(const QString &object)
{
    constexpr qsizetype tagLength = 4;
    return object.right(object.size() - tagLength);
}

bool isChangeLog(const QString &path)
{
    return AppendedFile::isAt(QFile::encodeName(path));
}

void writeChangeLog(const STBlock &block, const QString &path)
{
    ChangeLog().append(block, path);
}
