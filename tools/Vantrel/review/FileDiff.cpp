// What differs between two versions of a file, line by line.
#include "FileDiff.h"

#include "EditScript.h"
#include "FileIo.h"
#include "Interruption.h"

#include <QByteArrayView>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype contextLines = 3;

/// The lines of a content, each with its line end.
QList<QByteArrayView> linesOf(QByteArrayView content)
{
    QList<QByteArrayView> lines;
    while (!content.isEmpty()) {
        const qsizetype lineEnd = content.indexOf('\n');
        const qsizetype size = lineEnd < 0 ? content.size() : lineEnd + 1;
        lines.append(content.first(size));
        content = content.sliced(size);
    }
    return lines;
}

/// Gives equal lines equal numbers, so that they are compared at the cost of a number.
class LineNumbers final
{
public:
    std::vector<int> of(const QList<QByteArrayView> &lines)
    {
        endIfInterrupted();
        std::vector<int> numbers;
        numbers.reserve(static_cast<std::size_t>(lines.size()));
        std::transform(lines.begin(), lines.end(), std::back_inserter(numbers),
                       [this](QByteArrayView line) { return numberOf(line); });
        return numbers;
    }

private:
    int numberOf(QByteArrayView line)
    {
        const auto next = static_cast<int>(m_numbers.size());
        return m_numbers
            .try_emplace(std::string_view(line.data(), static_cast<std::size_t>(line.size())), next)
            .first->second;
    }

    std::unordered_map<std::string_view, int> m_numbers;
};

/// One step on the way from the old lines to the new ones.
struct Step
{
    char sign;
    QByteArrayView line;
};

QList<Step> stepsBetween(const QList<QByteArrayView> &before, const QList<QByteArrayView> &after)
{
    LineNumbers numbers;
    const std::vector<int> oldNumbers = numbers.of(before);
    const std::vector<int> newNumbers = numbers.of(after);
    QList<Step> steps;
    qsizetype oldLine = 0;
    qsizetype newLine = 0;
    const QByteArray script = editScript(oldNumbers, newNumbers);
    endIfInterrupted();
    for (const char sign : script) {
        steps.append({sign, sign == '+' ? after.at(newLine) : before.at(oldLine)});
        oldLine += sign == '+' ? 0 : 1;
        newLine += sign == '-' ? 0 : 1;
    }
    return steps;
}

/// Removed lines stand before added ones within each change.
void sortChanges(QList<Step> &steps)
{
    const auto isKept = [](const Step &step) { return step.sign == ' '; };
    for (auto first = steps.begin(); first != steps.end();) {
        first = std::find_if_not(first, steps.end(), isKept);
        const auto last = std::find_if(first, steps.end(), isKept);
        std::stable_partition(first, last, [](const Step &step) { return step.sign == '-'; });
        first = last;
    }
}

/// Cuts steps into hunks.
class HunkBuilder final
{
public:
    explicit HunkBuilder(const QList<Step> &steps)
        : m_steps(steps)
    {
    }

    QList<DiffHunk> build()
    {
        qsizetype index = nextChange(0);
        while (index < m_steps.size()) {
            const qsizetype first = std::max(index - contextLines, m_position);
            const qsizetype last = std::min(endOfChanges(index) + contextLines, m_steps.size());
            skipTo(first);
            takeHunk(last);
            index = nextChange(last);
        }
        return m_hunks;
    }

private:
    qsizetype nextChange(qsizetype index) const
    {
        while (index < m_steps.size() && m_steps.at(index).sign == ' ')
            ++index;
        return index;
    }

    /// Behind the last change of a hunk: the next one is too far away to share its context.
    qsizetype endOfChanges(qsizetype index) const
    {
        qsizetype end = index;
        while (index < m_steps.size() && index - end <= 2 * contextLines) {
            end = index;
            while (end < m_steps.size() && m_steps.at(end).sign != ' ')
                ++end;
            index = nextChange(end);
        }
        return end;
    }

    void skipTo(qsizetype index)
    {
        m_oldLine += index - m_position;
        m_newLine += index - m_position;
        m_position = index;
    }

    void takeHunk(qsizetype last)
    {
        DiffHunk hunk;
        const qsizetype oldLine = m_oldLine;
        const qsizetype newLine = m_newLine;
        for (; m_position < last; ++m_position)
            takeStep(m_steps.at(m_position), hunk);
        hunk.before = linesFrom(oldLine, m_oldLine - oldLine);
        hunk.after = linesFrom(newLine, m_newLine - newLine);
        m_hunks.append(hunk);
    }

    void takeStep(const Step &step, DiffHunk &hunk)
    {
        m_oldLine += step.sign == '+' ? 0 : 1;
        m_newLine += step.sign == '-' ? 0 : 1;
        const bool hasLineEnd = step.line.endsWith('\n');
        const QByteArrayView text = hasLineEnd ? step.line.chopped(1) : step.line;
        hunk.lines.append(step.sign + text.toByteArray());
        if (!hasLineEnd)
            hunk.lines.append(noLineEndMark);
    }

    static DiffHunk::Lines linesFrom(qsizetype index, qsizetype count)
    {
        return {count == 0 ? index : index + 1, count};
    }

    const QList<Step> &m_steps;
    QList<DiffHunk> m_hunks;
    qsizetype m_position = 0;
    qsizetype m_oldLine = 0;
    qsizetype m_newLine = 0;
};

QString lineRange(const DiffHunk::Lines &lines)
{
    return lines.count == 1 ? QString::number(lines.start) : u"%1,%2"_s.arg(lines.start).arg(lines.count);
}

qsizetype countLines(const QList<DiffHunk> &hunks, char sign)
{
    qsizetype count = 0;
    for (const DiffHunk &hunk : hunks) {
        count += std::count_if(hunk.lines.cbegin(), hunk.lines.cend(),
                               [sign](const QByteArray &line) { return line.startsWith(sign); });
    }
    return count;
}

/// The content of a file: empty where there is none, nothing where it cannot be read.
std::optional<QByteArray> contentOf(const QString &path)
{
    if (!QFileInfo::exists(path))
        return QByteArray();
    std::optional<FileContent> content = readFile(path);
    return content ? std::optional(std::move(content->bytes)) : std::nullopt;
}

} // namespace

QList<DiffHunk> hunksBetween(const QByteArray &before, const QByteArray &after)
{
    QList<Step> steps = stepsBetween(linesOf(before), linesOf(after));
    sortChanges(steps);
    return HunkBuilder(steps).build();
}

FileComparison compareFiles(const QString &shownPath, const FileVersion &before, const FileVersion &after)
{
    endIfInterrupted();
    const std::optional<QByteArray> oldContent = contentOf(before.path);
    const std::optional<QByteArray> newContent = contentOf(after.path);
    if (!oldContent || !newContent)
        return {.isReadable = false, .diff = {}};
    const bool isAdded = !QFileInfo::exists(before.path);
    const bool isRemoved = !QFileInfo::exists(after.path);
    if (isAdded == isRemoved && *oldContent == *newContent)
        return {};

    using Change = FileDiff::Change;
    FileDiff diff{
        .path = shownPath,
        .beforeName = isAdded ? u"/dev/null"_s : before.shownName,
        .afterName = isRemoved ? u"/dev/null"_s : after.shownName,
        .change = isAdded ? Change::Added : (isRemoved ? Change::Removed : Change::Changed),
        .hunks = hunksBetween(*oldContent, *newContent),
    };
    diff.addedLines = countLines(diff.hunks, '+');
    diff.removedLines = countLines(diff.hunks, '-');
    return {.isReadable = true, .diff = diff};
}

QString hunkHeader(const DiffHunk &hunk)
{
    return u"@@ -%1 +%2 @@"_s.arg(lineRange(hunk.before), lineRange(hunk.after));
}

QLatin1StringView changeName(FileDiff::Change change)
{
    switch (change) {
    case FileDiff::Change::Added:
        return "added"_L1;
    case FileDiff::Change::Removed:
        return "removed"_L1;
    default:
        return "changed"_L1;
    }
}
