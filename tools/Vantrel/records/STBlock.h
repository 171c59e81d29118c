// The one record of a conversion.
#pragma once

#include <QMetaType>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>

/// What became of a report's object or file: the numbers in STBlock::status.
namespace ReportStatus {
enum : int { Replaced = 0, NotReplaced = 1, Error = 2 };
}

/// The word for a report's status: "NO REPLACE" for 1, "ERROR" for 2, else "REPLACE".
QString statusText(int status);

/// An object of an image file, a shape, or a report of a run. Line indices are 0-based, rectangles
/// have inclusive corners. `clearBlock` makes another state than construction does.
struct STBlock
{
    int firstLine = 0;                   ///< index of the object's first line in the image file
    int lastLine = 0;                    ///< index of its last line, inclusive
    int extraNumber = 0;                 ///< the object's level
    int status = ReportStatus::Replaced; ///< see ReportStatus
    bool replace = false;                ///< a candidate for replacement
    bool iconToggle = false;             ///< set while the next icon rectangle is to be passed over
    QString shapeFile;                   ///< name of the shape file that the object refers to
    QString imageFile;                   ///< path of the image file
    QString initText;                    ///< the object's initialisation prefix
    QRect rect;                          ///< main rectangle: the largest one that counts
    QRect rect2;                         ///< icon rectangle
    QString imageObject;                 ///< name of the object
    QString shapeObject;                 ///< name of the shape object that replaced it
    QString error;
    QString extraText;        ///< what follows the fixed fields of the object's rectangle line
    QStringList missingIcons; ///< bitmaps of a shape that were not found
    QRect rect3;              ///< position, in left and top only

    /// Where a record's position, in the left and top of `rect3`, is not known.
    static constexpr QPoint noPosition{-99999, -99999};
};

/// Puts a record into the state that reports and readers start from.
void clearBlock(STBlock &block);

Q_DECLARE_METATYPE(STBlock)
