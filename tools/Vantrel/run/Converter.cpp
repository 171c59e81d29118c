// The worker that converts a project.
#include "Converter.h"

#include "ConversionRun.h"
#include "EngineLog.h"
#include "FileIo.h"
#include "LineCheck.h"
#include "ObjectCutter.h"
#include "ReportLead.h"
#include "RunReports.h"
#include "ShapeFile.h"
#include "ShapeLibrary.h"
#include "ShapeReferences.h"
#include "ShapeRewriting.h"

#include <QDateTime>
#include <QMutex>
#include <QMutexLocker>
#include <QThread>

#include <algorithm>
#include <cstddef>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

void writeLines(QIODevice &output, const QStringList &lines, const STBlock &range)
{
    const auto last = std::min<qsizetype>(range.lastLine, lines.size() - 1);
    TextBuffer<char> bytes;
    for (qsizetype index = std::max(range.firstLine, 0); index <= last; ++index) {
        bytes.append(QStringView(lines.at(index)));
        bytes.append('\n');
    }
    output.write(bytes.data(), bytes.size());
}

/// Lets records travel through queued connections by the name that the signals use. Once: several
/// threads may make converters at the same time.
void registerRecord()
{
    [[maybe_unused]] static const int type = qRegisterMetaType<Converter::STBlock>("Converter::STBlock");
}

} // namespace

/// Takes settings and starts from the owner's thread, and follows runs on the worker's.
class Converter::Insides final : public RunListener
{
public:
    enum class Threads { OfItsOwn, OfTheCaller };

    Insides(Converter &converter, const QString &projectDir, Threads threads);

    bool hasThread() const { return m_threads == Threads::OfItsOwn; }

    void setProjectDir(const QString &projectDir);
    void setFilterNames(const QSet<QString> &lowerNames);
    void setFolderCreation(FolderCreation creation);
    void setGoesOnFromLeftOver(bool goesOn);
    void setPutsAwayTempFolder(bool putsAway);
    void setKeptRuns(int keptRuns);
    void setKeepsOthers(bool keepsOthers);
    void setLocked(bool isLocked);
    ConversionSettings settings() const;
    QString logFileName() const;
    void createLogFileName(const QString &projectDir);

    void announceStart();
    void cancel();
    bool isUnderWay() const { return m_isUnderWay; }
    bool beginStart();
    void convert();

    const RunReports &reports() const { return m_reports; }
    ReportLead &lead() { return m_lead; }

    QString onFound() override;
    void onProgress(int count, int index) override { Q_EMIT m_converter.sigProgressChanged(count, index); }
    void onFile(const QString &path) override { Q_EMIT m_converter.sigUpdFileName(path); }
    void onReport(const STBlock &report) override;
    bool isStopWanted() override { return m_converter.stopRequested; }

private:
    Converter &m_converter;
    const Threads m_threads;
    QThread m_thread;
    ReportLead m_lead;
    const RunReports m_reports{[this](const STBlock &report) { onReport(report); }};

    // Exchanged between the owner's thread and the worker's: a start may follow a cancelled
    // run at once, so each is copied under the mutex, and a run works on its own copies.
    mutable QMutex m_mutex;
    ConversionSettings m_settings;
    QString m_logFileName;
    // Starts are numbered from 1 on in the order in which they are announced, and begin in it.
    int m_lastAnnounced = 0;
    int m_lastBegun = 0;
    int m_lastCancelled = 0;

    std::atomic<bool> m_isUnderWay{false};
    std::unique_ptr<ConversionRun> m_run; ///< null between runs
};

Converter::Insides::Insides(Converter &converter, const QString &projectDir, Threads threads)
    : m_converter(converter)
    , m_threads(threads)
    , m_thread(threads == Threads::OfItsOwn ? &converter : nullptr)
    , m_settings{.projectDir = projectDir, .filterNames = {}}
{
    registerRecord();
    if (threads == Threads::OfTheCaller)
        return;
    converter.moveToThread(&m_thread);
    m_thread.start(QThread::InheritPriority);
}

void Converter::Insides::setProjectDir(const QString &projectDir)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.projectDir = projectDir;
}

void Converter::Insides::setFilterNames(const QSet<QString> &lowerNames)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.filterNames = lowerNames;
}

void Converter::Insides::setFolderCreation(FolderCreation creation)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.folderCreation = creation;
}

void Converter::Insides::setGoesOnFromLeftOver(bool goesOn)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.goesOnFromLeftOver = goesOn;
}

void Converter::Insides::setPutsAwayTempFolder(bool putsAway)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.putsAwayTempFolder = putsAway;
}

void Converter::Insides::setKeptRuns(int keptRuns)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.keptRuns = keptRuns;
}

void Converter::Insides::setKeepsOthers(bool keepsOthers)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.keepsOthers = keepsOthers;
}

void Converter::Insides::setLocked(bool isLocked)
{
    const QMutexLocker lock(&m_mutex);
    m_settings.isLocked = isLocked;
}

ConversionSettings Converter::Insides::settings() const
{
    const QMutexLocker lock(&m_mutex);
    return m_settings;
}

QString Converter::Insides::logFileName() const
{
    const QMutexLocker lock(&m_mutex);
    return m_logFileName;
}

void Converter::Insides::createLogFileName(const QString &projectDir)
{
    const QString stamp = QDateTime::currentDateTime().toString(u"_yyyy-MM-dd_hh-mm-ss");
    const QString path = u"%1/log/Vantrel%2.csv"_s.arg(projectDir, stamp);
    const QMutexLocker lock(&m_mutex);
    m_logFileName = path;
}

void Converter::Insides::announceStart()
{
    const QMutexLocker lock(&m_mutex);
    ++m_lastAnnounced;
}

void Converter::Insides::cancel()
{
    const QMutexLocker lock(&m_mutex);
    m_lastCancelled = m_lastAnnounced;
    m_converter.stopRequested = true;
}

/// Clears the stop flag. Returns whether the start is still wanted; one that nobody announced is.
bool Converter::Insides::beginStart()
{
    const QMutexLocker lock(&m_mutex);
    m_converter.stopRequested = false;
    if (m_lastBegun == m_lastAnnounced)
        return true;
    return ++m_lastBegun > m_lastCancelled;
}

void Converter::Insides::convert()
{
    if (m_isUnderWay.exchange(true))
        return;
    try {
        m_run = std::make_unique<ConversionRun>(settings(), *this);
        m_run->perform();
    } catch (const std::exception &failure) {
        logError(u"The run was ended: %1"_s.arg(QString::fromLocal8Bit(failure.what())), LogPlace::Run);
    } catch (...) {
        logError(u"The run was ended: an unknown failure"_s, LogPlace::Run);
    }
    m_run.reset();
    m_isUnderWay = false;
    Q_EMIT m_converter.sigConvertEnd();
}

QString Converter::Insides::onFound()
{
    createLogFileName(m_run->projectDir());
    return logFileName();
}

/// The one place at which reports leave the converter.
void Converter::Insides::onReport(const STBlock &report)
{
    m_lead.takeOne();
    Q_EMIT m_converter.sigConvertInfo(report);
}

Converter::Converter()
    : m_insides(std::make_unique<Insides>(*this, QString(), Insides::Threads::OfItsOwn))
{
}

Converter::Converter(QString projectDir)
    : m_insides(std::make_unique<Insides>(*this, projectDir, Insides::Threads::OfTheCaller))
{
}

Converter::~Converter() = default;

bool Converter::hasWorkerThread() const
{
    return m_insides->hasThread();
}

void Converter::setProjectDir(const QString &projectDir)
{
    m_insides->setProjectDir(projectDir);
}

void Converter::setFilterNames(const QSet<QString> &names)
{
    QSet<QString> lowerNames;
    for (const QString &name : names)
        lowerNames.insert(name.toLower());
    m_insides->setFilterNames(lowerNames);
}

void Converter::setMakeFolders(bool makeFolders)
{
    m_insides->setFolderCreation(makeFolders ? FolderCreation::WithParents : FolderCreation::OneLevel);
}

void Converter::setGoesOnFromLeftOver(bool goesOn)
{
    m_insides->setGoesOnFromLeftOver(goesOn);
}

void Converter::setPutsAwayTempFolder(bool putsAway)
{
    m_insides->setPutsAwayTempFolder(putsAway);
}

void Converter::setKeptRuns(int keptRuns)
{
    m_insides->setKeptRuns(keptRuns);
}

void Converter::setKeepsOthers(bool keepsOthers)
{
    m_insides->setKeepsOthers(keepsOthers);
}

void Converter::setLocked(bool isLocked)
{
    m_insides->setLocked(isLocked);
}

QString Converter::logFileName() const
{
    return m_insides->logFileName();
}

// --- Runs ---

void Converter::announceStart()
{
    m_insides->announceStart();
}

void Converter::cancel()
{
    m_insides->cancel();
}

void Converter::limitLead(int most)
{
    m_insides->lead().limit(static_cast<std::size_t>(std::max(most, 0)));
}

void Converter::reportShown()
{
    m_insides->lead().giveOneBack();
}

void Converter::onStopConvert()
{
    stopRequested = true;
}

void Converter::onStartConvert()
{
    if (m_insides->isUnderWay())
        return;
    if (m_insides->beginStart())
        convert();
    else
        Q_EMIT sigConvertEnd();
}

void Converter::convert()
{
    m_insides->convert();
}

void Converter::createLogFileName()
{
    m_insides->createLogFileName(m_insides->settings().projectDir);
}

// --- Image files ---

void Converter::clearBlock(STBlock &block)
{
    ::clearBlock(block);
}

bool Converter::readImageFile(const QString &path, QStringList &lines, QString &errorText)
{
    const std::optional<FileContent> content = readFile(path);
    if (!content) {
        errorText = u"Could not open Image File"_s;
        return false;
    }
    lines = FileLines(content->bytes).toStringList();
    return true;
}

bool Converter::checkFieldCount(const QString &tag, int present, int required, QString &errorText,
                                int lineIndex, bool imageFile) const
{
    return ::checkFieldCount(tag, present, required, errorText, lineIndex,
                             {imageFile ? FileKind::Image : FileKind::Shape, shapeLineOffset});
}

void Converter::reportImageFileError(const QString &path, QString &message)
{
    m_insides->reports().tellImageFileError(path, message);
}

bool Converter::checkImageLines(const QStringList &lines, QString &errorText)
{
    return checkLines(lines, {.kind = FileKind::Image}, errorText);
}

bool Converter::checkShapeLines(const QStringList &lines, QString &errorText)
{
    return checkLines(lines, {FileKind::Shape, shapeLineOffset}, errorText);
}

bool Converter::splitObjects(const QString &imageFile, const QStringList &lines, QList<STBlock> &objects)
{
    // The caller's texts may be those of its old records.
    QList<STBlock> cutObjects;
    ObjectCutter(imageFile, lines, cutObjects).cut();
    objects = std::move(cutObjects);
    return true;
}

void Converter::gatherScatteredParts(QStringList &lines, QList<STBlock> &objects)
{
    gatherParts(lines, objects);
}

void Converter::readShapeReferences(const QStringList &lines, QList<STBlock> &objects)
{
    readReferences(lines, objects);
}

// --- Shape files ---

bool Converter::openShapeFile(const QString &path, QStringList &lines, QString &errorText)
{
    const std::optional<ShapeFile> file = readShapeFile(path, errorText);
    if (!file)
        return false;
    lines = file->lines.toStringList();
    shapeLineOffset = file->lineOffset;
    return true;
}

bool Converter::parseShapeLines(const QStringList &lines, STBlock &shape)
{
    ShapeLibrary library(m_insides->settings().projectDir);
    parseShape(lines, library, shape);
    return true;
}

void Converter::placeShapeLines(QStringList &lines, const STBlock &target, const STBlock &shape)
{
    placeLines(lines, target, shape);
}

void Converter::rebaseShapeLines(QStringList &lines, const QString &fromPrefix, const QString &toPrefix,
                                 int xShift, int yShift)
{
    rebaseLines(lines, fromPrefix, toPrefix, {xShift, yShift});
}

void Converter::fitShapeLines(QStringList &lines, const STBlock &object, const STBlock &shape)
{
    placeShapeLines(lines, object, shape);
    const QPoint shift = displacementOf(object.rect, shape.rect).centre;
    rebaseShapeLines(lines, shape.imageObject, object.initText, shift.x(), shift.y());
}

void Converter::reportShapeFileError(QIODevice &output, STBlock &object, const QStringList &imageLines,
                                     const QString &shapeFile, const QString &errorText,
                                     QStringList &failedShapeFiles)
{
    // Before the list grows, of which the texts may be a part.
    const QString name = shapeFile; // NOLINT(performance-unnecessary-copy-initialization)
    const QString text = errorText; // NOLINT(performance-unnecessary-copy-initialization)
    if (!failedShapeFiles.contains(name))
        failedShapeFiles.append(name);
    m_insides->reports().tellUnusableShape(object, name, text);
    writeLines(output, imageLines, object);
}
