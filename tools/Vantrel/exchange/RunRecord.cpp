// What a run writes down, so that another process can tell where it ended.
#include "RunRecord.h"

#include "FileIo.h"
#include "FolderTree.h"
#include "RootFolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringTokenizer>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *firstLine = "vantrel run 1";
constexpr const char *lastLine = "end";
constexpr const char *yes = "yes";
constexpr const char *no = "no";

/// A line of a stage file: takes its value, or returns false where that makes no sense.
struct LineRow
{
    const char *key;
    bool (*read)(RunRecord &record, const QByteArray &value);
};

/// A name on one line, readable where it is plain.
QByteArray encoded(const QString &name)
{
    return QFile::encodeName(name).toPercentEncoding("/ !\"#$&'()*+,:;<=>?@[]^`{|}");
}

/// Behind a slash, since the mark of a text's encoding would be taken away at the very beginning.
QString decoded(const QByteArray &value)
{
    return QFile::decodeName('/' + QByteArray::fromPercentEncoding(value)).sliced(1);
}

bool readFlag(bool &flag, const QByteArray &value)
{
    flag = value == yes;
    return value == yes || value == no;
}

bool readStage(RunStage &stage, const QByteArray &value)
{
    const auto row = std::find_if(runStageRows.begin(), runStageRows.end(),
                                  [&value](const RunStageRow &candidate) { return value == candidate.name; });
    if (row == runStageRows.end())
        return false;
    stage = row->stage;
    return true;
}

bool readName(QStringList &names, const QByteArray &value)
{
    names.append(decoded(value));
    return true;
}

/// A path below a folder. One that leads out of it was not written by a run, nor one with a null, at
/// which the system takes it to end.
bool readPath(QStringList &paths, const QByteArray &value)
{
    const QString path = decoded(value);
    paths.append(path);
    for (const QStringView name : QStringTokenizer(path, u'/')) {
        if (name.isEmpty() || name == "."_L1 || name == ".."_L1)
            return false;
    }
    return !path.contains(QChar::Null);
}

/// The name of one folder of the history.
bool readEntry(QString &entry, const QByteArray &value)
{
    QStringList names;
    const bool isPath = readPath(names, value);
    entry = names.first();
    return isPath && !entry.contains(u'/');
}

constexpr std::array lineRows{
    LineRow{"stage",
            [](RunRecord &record, const QByteArray &value) { return readStage(record.state.stage, value); }},
    LineRow{"ended at", [](RunRecord &record,
                           const QByteArray &value) { return readStage(record.state.endedAt, value); }},
    LineRow{"unsaved",
            [](RunRecord &record, const QByteArray &value) { return readPath(record.state.unsaved, value); }},
    LineRow{"program",
            [](RunRecord &record, const QByteArray &value) {
                record.facts.program = decoded(value);
                return true;
            }},
    LineRow{"started",
            [](RunRecord &record, const QByteArray &value) {
                record.facts.started = QDateTime::fromString(QString::fromLatin1(value), Qt::ISODate);
                return record.facts.started.isValid();
            }},
    LineRow{"makes folders",
            [](RunRecord &record, const QByteArray &value) {
                return readFlag(record.facts.makesFolders, value);
            }},
    LineRow{
        "list is whole",
        [](RunRecord &record, const QByteArray &value) { return readFlag(record.facts.listIsWhole, value); }},
    LineRow{"had scr_temp",
            [](RunRecord &record, const QByteArray &value) {
                return readFlag(record.facts.hadTempFolder, value);
            }},
    LineRow{"had scr_bak", [](RunRecord &record,
                              const QByteArray &value) { return readFlag(record.facts.hadBackup, value); }},
    LineRow{"kept runs",
            [](RunRecord &record, const QByteArray &value) {
                bool isNumber = false;
                record.facts.keptRuns = value.toInt(&isNumber);
                return isNumber && record.facts.keptRuns >= 0;
            }},
    LineRow{
        "keeps others",
        [](RunRecord &record, const QByteArray &value) { return readFlag(record.facts.keepsOthers, value); }},
    LineRow{"history", [](RunRecord &record,
                          const QByteArray &value) { return readEntry(record.facts.historyEntry, value); }},
    LineRow{"set aside",
            [](RunRecord &record, const QByteArray &value) {
                return readEntry(record.facts.setAsideEntry, value);
            }},
    LineRow{"shape", [](RunRecord &record,
                        const QByteArray &value) { return readName(record.facts.shapeNames, value); }},
    LineRow{"screen",
            [](RunRecord &record, const QByteArray &value) { return readPath(record.facts.screens, value); }},
    LineRow{"older file", [](RunRecord &record,
                             const QByteArray &value) { return readPath(record.facts.olderFiles, value); }},
    LineRow{"older folder",
            [](RunRecord &record, const QByteArray &value) {
                return readPath(record.facts.olderFolders, value);
            }},
};

bool readLine(RunRecord &record, const QByteArray &line)
{
    const qsizetype colon = line.indexOf(": ");
    const QByteArray key = line.left(colon);
    const auto row = std::find_if(lineRows.begin(), lineRows.end(),
                                  [&key](const LineRow &candidate) { return key == candidate.key; });
    return colon > 0 && row != lineRows.end() && row->read(record, line.sliced(colon + 2));
}

void appendLine(QByteArray &text, const char *key, const QByteArray &value)
{
    text.append(key).append(": ").append(value).append('\n');
}

void appendFlag(QByteArray &text, const char *key, bool flag)
{
    appendLine(text, key, flag ? yes : no);
}

void appendNames(QByteArray &text, const char *key, const QStringList &names)
{
    for (const QString &name : names)
        appendLine(text, key, encoded(name));
}

void appendEntry(QByteArray &text, const char *key, const QString &entry)
{
    if (!entry.isEmpty())
        appendLine(text, key, encoded(entry));
}

void appendStage(QByteArray &text, const char *key, RunStage stage)
{
    appendLine(text, key, rowOf(stage).name);
}

void listOlderFiles(const OpenFolder &tempFolder, RunFacts &facts)
{
    visitTree(tempFolder, [&facts](const TreeEntry &entry) {
        (entry.kind == EntryKind::Folder ? facts.olderFolders : facts.olderFiles)
            .append(QFile::decodeName(entry.path));
    });
}

} // namespace

RunFacts factsOfRun(const QString &projectDir, const QList<QFileInfo> &imageFiles)
{
    const qsizetype folderLength = projectDir.size() + QStringView(u"/scr/").size();
    RunFacts facts;
    facts.program = thisProgram();
    facts.started = QDateTime::currentDateTime();
    for (const QFileInfo &imageFile : imageFiles)
        facts.screens.append(imageFile.filePath().sliced(folderLength));
    const QString tempFolder = projectDir + "/scr_temp"_L1;
    // A run takes a link in its place away, and makes a folder of its own.
    facts.hadTempFolder = mayExist(tempFolder) && !QFileInfo(tempFolder).isSymLink();
    if (facts.hadTempFolder)
        listOlderFiles(RootFolder(projectDir).folder(tempFolder), facts);
    facts.hadBackup = mayExist(projectDir + "/scr_bak"_L1);
    return facts;
}

QByteArray toLines(const RunFacts &facts)
{
    QByteArray text;
    appendLine(text, "program", encoded(facts.program));
    appendLine(text, "started", facts.started.toString(Qt::ISODate).toLatin1());
    appendFlag(text, "makes folders", facts.makesFolders);
    appendFlag(text, "list is whole", facts.listIsWhole);
    appendFlag(text, "had scr_temp", facts.hadTempFolder);
    appendFlag(text, "had scr_bak", facts.hadBackup);
    appendLine(text, "kept runs", QByteArray::number(facts.keptRuns));
    appendFlag(text, "keeps others", facts.keepsOthers);
    appendEntry(text, "history", facts.historyEntry);
    appendEntry(text, "set aside", facts.setAsideEntry);
    appendNames(text, "shape", facts.shapeNames);
    appendNames(text, "screen", facts.screens);
    appendNames(text, "older file", facts.olderFiles);
    appendNames(text, "older folder", facts.olderFolders);
    return text;
}

QByteArray toText(const RunState &state, const QByteArray &factLines)
{
    QByteArray text(firstLine);
    text.append('\n');
    appendStage(text, "stage", state.stage);
    appendStage(text, "ended at", state.endedAt);
    text.append(factLines);
    appendNames(text, "unsaved", state.unsaved);
    return text.append(lastLine).append('\n');
}

std::optional<RunRecord> readRunRecord(const QByteArray &text)
{
    const QByteArray head = QByteArray(firstLine) + '\n';
    const QByteArray foot = '\n' + QByteArray(lastLine) + '\n';
    if (!text.startsWith(head) || !text.endsWith(foot) || text.size() <= head.size() + foot.size())
        return std::nullopt;
    // Line by line: all lines together would take several times the room of the text.
    RunRecord record;
    const qsizetype end = text.size() - foot.size();
    for (qsizetype begin = head.size(); begin <= end;) {
        const qsizetype lineEnd = text.indexOf('\n', begin);
        if (!readLine(record, text.sliced(begin, lineEnd - begin)))
            return std::nullopt;
        begin = lineEnd + 1;
    }
    // Each run says when it started. Without that, the record could not be read where it is written again.
    if (!record.facts.started.isValid())
        return std::nullopt;
    return record;
}

QString thisProgram()
{
    const QString name = QCoreApplication::applicationName();
    return u"%1 %2"_s.arg(name.isEmpty() ? u"vantrel"_s : name, QLatin1StringView(VANTREL_VERSION));
}
