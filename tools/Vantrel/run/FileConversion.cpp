// The conversion of one image file after the other.
#include "FileConversion.h"

#include "EngineLog.h"
#include "FileIo.h"
#include "ImageFile.h"
#include "RunReports.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <new>

using namespace Qt::StringLiterals;

namespace {

/// A path below the image folder, as it is below the temp folder. Every "/scr" in it changes,
/// also one that belongs to the project directory.
QString inTempFolder(QString path)
{
    return path.replace("/scr"_L1, "/scr_temp"_L1, Qt::CaseSensitive);
}

QString tempFolderOf(const QString &imageFile)
{
    return inTempFolder(QFileInfo(imageFile).absolutePath());
}

void appendLines(const FileLines &lines, const STBlock &range, TextBuffer<char> &out)
{
    const auto last = std::min<qsizetype>(range.lastLine, lines.size() - 1);
    for (qsizetype index = std::max(range.firstLine, 0); index <= last; ++index) {
        out.append(lines.at(index));
        out.append('\n');
    }
}

} // namespace

FileConversion::FileConversion(const ConversionSettings &settings, const RunReports &reports)
    : m_settings(settings)
    , m_reports(reports)
    , m_root(settings.projectDir)
    , m_tempFolders(m_root, settings.folderCreation)
    , m_library(settings.projectDir)
{
}

void FileConversion::makeTempFolder(const QString &imageFile)
{
    m_tempFolders.make(tempFolderOf(imageFile), QFileInfo(imageFile).absolutePath());
}

bool FileConversion::makeTempFolderAgain(const QString &imageFile)
{
    m_tempFolder.letGo();
    return m_tempFolders.makeAgain(tempFolderOf(imageFile), QFileInfo(imageFile).absolutePath());
}

void FileConversion::convert(const QString &imageFile)
{
    try {
        convertImage(imageFile);
    } catch (const std::bad_alloc &) {
        QString message = u"There is not enough memory for Image File"_s;
        m_reports.tellImageFileError(imageFile, message);
    }
}

void FileConversion::convertImage(const QString &imageFile)
{
    ImageFile image = readImage(imageFile);
    if (image.state != ImageFile::State::Whole) {
        // Opening a temp file would show whether its folder is still there.
        makeTempFolderAgain(imageFile);
        m_reports.tellImageFileError(imageFile, image.errorText);
        return;
    }
    const auto isCandidate = [](const STBlock &object) { return object.replace; };
    if (std::none_of(image.objects.cbegin(), image.objects.cend(), isCandidate)) {
        m_reports.tellFile(imageFile, ReportStatus::NotReplaced);
        copyUnchanged(image);
    } else {
        writeConverted(image);
    }
}

/// What an interruption leaves in a new temp folder is not taken for whole, since the run is known to
/// have been interrupted. What lies there already is of no such run.
FileWriter FileConversion::makeTempFile(const ImageFile &image, const QString &tempFile, IfThere ifThere)
{
    return {m_tempFolder.parentOf(tempFile), lastNameOf(tempFile), image.mode, ifThere,
            m_tempFolderIsNew ? Appears::AtOnce : Appears::WhenWhole};
}

/// Once more where the folder of the temp file was there and has gone since.
FileWriter FileConversion::openTempFile(const ImageFile &image, const QString &tempFile, IfThere ifThere)
{
    FileWriter file = makeTempFile(image, tempFile, ifThere);
    const bool isWithoutFolder = !file.isOpen() && file.error() == ENOENT;
    if (isWithoutFolder && makeTempFolderAgain(image.path))
        return makeTempFile(image, tempFile, ifThere);
    return file;
}

/// Once more where the folder has gone while the file was written.
bool FileConversion::writeTempFile(FileWriter &file, const ImageFile &image, const QString &tempFile,
                                   IfThere ifThere, QByteArrayView bytes)
{
    if (!file.isOpen() || file.write(bytes.data(), bytes.size()))
        return file.error() == 0;
    if (file.error() != ENOENT || !makeTempFolderAgain(image.path))
        return false;
    FileWriter again = makeTempFile(image, tempFile, ifThere);
    return again.isOpen() && again.write(bytes.data(), bytes.size());
}

/// Where its folder is missing, or a file lies there already, nothing is written.
void FileConversion::copyUnchanged(const ImageFile &image)
{
    const QString tempFile = inTempFolder(image.path);
    FileWriter file = openTempFile(image, tempFile, IfThere::Fail);
    const bool isWritten = writeTempFile(file, image, tempFile, IfThere::Fail, image.bytes);
    const bool isSkipped = file.error() == ENOENT || (file.error() == EEXIST && !m_tempFolderIsNew);
    if (!isSkipped && !isWritten)
        m_reports.tellTempFileError(image.path, u"Could not write Temp File %1"_s.arg(tempFile),
                                    file.error());
}

void FileConversion::writeConverted(ImageFile &image)
{
    const QString tempFile = inTempFolder(image.path);
    const IfThere ifThere = m_tempFolderIsNew ? IfThere::Fail : IfThere::Replace;
    FileWriter file = openTempFile(image, tempFile, ifThere);
    if (!file.isOpen()) {
        m_reports.tellTempFileError(image.path, u"Could not open Temp File %1"_s.arg(tempFile), 0);
        if (isFailureOfDisk(file.error()))
            logError(u"%1: %2"_s.arg(tempFile, qt_error_string(file.error())));
        return;
    }
    try {
        replaceObjects(image);
    } catch (...) {
        file.discard(ENOMEM); // an empty file would pass for a converted one
        throw;
    }
    if (!writeTempFile(file, image, tempFile, ifThere, {m_output.data(), m_output.size()}))
        m_reports.tellTempFileError(image.path, u"Could not write Temp File %1"_s.arg(tempFile),
                                    file.error());
}

void FileConversion::replaceObjects(ImageFile &image)
{
    m_output.clear();
    for (STBlock &object : image.objects) {
        if (isChosen(object))
            replaceObject(image, object);
        else
            appendLines(image.lines, object, m_output);
    }
}

bool FileConversion::isChosen(const STBlock &object) const
{
    return object.replace && m_settings.filterNames.contains(object.shapeFile.toLower());
}

void FileConversion::replaceObject(const ImageFile &image, STBlock &object)
{
    const OpenedShape &opened = m_shapes.shape(object.shapeFile);
    if (!opened.isReadable) {
        keepObject(image, object, object.shapeFile, opened.errorText);
        return;
    }
    if (!opened.isValid) {
        keepObject(image, object, m_library.path(object.shapeFile), opened.errorText);
        return;
    }
    const STBlock &shape = opened.shape;
    const QByteArray extraText = object.extraText.toLatin1();
    const QByteArray toPrefix = object.initText.toLatin1();
    opened.lines->appendFilled({.displacement = displacementOf(object.rect, shape.rect),
                                .level = object.extraNumber,
                                .extraText = QLatin1StringView(extraText),
                                .toPrefix = QLatin1StringView(toPrefix)},
                               m_output);
    object.shapeObject = shape.imageObject;
    m_reports.tell(object);
    for (const QString &icon : std::as_const(shape.missingIcons))
        keepObject(image, object, icon, u"Ikon %1 does not exist"_s.arg(icon));
}

void FileConversion::keepObject(const ImageFile &image, STBlock &object, const QString &shapeName,
                                const QString &errorText)
{
    m_reports.tellUnusableShape(object, shapeName, errorText);
    appendLines(image.lines, object, m_output);
}
