// Reading image and shape files into lines.
#include "LineReader.h"

#include <QByteArray>
#include <QFile>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

/// Hands out parts of one text as strings that share its memory, which lives as long as any of
/// them; a part that is changed gets memory of its own. A file has hundreds of lines, and this
/// spares an allocation for each.
class SharedText final
{
public:
    explicit SharedText(const QByteArray &bytes)
        : m_text(QString::fromLatin1(bytes))
        , m_begin(reinterpret_cast<char16_t *>(m_text.data()))
    {
    }

    /// Ends the part with a NUL, as every string has one; what stood there is lost.
    QString part(qsizetype begin, qsizetype end)
    {
        if (begin == end)
            return u""_s;
        m_begin[end] = u'\0';
        m_text.data_ptr().d_ptr()->ref();
        return QString(QString::DataPointer(m_text.data_ptr().d_ptr(), m_begin + begin, end - begin));
    }

private:
    QString m_text;
    char16_t *m_begin;
};

QStringList cutIntoLines(const QByteArray &bytes)
{
    QStringList lines;
    SharedText text(bytes);
    const char *const file = bytes.constData();
    for (qsizetype begin = 0; begin < bytes.size();) {
        const auto rest = static_cast<std::size_t>(bytes.size() - begin);
        const auto *const separator = static_cast<const char *>(std::memchr(file + begin, '\n', rest));
        const qsizetype lineEnd = separator == nullptr ? bytes.size() : separator - file;
        qsizetype end = lineEnd;
        while (begin < end && isBlank(file[begin]))
            ++begin;
        while (begin < end && isBlank(file[end - 1]))
            --end;
        lines.append(text.part(begin, end));
        begin = lineEnd + 1;
    }
    return lines;
}

} // namespace

std::optional<QStringList> readLines(const QString &path)
{
    // Not in text mode: that drops carriage returns inside lines; those at line ends are trimmed.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return cutIntoLines(file.readAll());
}
