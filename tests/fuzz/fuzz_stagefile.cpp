// Any bytes as the text that says how far a run came.
#include "Expect.h"
#include "RunRecord.h"

#include <QFile>

#include <algorithm>
#include <optional>
#include <tuple>

namespace {

/// Whether the system takes a path for one below the folder that it is asked for in, and for the whole of it.
bool staysBelow(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArrayList parts = name.split('/');
    return !name.contains('\0') && std::none_of(parts.cbegin(), parts.cend(), [](const QByteArray &part) {
        return part.isEmpty() || part == "." || part == "..";
    });
}

void expectPathsStayBelow(const RunRecord &record)
{
    const RunFacts &facts = record.facts;
    for (const QStringList &paths :
         {record.state.unsaved, facts.screens, facts.olderFiles, facts.olderFolders})
        expect(std::all_of(paths.cbegin(), paths.cend(), staysBelow), "no path leads out");
    for (const QString &entry : {facts.historyEntry, facts.setAsideEntry}) {
        expect(entry.isEmpty() || staysBelow(entry), "no entry of the history leads out");
        expect(!entry.contains(u'/'), "an entry of the history is one folder");
    }
}

auto stateOf(const RunRecord &record)
{
    const RunState &state = record.state;
    return std::make_tuple(state.stage, state.unsaved, state.endedAt);
}

/// All that a text holds of a run; its times are written to the second.
auto factsOf(const RunRecord &record)
{
    const RunFacts &facts = record.facts;
    return std::make_tuple(facts.program, facts.started.toSecsSinceEpoch(), facts.shapeNames,
                           facts.makesFolders, facts.listIsWhole, facts.hadTempFolder, facts.hadBackup,
                           facts.keptRuns, facts.keepsOthers, facts.historyEntry, facts.setAsideEntry,
                           facts.screens, facts.olderFiles, facts.olderFolders);
}

/// What a recovery writes down again at its own stages is what another one reads.
void expectSameRecordAgain(const RunRecord &record)
{
    const QByteArray text = toText(record.state, toLines(record.facts));
    const std::optional<RunRecord> again = readRunRecord(text);
    expect(again.has_value(), "what is written again can be read");
    expect(stateOf(*again) == stateOf(record), "the state is the same again");
    expect(factsOf(*again) == factsOf(record), "the facts are the same again");
    expect(toText(again->state, toLines(again->facts)) == text, "it is written alike from then on");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text = bytesOf(data, size);
    constexpr std::size_t bytesOfRecord = 1 << 12; // whatever stands in it
    const MemoryMeter meter;
    const std::optional<RunRecord> record = readRunRecord(text);
    expect(meter.bytes() <= 64 * size + bytesOfRecord, "work grows linearly");
    if (!record)
        return 0;
    expectPathsStayBelow(*record);
    expectSameRecordAgain(*record);
    return 0;
}
