// Any words as the companion's arguments, over a small project. Each line of an input is a word.
#include "CommandLine.h"
#include "Expect.h"
#include "TestProject.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <cstdio>

#include <sys/mman.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

std::FILE *openInMemory()
{
    return fdopen(memfd_create("output", 0), "w+");
}

QByteArray contentOf(std::FILE *stream)
{
    std::fflush(stream);
    const int file = fileno(stream);
    QByteArray bytes(lseek(file, 0, SEEK_END), '\0');
    bytes.truncate(pread(file, bytes.data(), static_cast<std::size_t>(bytes.size()), 0));
    return bytes;
}

/// Takes over what the program prints, while it lives.
class Capture final
{
public:
    Capture()
    {
        std::fflush(stdout);
        std::fflush(stderr);
        stdout = openInMemory();
        stderr = openInMemory();
    }
    ~Capture() { release(); }
    Capture(const Capture &) = delete;
    Capture &operator=(const Capture &) = delete;

    void release()
    {
        if (stdout == m_formerOutput)
            return;
        m_output = contentOf(stdout);
        m_errorOutput = contentOf(stderr);
        std::fclose(stdout);
        std::fclose(stderr);
        stdout = m_formerOutput;
        stderr = m_formerError;
    }

    /// Known after release().
    const QByteArray &output() const { return m_output; }
    const QByteArray &errorOutput() const { return m_errorOutput; }

private:
    std::FILE *m_formerOutput = stdout;
    std::FILE *m_formerError = stderr;
    QByteArray m_output;
    QByteArray m_errorOutput;
};

/// The words of an input, in which no path leads out of the working folder: a run changes what
/// lies there.
QStringList wordsOf(QByteArray input)
{
    input.replace('/', '_').replace("..", "__").replace('\0', '_');
    QStringList words{u"vantrel-cli"_s};
    for (const QByteArray &line : input.split('\n'))
        words.append(QString::fromUtf8(line));
    constexpr qsizetype mostWords = 30;
    return words.mid(0, mostWords);
}

void setUp(const TestProject &folder)
{
    // Names that arguments may have made.
    for (const QString &name : QDir(folder.dir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
        folder.remove(name);
    folder.write(u"p/scr/a.psc"_s, "ID;1;O\nLIB;pump.plb;1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n");
    folder.write(u"p/mac/pump.plb"_s, "ID;1;S\nLIB;x;1;q;OBJ:n\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n");
    folder.write(u"list"_s, "# pumps\npump.plb\n");
    folder.makeFolder(u"p/log"_s);
}

bool asksForColors(const QStringList &words)
{
    return std::any_of(words.begin(), words.end(),
                       [](const QString &word) { return word.endsWith("always"_L1); });
}

bool isComplaint(const QByteArray &line)
{
    return line.startsWith("vantrel-cli: ");
}

bool isKnown(ExitCode code)
{
    return std::any_of(exitCodes.begin(), exitCodes.end(),
                       [code](const ExitCodeRow &row) { return row.code == code; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argumentCount = 1;
    static char name[] = "fuzz";
    static char *arguments[] = {name, nullptr};
    static const QCoreApplication application(argumentCount, arguments);
    static const TestProject folder(u"work"_s);

    const QStringList words = wordsOf(bytesOf(data, size));
    setUp(folder);
    expect(chdir(qPrintable(folder.dir())) == 0, "the working folder is there");

    Capture capture;
    const ExitCode code = runCommandLine(words);
    capture.release();

    expect(isKnown(code), "every exit code is documented");
    const auto expectText = asksForColors(words) ? expectColoredText : expectPlainText;
    expectText(capture.errorOutput());
    if (code == ExitCode::WrongUsage) {
        expect(capture.output().isEmpty(), "wrong usage prints nothing to the output");
        const QByteArrayList complaints = capture.errorOutput().chopped(1).split('\n');
        expect(std::all_of(complaints.begin(), complaints.end(), isComplaint),
               "wrong usage is told line by line, under the program's name");
    } else if (capture.output().startsWith('{') && words.contains(u"--json"_s)) {
        expectJsonLines(capture.output());
    } else {
        expectText(capture.output());
    }
    return 0;
}
