// The worker that converts a project.
#include "Converter.h"

#include "EngineLog.h"
#include "FileIo.h"
#include "ImageFile.h"
#include "ImageFileSearch.h"
#include "LineCheck.h"
#include "Logger.h"
#include "ObjectCutter.h"
#include "ProjectLock.h"
#include "Remembered.h"
#include "ScreenExchange.h"
#include "ShapeLibrary.h"
#include "ShapePlacement.h"
#include "ShapeReferences.h"
#include "StageFile.h"
#include "updUtils.h"

#include <QDateTime>
#include <QFile>
#include <QMutexLocker>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <exception>

using namespace Qt::StringLiterals;

/// What a run knows of a shape file.
struct Converter::ShapeFile
{
    bool isReadable = false;
    bool isValid = false;
    QString errorText;
    std::shared_ptr<const ShapePattern<QLatin1StringView>> lines;
    STBlock shape;
};

/// What a run works on: the owner may exchange the settings while it is under way.
struct Converter::Run
{
    QString projectDir;
    QSet<QString> filterNames;
    FolderCreation folderCreation = FolderCreation::OneLevel;
    FolderMaker tempFolders{folderCreation};
    std::shared_ptr<ShapeLibrary> library;
    QHash<QString, ShapeFile> shapes; ///< by name
    QStringList failedShapeFiles;
    TextBuffer<char> output; ///< of the image file under conversion
    std::unique_ptr<ProjectLock> lock;
    RunFacts facts;
    std::unique_ptr<StageFile> stageFile;

    QString imageFolder() const { return projectDir + "/scr"_L1; }
};

namespace {

/// Where log entries come from. The line numbers are known to those who read the logs and stay.
constexpr const char *logSource = "tools/Vantrel/Converter";
constexpr int imageFileErrorLine = 1460;
constexpr int tempFileErrorLine = 1575;
constexpr int shapeFileErrorLine = 1620;
constexpr int copyBackErrorLine = 1688;
constexpr int runErrorLine = 1700;
constexpr int lockErrorLine = 1710;

enum LogLevel : unsigned char { Alert = 1, FileError = 3 };

void logMessage(LogLevel level, const QString &message, int line)
{
    Qel::Logger::instance()->out(level, message, logSource, line).endl();
}

/// A path below the image folder, as it is below the temp folder. Every "/scr" in it changes,
/// also one that belongs to the project directory.
QString inTempFolder(QString path)
{
    return path.replace("/scr"_L1, "/scr_temp"_L1, Qt::CaseSensitive);
}

QString tempFolderOf(const QFileInfo &imageFile)
{
    return inTempFolder(imageFile.absolutePath());
}

/// Opens the temp file of an image file; once more where its folder was there and has gone since.
template <typename Open>
FileWriter openTempFile(Open open, const QString &imageFile, FolderMaker &folders)
{
    FileWriter file = open();
    const bool isWithoutFolder = !file.isOpen() && file.error() == ENOENT;
    if (isWithoutFolder && folders.makeAgain(tempFolderOf(QFileInfo(imageFile))))
        return open();
    return file;
}

void appendLines(const FileLines &lines, const STBlock &range, TextBuffer<char> &out)
{
    const auto last = std::min<qsizetype>(range.lastLine, lines.size() - 1);
    for (qsizetype index = std::max(range.firstLine, 0); index <= last; ++index) {
        out.append(lines.at(index));
        out.append('\n');
    }
}

/// What a link leads to is not the project's: a run makes a folder of its own in its place.
void takeAwayLink(const QString &path)
{
    if (QFileInfo(path).isSymLink() && QFile::remove(path))
        logError(u"Link %1 was taken away"_s.arg(path));
}

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

/// The lines of a shape file from its first section on; `offset` becomes the index of that line
/// in the file, -1 where there is none.
FileLines fromFirstSection(FileLines lines, int &offset)
{
    int first = 0;
    while (first < lines.size() && lines.kindAt(first) != RecordGrammar::LineKind::Section)
        ++first;
    offset = first < lines.size() ? first : -1;
    lines.removeFirst(first);
    return lines;
}

/// The lines of a shape as they take the places of objects.
ShapePattern<QLatin1StringView> patternOf(const FileLines &lines, const STBlock &shape)
{
    const QByteArray fromPrefix = shape.imageObject.toLatin1();
    ShapePattern<QLatin1StringView> pattern;
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QLatin1StringView line = lines.at(index);
        const auto *const rule = RecordGrammar::ruleFor(line, RecordGrammar::rebaseRules);
        if (isPlaced(lines.kindAt(index)))
            pattern.addPlaced(line, lines.kindAt(index));
        else if (rule != nullptr)
            pattern.addRebased(line, *rule, QLatin1StringView(fromPrefix));
        else
            pattern.addText(line);
        pattern.addLineEnd();
    }
    return pattern;
}

/// Exchanges a line for the one line of a pattern.
void fill(const ShapePattern<QStringView> &pattern, const Fitting<QStringView> &fitting, QString &line)
{
    TextBuffer<char16_t> text;
    pattern.appendFilled(fitting, text);
    line = QString::fromUtf16(text.data(), text.size());
}

} // namespace

Converter::Converter()
    : m_thread(this)
    , m_threadMode(WorkerThread)
{
    qRegisterMetaType<Converter::STBlock>("Converter::STBlock");
    moveToThread(&m_thread);
    m_thread.start(QThread::InheritPriority);
}

Converter::Converter(QString projectDir)
    : m_projectDir(std::move(projectDir))
    , m_threadMode(CallersThread)
{
    qRegisterMetaType<Converter::STBlock>("Converter::STBlock");
}

Converter::~Converter() = default;

void Converter::setProjectDir(const QString &projectDir)
{
    const QMutexLocker lock(&m_mutex);
    m_projectDir = projectDir;
}

void Converter::setFilterNames(const QSet<QString> &names)
{
    QSet<QString> lowerNames;
    for (const QString &name : names)
        lowerNames.insert(name.toLower());
    const QMutexLocker lock(&m_mutex);
    m_filterNames = lowerNames;
}

void Converter::setMakeFolders(bool makeFolders)
{
    const QMutexLocker lock(&m_mutex);
    m_makeFolders = makeFolders;
}

QString Converter::logFileName() const
{
    const QMutexLocker lock(&m_mutex);
    return m_logFileName;
}

QString Converter::projectDir() const
{
    if (m_run)
        return m_run->projectDir;
    const QMutexLocker lock(&m_mutex);
    return m_projectDir;
}

std::shared_ptr<ShapeLibrary> Converter::shapeLibrary() const
{
    return m_run ? m_run->library : std::make_shared<ShapeLibrary>(projectDir());
}

void Converter::announceStart()
{
    const QMutexLocker lock(&m_mutex);
    ++m_lastAnnounced;
}

void Converter::cancel()
{
    const QMutexLocker lock(&m_mutex);
    m_lastCancelled = m_lastAnnounced;
    stopRequested = true;
}

/// Clears the stop flag. Returns whether the start is still wanted; one that nobody announced is.
bool Converter::beginStart()
{
    const QMutexLocker lock(&m_mutex);
    stopRequested = false;
    if (m_lastBegun == m_lastAnnounced)
        return true;
    return ++m_lastBegun > m_lastCancelled;
}

void Converter::limitLead(int most)
{
    m_lead.limit(static_cast<std::size_t>(std::max(most, 0)));
}

void Converter::reportShown()
{
    m_lead.giveOneBack();
}

void Converter::onStopConvert()
{
    stopRequested = true;
}

void Converter::onStartConvert()
{
    if (m_isUnderWay)
        return;
    if (beginStart())
        convert();
    else
        Q_EMIT sigConvertEnd();
}

void Converter::createLogFileName()
{
    const QString stamp = QDateTime::currentDateTime().toString(u"_yyyy-MM-dd_hh-mm-ss");
    const QString path = u"%1/log/Vantrel%2.csv"_s.arg(projectDir(), stamp);
    const QMutexLocker lock(&m_mutex);
    m_logFileName = path;
}

// --- A run over the project ---

void Converter::convert()
{
    if (m_isUnderWay.exchange(true))
        return;
    try {
        convertProject();
    } catch (const std::exception &failure) {
        logMessage(FileError, u"The run was ended: %1"_s.arg(QString::fromLocal8Bit(failure.what())),
                   runErrorLine);
    }
    m_run.reset();
    m_isUnderWay = false;
    Q_EMIT sigConvertEnd();
}

void Converter::convertProject()
{
    if (!beginRun())
        return;

    const FoundImageFiles found = searchImageFiles(m_run->imageFolder());
    createLogFileName();

    enterConversion(found);
    takeAwayLink(m_run->projectDir + "/scr_temp"_L1);
    reportHiddenFiles(found);
    if (convertImageFiles(found.files)) {
        backUpAndCopyBack();
        const auto count = static_cast<int>(found.files.size());
        Q_EMIT sigProgressChanged(count, count);
    }
    m_run->stageFile->remove();
}

/// Takes what the run works on. Returns false where another run works on the project.
bool Converter::beginRun()
{
    {
        const QMutexLocker lock(&m_mutex);
        const auto creation = m_makeFolders ? FolderCreation::WithParents : FolderCreation::OneLevel;
        m_run = std::make_unique<Run>(Run{
            .projectDir = m_projectDir,
            .filterNames = m_filterNames,
            .folderCreation = creation,
            .tempFolders = FolderMaker(creation),
            .library = std::make_shared<ShapeLibrary>(m_projectDir),
            .shapes = {},
            .failedShapeFiles = {},
            .output = {},
            .lock = {},
            .facts = {},
            .stageFile = {},
        });
    }
    m_run->lock = std::make_unique<ProjectLock>(m_run->projectDir);
    if (!m_run->lock->isHeldByOther())
        return true;
    logMessage(FileError,
               u"Project %1 is in use by %2; the run was not started"_s.arg(m_run->projectDir,
                                                                            m_run->lock->holder()),
               lockErrorLine);
    return false;
}

/// Writes down what another process needs to know where this one does not come to the run's end.
void Converter::enterConversion(const FoundImageFiles &found)
{
    m_run->facts = factsOfRun(m_run->projectDir, found.files);
    m_run->facts.listIsWhole = found.isWhole();
    m_run->facts.shapeNames = m_run->filterNames.values();
    m_run->facts.shapeNames.sort();
    m_run->facts.makesFolders = m_run->folderCreation == FolderCreation::WithParents;
    m_run->stageFile = std::make_unique<StageFile>(m_run->projectDir, m_run->facts);
    m_run->stageFile->enter({.stage = RunStage::Converting, .unsaved = {}, .endedAt = RunStage::Converting});
}

/// Reports what keeps image files from being converted before any of them is opened.
void Converter::reportHiddenFiles(const FoundImageFiles &found)
{
    logFailures(found);
    for (const ListingFailure &failure : found.failures)
        reportFile(failure.folder, ReportStatus::Error, messageOf(failure));
    for (const QByteArray &path : found.unnamable) {
        QString message = u"Could not open Image File: its name is not valid UTF-8"_s;
        reportImageFileError(shownPath(path), message);
    }
}

/// Returns false when the run was stopped.
bool Converter::convertImageFiles(const QList<QFileInfo> &imageFiles)
{
    const auto count = static_cast<int>(imageFiles.size());
    for (int index = 0; index < count; ++index) {
        const QFileInfo &imageFile = imageFiles.at(index);
        // Before the flag is looked at: a stopped run leaves the folder of the file it stopped at.
        m_run->tempFolders.make(tempFolderOf(imageFile));
        if (stopRequested) {
            m_run->tempFolders.makeAgain(tempFolderOf(imageFile));
            return false;
        }

        const QString path = imageFile.filePath();
        Q_EMIT sigProgressChanged(count, index);
        Q_EMIT sigUpdFileName(path);
        convertImageFile(path, inTempFolder(path));
    }
    return true;
}

void Converter::backUpAndCopyBack()
{
    ScreenExchange exchange(m_run->projectDir, m_run->folderCreation, m_run->facts.screens,
                            *m_run->stageFile);
    exchange.discardLastBackup();
    if (!exchange.backUpAndGoOn()) {
        logMessage(Alert,
                   u"!!! Could not copy all files from \\scr_temp folder to \\scr. Copy them manually !!!"_s,
                   copyBackErrorLine);
    }
    m_run->stageFile->enter({.stage = RunStage::Done, .unsaved = {}, .endedAt = RunStage::Done});
}

// --- Conversion of one image file ---

void Converter::convertImageFile(const QString &imageFile, const QString &tempFile)
{
    ImageFile image = readImage(imageFile);
    if (image.state != ImageFile::State::Whole) {
        // Opening a temp file would show whether its folder is still there.
        m_run->tempFolders.makeAgain(tempFolderOf(QFileInfo(imageFile)));
        reportImageFileError(imageFile, image.errorText);
        return;
    }
    const auto isCandidate = [](const STBlock &object) { return object.replace; };
    if (std::none_of(image.objects.cbegin(), image.objects.cend(), isCandidate)) {
        reportFile(imageFile, ReportStatus::NotReplaced, {});
        copyUnchanged(image, tempFile);
    } else {
        writeConverted(image, tempFile);
    }
}

/// Where its folder is missing, or a file lies there already, nothing is written.
void Converter::copyUnchanged(const ImageFile &image, const QString &tempFile)
{
    FileWriter file = openTempFile([&] { return FileWriter::creating(tempFile, image.mode); }, image.path,
                                   m_run->tempFolders);
    const bool isSkipped = !file.isOpen() && (file.error() == ENOENT || file.error() == EEXIST);
    const bool isWritten = file.isOpen() && file.write(image.bytes.constData(), image.bytes.size());
    if (!isSkipped && !isWritten)
        reportTempFileError(image.path, u"Could not write Temp File %1"_s.arg(tempFile), file.error());
}

void Converter::writeConverted(ImageFile &image, const QString &tempFile)
{
    FileWriter file =
        openTempFile([&] { return FileWriter::overwriting(tempFile); }, image.path, m_run->tempFolders);
    if (!file.isOpen()) {
        reportTempFileError(image.path, u"Could not open Temp File %1"_s.arg(tempFile), 0);
        if (isFailureOfDisk(file.error()))
            logError(u"%1: %2"_s.arg(tempFile, qt_error_string(file.error())));
        return;
    }
    m_run->output.clear();
    for (STBlock &object : image.objects) {
        if (isChosen(object))
            replaceObject(image, object);
        else
            appendLines(image.lines, object, m_run->output);
    }
    if (!file.write(m_run->output.data(), m_run->output.size()))
        reportTempFileError(image.path, u"Could not write Temp File %1"_s.arg(tempFile), file.error());
}

/// The log tells the reason too, where there is one to tell.
void Converter::reportTempFileError(const QString &imageFile, const QString &message, int reason)
{
    reportFile(imageFile, ReportStatus::Error, message);
    logMessage(FileError, reason == 0 ? message : message + ": "_L1 + qt_error_string(reason),
               tempFileErrorLine);
}

bool Converter::isChosen(const STBlock &object) const
{
    return object.replace && m_run->filterNames.contains(object.shapeFile.toLower());
}

void Converter::replaceObject(const ImageFile &image, STBlock &object)
{
    TextBuffer<char> &output = m_run->output;
    const auto keepObject = [&](const QString &shapeName, const QString &errorText) {
        reportUnusableShape(object, shapeName, errorText, m_run->failedShapeFiles);
        appendLines(image.lines, object, output);
    };
    const ShapeFile &shapeFile = openedShape(object.shapeFile);
    if (!shapeFile.isReadable) {
        keepObject(object.shapeFile, shapeFile.errorText);
        return;
    }
    if (!shapeFile.isValid) {
        keepObject(m_run->library->path(object.shapeFile), shapeFile.errorText);
        return;
    }
    const STBlock &shape = shapeFile.shape;
    const QByteArray extraText = object.extraText.toLatin1();
    const QByteArray toPrefix = object.initText.toLatin1();
    shapeFile.lines->appendFilled({.displacement = displacementOf(object.rect, shape.rect),
                                   .level = object.extraNumber,
                                   .extraText = QLatin1StringView(extraText),
                                   .toPrefix = QLatin1StringView(toPrefix)},
                                  output);
    object.shapeObject = shape.imageObject;
    report(object);
    for (const QString &icon : std::as_const(shape.missingIcons))
        keepObject(icon, u"Ikon %1 does not exist"_s.arg(icon));
}

/// A shape file as objects are replaced by it: opened, checked and parsed when the run first
/// comes to it.
const Converter::ShapeFile &Converter::openedShape(const QString &name)
{
    return remembered(m_run->shapes, name, [&] {
        ShapeFile file;
        const std::optional<FileLines> lines = readShape(m_run->library->path(name), file.errorText);
        file.isReadable = lines.has_value();
        file.isValid =
            file.isReadable && checkLines(*lines, {FileKind::Shape, shapeLineOffset}, file.errorText);
        if (file.isValid) {
            parseShape(*lines, *m_run->library, file.shape);
            file.lines =
                std::make_shared<const ShapePattern<QLatin1StringView>>(patternOf(*lines, file.shape));
        }
        return file;
    });
}

/// The lines of a shape from its first section on.
std::optional<FileLines> Converter::readShape(const QString &path, QString &errorText)
{
    const std::optional<FileContent> content = isCatalogue(path) ? std::nullopt : readFile(path);
    if (!content) {
        errorText = u"Could not open Shape File"_s;
        return std::nullopt;
    }
    return fromFirstSection(FileLines(content->bytes), shapeLineOffset);
}

void Converter::clearBlock(STBlock &block)
{
    ::clearBlock(block);
}

/// The one place at which reports leave a run.
void Converter::report(const STBlock &block)
{
    m_lead.takeOne();
    Q_EMIT sigConvertInfo(block);
}

void Converter::reportFile(const QString &imageFile, int status, const QString &errorText)
{
    STBlock block;
    clearBlock(block);
    block.imageFile = imageFile;
    block.status = status;
    block.error = errorText;
    report(block);
}

// --- Image files ---

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
    reportFile(path, ReportStatus::Error, message);
    message.replace("Image File"_L1, u"Image File %1"_s.arg(path), Qt::CaseSensitive);
    logMessage(FileError, message, imageFileErrorLine);
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
    const std::optional<FileLines> read = readShape(path, errorText);
    if (read)
        lines = read->toStringList();
    return read.has_value();
}

bool Converter::parseShapeLines(const QStringList &lines, STBlock &shape)
{
    const std::shared_ptr<ShapeLibrary> library = shapeLibrary();
    parseShape(lines, *library, shape);
    return true;
}

void Converter::placeShapeLines(QStringList &lines, const STBlock &target, const STBlock &shape)
{
    const Fitting<QStringView> fitting{.displacement = displacementOf(target.rect, shape.rect),
                                       .level = target.extraNumber,
                                       .extraText = target.extraText,
                                       .toPrefix = {}};
    ShapePattern<QStringView> pattern;
    for (QString &line : lines) {
        const RecordGrammar::LineKind kind = RecordGrammar::kindOf(line);
        if (!isPlaced(kind))
            continue;
        pattern.clear();
        pattern.addPlaced(line, kind, fitting.extraText);
        fill(pattern, fitting, line);
    }
}

void Converter::rebaseShapeLines(QStringList &lines, const QString &fromPrefix, const QString &toPrefix,
                                 int xShift, int yShift)
{
    // The prefixes may be two of the lines.
    const QString from = fromPrefix;
    const QString to = toPrefix;
    const Fitting<QStringView> fitting{
        .displacement = {.corner = {}, .centre = {xShift, yShift}}, .extraText = {}, .toPrefix = to};
    ShapePattern<QStringView> pattern;
    for (QString &line : lines) {
        const auto *const rule = RecordGrammar::ruleFor(line, RecordGrammar::rebaseRules);
        if (rule == nullptr)
            continue;
        pattern.clear();
        pattern.addRebased(line, *rule, from);
        fill(pattern, fitting, line);
    }
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
    reportUnusableShape(object, shapeFile, errorText, failedShapeFiles);
    writeLines(output, imageLines, object);
}

void Converter::reportUnusableShape(STBlock &object, const QString &shapeFile, const QString &errorText,
                                    QStringList &failedShapeFiles)
{
    object.status = ReportStatus::Error;
    object.error = errorText;
    object.replace = false;
    // Before the list grows, of which the text may be a part.
    QString message = errorText;
    if (!failedShapeFiles.contains(shapeFile))
        failedShapeFiles.append(shapeFile);

    message.replace("Shape File"_L1, u"Shape File %1"_s.arg(shapeFile), Qt::CaseSensitive);
    logMessage(FileError, message, shapeFileErrorLine);
    report(object);
}
