// The conversion of one image file after the other.
#pragma once

#include "FileWriter.h"
#include "FolderInUse.h"
#include "OpenedShapes.h"
#include "RunHistory.h"
#include "STBlock.h"
#include "ShapeLibrary.h"
#include "TextBuffer.h"
#include "updUtils.h"

#include <QSet>
#include <QString>

class RunReports;
struct ImageFile;

/// What a run is to do.
struct ConversionSettings
{
    QString projectDir;
    QSet<QString> filterNames; ///< in lower case; objects of these shape files are replaced
    FolderCreation folderCreation = FolderCreation::OneLevel;
    bool goesOnFromLeftOver = false;      ///< performs an interrupted run again, see Converter
    bool putsAwayTempFolder = false;      ///< of a run that was cancelled, before it begins
    int keptRuns = RunHistory::usualRuns; ///< in the history; 0 keeps nothing
    bool keepsOthers = false;             ///< puts back what else lies in "scr", see Converter
    bool isLocked = false;                ///< by the caller, until the run has ended
};

/// Converts the image files of one run: reads each, replaces the objects whose shapes are chosen,
/// writes the result below "scr_temp", and reports. Belongs to one thread.
class FileConversion final
{
public:
    FileConversion(const ConversionSettings &settings, const RunReports &reports);

    /// Nothing lies below "scr_temp" but what this run puts there. Else a file that lies in the place
    /// of an unchanged image file stays, and passes for it.
    void setTempFolderIsNew(bool isNew) { m_tempFolderIsNew = isNew; }

    /// Makes the folder of an image file below "scr_temp", where that is missing.
    void makeTempFolder(const QString &imageFile);
    /// The same where it was there and has gone since. Returns whether it was.
    bool makeTempFolderAgain(const QString &imageFile);

    /// Converts an image file. Whatever fails, and where the memory runs out, is reported; nothing
    /// that is not whole stays below "scr_temp".
    void convert(const QString &imageFile);

private:
    FileWriter makeTempFile(const ImageFile &image, const QString &tempFile, IfThere ifThere);
    FileWriter openTempFile(const ImageFile &image, const QString &tempFile, IfThere ifThere);
    bool writeTempFile(FileWriter &file, const ImageFile &image, const QString &tempFile, IfThere ifThere,
                       QByteArrayView bytes);
    void convertImage(const QString &imageFile);
    void copyUnchanged(const ImageFile &image);
    void writeConverted(ImageFile &image);
    void replaceObjects(ImageFile &image);
    void replaceObject(const ImageFile &image, STBlock &object);
    void keepObject(const ImageFile &image, STBlock &object, const QString &shapeName,
                    const QString &errorText);
    bool isChosen(const STBlock &object) const;

    const ConversionSettings &m_settings;
    const RunReports &m_reports;
    RootFolder m_root;
    FolderMaker m_tempFolders;
    FolderInUse m_tempFolder{m_root};
    bool m_tempFolderIsNew = false;
    ShapeLibrary m_library;
    OpenedShapes m_shapes{m_library};
    TextBuffer<char> m_output; ///< of the image file under conversion
};
