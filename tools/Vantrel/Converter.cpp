// The worker that converts a project.
#include "Converter.h"

#include "Backup.h"
#include "LineReader.h"
#include "Logger.h"
#include "ObjectCutter.h"
#include "RecordGrammar.h"
#include "RectangleReader.h"
#include "Remembered.h"
#include "ShapeLibrary.h"
#include "ShapePlacement.h"
#include "WrapArithmetic.h"
#include "updUtils.h"

#include <QDateTime>
#include <QFile>
#include <QMutexLocker>

#include <exception>

using namespace Qt::StringLiterals;
using RecordGrammar::LineKind;

/// What a run knows of a shape file.
struct Converter::ShapeFile
{
    bool isReadable = false;
    bool isValid = false;
    QString errorText;
    QStringList lines;
    STBlock shape;
};

/// What a run works on: the owner may exchange the settings while it is under way.
struct Converter::Run
{
    QString projectDir;
    QSet<QString> filterNames;
    FolderCreation folderCreation = FolderCreation::OneLevel;
    std::shared_ptr<ShapeLibrary> library;
    QHash<QString, ShapeFile> shapes;
    QStringList failedShapeFiles;

    QString imageFolder() const { return projectDir + "/scr"_L1; }
};

/// What the conversion of one image file works on.
struct Converter::WorkLists
{
    QStringList imageLines;
    QStringList shapeLines; ///< of the shape used last
    QList<STBlock> objects;
};

namespace {

enum Status { Replaced = 0, NotReplaced = 1, Error = 2 };

/// Where log entries come from. The line numbers are known to those who read the logs and stay.
constexpr const char *logSource = "tools/Vantrel/Converter";
constexpr int imageFileErrorLine = 1460;
constexpr int tempFileErrorLine = 1575;
constexpr int shapeFileErrorLine = 1620;
constexpr int copyBackErrorLine = 1688;
constexpr int runErrorLine = 1700;

/// Where a record's position is not known.
constexpr QPoint noPosition{-99999, -99999};

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

/// One character one byte; what Latin-1 does not have becomes '?'.
char *encode(QStringView text, char *out)
{
    constexpr char16_t lastOfLatin1 = 0xff;
    return std::transform(text.utf16(), text.utf16() + text.size(), out, [](char16_t character) {
        return character <= lastOfLatin1 ? static_cast<char>(character) : '?';
    });
}

void writeLines(QIODevice &output, const QStringList &lines, qsizetype first, qsizetype last)
{
    first = std::max<qsizetype>(first, 0);
    last = std::min(last, lines.size() - 1);
    qsizetype size = 0;
    for (qsizetype index = first; index <= last; ++index)
        size += lines.at(index).size() + 1;

    QByteArray bytes(size, Qt::Uninitialized);
    char *out = bytes.data();
    for (qsizetype index = first; index <= last; ++index) {
        out = encode(lines.at(index), out);
        *out++ = '\n';
    }
    output.write(bytes);
}

void writeObject(QIODevice &output, const QStringList &imageLines, const Converter::STBlock &object)
{
    writeLines(output, imageLines, object.firstLine, object.lastLine);
}

QString tooFewParameters(bool imageFile, bool exact)
{
    if (imageFile) {
        return exact ? u"Image File [line %1]: %2... not enough parameters (must be == %3)"_s
                     : u"Image File [line %1]: %2... not enough parameters (must be >= %3)"_s;
    }
    return exact ? u"Shape File [line %1]: %2... not enough parameters (must be == %3)"_s
                 : u"Shape File [line %1]: %2... not enough parameters (must be >= %3)"_s;
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
    ++m_announcedStarts;
}

void Converter::cancel()
{
    const QMutexLocker lock(&m_mutex);
    m_cancelledStarts = m_announcedStarts;
    stopRequested = true;
}

/// Clears the stop flag. Returns whether the start is still wanted.
bool Converter::beginStart()
{
    const QMutexLocker lock(&m_mutex);
    stopRequested = false;
    if (m_announcedStarts == 0)
        return true;
    --m_announcedStarts;
    if (m_cancelledStarts == 0)
        return true;
    --m_cancelledStarts;
    return false;
}

void Converter::onStopConvert()
{
    stopRequested = true;
}

void Converter::onStartConvert()
{
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
    try {
        convertProject();
    } catch (const std::exception &failure) {
        logMessage(FileError, u"The run was ended: %1"_s.arg(QString::fromLocal8Bit(failure.what())),
                   runErrorLine);
    }
    m_run.reset();
    Q_EMIT sigConvertEnd();
}

void Converter::convertProject()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_run = std::make_unique<Run>(Run{
            .projectDir = m_projectDir,
            .filterNames = m_filterNames,
            .folderCreation = m_makeFolders ? FolderCreation::WithParents : FolderCreation::OneLevel,
            .library = std::make_shared<ShapeLibrary>(m_projectDir),
            .shapes = {},
            .failedShapeFiles = {},
        });
    }

    QList<QFileInfo> imageFiles;
    updUtils::findImageFiles(m_run->imageFolder(), imageFiles);
    createLogFileName();

    if (!convertImageFiles(imageFiles))
        return;
    backUpAndCopyBack();
    const auto count = static_cast<int>(imageFiles.size());
    Q_EMIT sigProgressChanged(count, count);
}

/// Returns false when the run was stopped.
bool Converter::convertImageFiles(const QList<QFileInfo> &imageFiles)
{
    const auto count = static_cast<int>(imageFiles.size());
    for (int index = 0; index < count; ++index) {
        const QFileInfo &imageFile = imageFiles.at(index);
        // Before the flag is looked at: a stopped run leaves the folder of the file it stopped at.
        updUtils::makeFolder(inTempFolder(imageFile.absolutePath()), m_run->folderCreation);
        if (stopRequested)
            return false;

        const QString path = imageFile.filePath();
        Q_EMIT sigProgressChanged(count, index);
        Q_EMIT sigUpdFileName(path);
        convertImageFile(path, inTempFolder(path));
    }
    return true;
}

void Converter::backUpAndCopyBack()
{
    const QString &projectDir = m_run->projectDir;
    updUtils::removeDir(projectDir + "/scr_bak"_L1);
    updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, projectDir, m_run->folderCreation);

    // Still there only where not all of them could be backed up.
    QList<QFileInfo> originals;
    updUtils::findImageFiles(m_run->imageFolder(), originals);
    if (updUtils::moveImageFiles(u"/scr_temp"_s, u"/scr"_s, projectDir, m_run->folderCreation) ||
        retryCopyBack(originals)) {
        return;
    }
    logMessage(Alert,
               u"!!! Could not copy all files from \\scr_temp folder to \\scr. Copy them manually !!!"_s,
               copyBackErrorLine);
}

/// Copies back into an empty image folder. It is emptied only when its originals lie in the backup.
bool Converter::retryCopyBack(const QList<QFileInfo> &originals)
{
    if (!completeBackup(originals, m_run->projectDir))
        return false;
    updUtils::removeDir(m_run->imageFolder());
    return updUtils::moveImageFiles(u"/scr_temp"_s, u"/scr"_s, m_run->projectDir, m_run->folderCreation);
}

// --- Conversion of one image file ---

void Converter::convertImageFile(const QString &imageFile, const QString &tempFile)
{
    WorkLists work;
    QString errorText;
    if (!readImageFile(imageFile, work.imageLines, errorText)) {
        readShapeReferences(work.imageLines, work.objects);
        reportImageFileError(imageFile, errorText);
        return;
    }
    if (!checkImageLines(work.imageLines, errorText) ||
        !splitObjects(imageFile, work.imageLines, work.objects)) {
        reportImageFileError(imageFile, errorText);
        return;
    }
    gatherScatteredParts(work.imageLines, work.objects);
    readShapeReferences(work.imageLines, work.objects);

    const auto isCandidate = [](const STBlock &object) { return object.replace; };
    if (std::none_of(work.objects.cbegin(), work.objects.cend(), isCandidate)) {
        reportFile(imageFile, NotReplaced, {});
        QFile::copy(imageFile, tempFile);
        return;
    }

    QFile output(tempFile);
    if (!output.open(QIODevice::WriteOnly | QIODevice::Text)) {
        errorText = u"Could not open Temp File %1"_s.arg(tempFile);
        reportFile(imageFile, Error, errorText);
        logMessage(FileError, errorText, tempFileErrorLine);
        return;
    }
    writeObjects(output, work);
    output.close();
}

void Converter::writeObjects(QIODevice &tempFile, WorkLists &work)
{
    for (STBlock &object : work.objects) {
        if (isChosen(object))
            replaceObject(tempFile, work, object);
        else
            writeObject(tempFile, work.imageLines, object);
    }
}

bool Converter::isChosen(const STBlock &object) const
{
    return object.replace && m_run->filterNames.contains(object.shapeFile.toLower());
}

void Converter::replaceObject(QIODevice &tempFile, WorkLists &work, STBlock &object)
{
    const auto keepObject = [&](const QString &shapeName, const QString &errorText) {
        reportShapeFileError(tempFile, object, work.imageLines, shapeName, errorText,
                             m_run->failedShapeFiles);
    };
    const QString shapePath = m_run->library->path(object.shapeFile);

    // The lines of the shape before this one are placed once more before they are exchanged.
    STBlock formerShape;
    parseShapeLines(work.shapeLines, formerShape);
    placeShapeLines(work.shapeLines, object, formerShape);

    const ShapeFile &shapeFile = openedShape(shapePath);
    if (!shapeFile.isReadable) {
        keepObject(object.shapeFile, shapeFile.errorText);
        return;
    }
    work.shapeLines = shapeFile.lines;
    if (!shapeFile.isValid) {
        keepObject(shapePath, shapeFile.errorText);
        return;
    }
    const STBlock &shape = shapeFile.shape;
    fitShapeLines(work.shapeLines, object, shape);

    object.shapeObject = shape.imageObject;
    writeLines(tempFile, work.shapeLines, 0, work.shapeLines.size() - 1);
    Q_EMIT sigConvertInfo(object);
    for (const QString &icon : std::as_const(shape.missingIcons))
        keepObject(icon, u"Ikon %1 does not exist"_s.arg(icon));
}

/// A shape file as objects are replaced by it: opened, checked and parsed when the run first
/// comes to it.
const Converter::ShapeFile &Converter::openedShape(const QString &path)
{
    return remembered(m_run->shapes, path, [&] {
        ShapeFile file;
        file.isReadable = openShapeFile(path, file.lines, file.errorText);
        file.isValid = file.isReadable && checkShapeLines(file.lines, file.errorText);
        if (file.isValid)
            parseShapeLines(file.lines, file.shape);
        return file;
    });
}

void Converter::clearBlock(STBlock &block)
{
    constexpr int beyondLeftAndTop = 99999;
    QStringList icons = std::move(block.missingIcons);
    icons.clear(); // keeps its storage
    block = STBlock{};
    block.missingIcons = std::move(icons);
    block.firstLine = -1;
    block.lastLine = -1;
    block.extraNumber = -1;
    block.rect.setCoords(beyondLeftAndTop, beyondLeftAndTop, 0, 0);
    block.rect2.setCoords(0, 0, 0, 0);
    block.rect3.setCoords(noPosition.x(), noPosition.y(), 0, 0);
}

void Converter::reportFile(const QString &imageFile, int status, const QString &errorText)
{
    STBlock report;
    clearBlock(report);
    report.imageFile = imageFile;
    report.status = status;
    report.error = errorText;
    Q_EMIT sigConvertInfo(report);
}

// --- Image files ---

bool Converter::readImageFile(const QString &path, QStringList &lines, QString &errorText)
{
    std::optional<QStringList> read = readLines(path);
    if (!read) {
        errorText = u"Could not open Image File"_s;
        return false;
    }
    lines = *std::move(read);
    return true;
}

bool Converter::checkFieldCount(const QString &tag, int present, int required, QString &errorText,
                                int lineIndex, bool imageFile) const
{
    errorText.clear();
    const bool exact = tag == "PNT"_L1;
    if (exact ? present == required : present >= required)
        return true;

    const int offset = imageFile ? 0 : shapeLineOffset;
    const int line = Wrap::add(Wrap::add(offset, lineIndex), 1);
    const bool tooMany = present > required;
    const bool tooFewPoints = exact && !tooMany;
    // With too few points the line is counted from the one already counted.
    const int shownLine = tooFewPoints ? Wrap::add(Wrap::add(offset, line), 1) : line;
    errorText = tooFewParameters(imageFile, tooMany).arg(shownLine).arg(tag).arg(required);
    return tooMany;
}

void Converter::reportImageFileError(const QString &path, QString &message)
{
    reportFile(path, Error, message);
    message.replace("Image File"_L1, u"Image File %1"_s.arg(path), Qt::CaseSensitive);
    logMessage(FileError, message, imageFileErrorLine);
}

bool Converter::checkImageLines(const QStringList &lines, QString &errorText)
{
    return checkLines(lines, errorText, true);
}

bool Converter::checkShapeLines(const QStringList &lines, QString &errorText)
{
    return checkLines(lines, errorText, false);
}

bool Converter::checkLines(const QStringList &lines, QString &errorText, bool imageFile)
{
    const auto rules = imageFile ? RecordGrammar::imageCheckRules : RecordGrammar::shapeCheckRules;
    for (int index = 0; index < lines.size(); ++index) {
        const QStringView line = lines.at(index);
        const RecordGrammar::CheckRule *rule = RecordGrammar::ruleFor(line, rules);
        if (rule != nullptr && !checkLine(*rule, line, errorText, index, imageFile))
            return false;
    }
    return true;
}

bool Converter::checkLine(const RecordGrammar::CheckRule &rule, QStringView line, QString &errorText,
                          int index, bool imageFile) const
{
    using RecordGrammar::FieldRule;
    // The tags live as long as the program.
    const QString tag = QString::fromRawData(rule.messageTag.data(), rule.messageTag.size());
    const int required = imageFile ? rule.imageFields : rule.shapeFields;
    const auto fields = static_cast<int>(fieldCount(line));
    const auto countedRecords = [line] { return toNumber(fieldAt(line, RecordGrammar::counter)); };

    switch (rule.rule) {
    case FieldRule::AtLeast:
        return checkFieldCount(tag, fields, required, errorText, index, imageFile);
    case FieldRule::Points:
        return checkFieldCount(tag, fields - required, Wrap::multiply(2, countedRecords()), errorText, index,
                               imageFile);
    case FieldRule::Entries:
        return checkFieldCount(tag, fields, required, errorText, index, imageFile) &&
               checkFieldCount(
                   tag, fields,
                   Wrap::multiply(RecordGrammar::Entries::fieldsOfEntry, Wrap::add(countedRecords(), 1)),
                   errorText, index, imageFile);
    }
    return true;
}

bool Converter::splitObjects(const QString &imageFile, const QStringList &lines, QList<STBlock> &objects)
{
    objects.clear();
    ObjectCutter(imageFile, lines, objects).cut();
    return true;
}

void Converter::gatherScatteredParts(QStringList &lines, QList<STBlock> &objects)
{
    gatherParts(lines, objects);
}

namespace {

void readLibraryReference(QStringView line, Converter::STBlock &object)
{
    const RecordLine fields(line);
    object.shapeFile = fields.at(RecordGrammar::Library::shapeFile).toString();
    object.shapeFile.replace(".lib"_L1, ".plb"_L1, Qt::CaseSensitive);
    object.initText = fields.at(RecordGrammar::Library::initText).toString();
    object.imageObject = fields.at(RecordGrammar::Library::objectName).toString();
    object.replace = !object.initText.isEmpty();
}

/// The first rectangle of an object gives its position.
void takePosition(const QRect &rect, Converter::STBlock &object)
{
    if (object.rect3.topLeft() != noPosition)
        return;
    object.rect3.setLeft(rect.left());
    object.rect3.setTop(rect.top());
}

void readObjectReferences(const QStringList &lines, Converter::STBlock &object)
{
    RectangleReader rectangles(object);
    for (int index = std::max(object.firstLine, 0); index <= object.lastLine && index < lines.size();
         ++index) {
        const QStringView line = lines.at(index);
        switch (RecordGrammar::kindOf(line)) {
        case LineKind::Section:
            rectangles.enterSection(line);
            break;
        case LineKind::Library:
            readLibraryReference(line, object);
            break;
        case LineKind::Rectangle:
            takePosition(rectangles.readRectangle(line), object);
            break;
        default:
            break;
        }
    }
}

void noteMissingIcon(QStringView line, ShapeLibrary &library, Converter::STBlock &shape)
{
    const QString bitmap = fieldAt(line, RecordGrammar::Bitmap::fileName).toString();
    if (!library.hasBitmap(bitmap))
        shape.missingIcons.append(bitmap);
}

} // namespace

void Converter::readShapeReferences(const QStringList &lines, QList<STBlock> &objects)
{
    for (STBlock &object : objects) {
        if (object.replace)
            readObjectReferences(lines, object);
    }
}

// --- Shape files ---

bool Converter::openShapeFile(const QString &path, QStringList &lines, QString &errorText)
{
    const bool isCatalogue = path.contains(".cat"_L1);
    const std::optional<QStringList> read = isCatalogue ? std::nullopt : readLines(path);
    if (!read) {
        errorText = u"Could not open Shape File"_s;
        return false;
    }

    const auto isSection = [](const QString &line) { return hasTag(line, RecordGrammar::sectionTag); };
    const auto firstSection = std::find_if(read->cbegin(), read->cend(), isSection);
    lines = QStringList(firstSection, read->cend());
    shapeLineOffset = lines.isEmpty() ? -1 : static_cast<int>(firstSection - read->cbegin());
    return true;
}

bool Converter::parseShapeLines(const QStringList &lines, STBlock &shape)
{
    clearBlock(shape);
    const std::shared_ptr<ShapeLibrary> library = shapeLibrary();
    RectangleReader rectangles(shape);
    for (const QString &line : lines) {
        switch (RecordGrammar::kindOf(line)) {
        case LineKind::Section:
            rectangles.enterSection(line);
            break;
        case LineKind::Library:
            shape.imageObject = fieldAt(line, RecordGrammar::Library::objectName).toString();
            break;
        case LineKind::Bitmap:
            if (rectangles.inIconSection())
                noteMissingIcon(line, *library, shape);
            break;
        case LineKind::Rectangle:
            rectangles.readRectangle(line);
            break;
        default:
            break;
        }
    }
    return true;
}

void Converter::placeShapeLines(QStringList &lines, const STBlock &target, const STBlock &shape)
{
    const Displacement displacement = displacementOf(target.rect, shape.rect);
    const PlacedObject object{.level = target.extraNumber, .extraText = target.extraText};
    for (QString &line : lines)
        placeLine(line, displacement, object);
}

void Converter::rebaseShapeLines(QStringList &lines, const QString &fromPrefix, const QString &toPrefix,
                                 int xShift, int yShift)
{
    const Rebasing rebasing{
        .fromPrefix = fromPrefix, .toPrefix = toPrefix, .xShift = xShift, .yShift = yShift};
    for (QString &line : lines)
        rebaseLine(line, rebasing);
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
    object.status = Error;
    object.error = errorText;
    object.replace = false;
    if (!failedShapeFiles.contains(shapeFile))
        failedShapeFiles.append(shapeFile);

    QString message = errorText;
    message.replace("Shape File"_L1, u"Shape File %1"_s.arg(shapeFile), Qt::CaseSensitive);
    logMessage(FileError, message, shapeFileErrorLine);
    Q_EMIT sigConvertInfo(object);
    writeObject(output, imageLines, object);
}
