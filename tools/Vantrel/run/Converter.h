// The worker that converts a project: replaces placed objects on its screens by the current
// shapes of its library.
#pragma once

// For those who include this header alone: they write change logs and cut lines themselves.
#include "ChangeLog.h"
#include "RecordFields.h"
#include "STBlock.h"

#include <QIODevice>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>

/// Performs conversion runs on a thread of its own. The owner speaks to it by queued signals
/// and, while no run is under way, by the setters; it must stop the thread (`thread()->quit()`,
/// `wait()`) before it deletes the converter.
///
/// The operations on lines, shapes and records are those of a run's steps, in the order in
/// which a run calls them. They work on the caller's lists and belong to the worker thread
/// while a run is under way. Line indices are 0-based, rectangles have inclusive corners.
class Converter final : public QObject
{
    Q_OBJECT

public:
    using STBlock = ::STBlock;

    /// Works on a thread of its own, which starts at once.
    Converter();
    /// Works on the caller's thread, for single operations on the project in `projectDir`.
    explicit Converter(QString projectDir);
    ~Converter() override;

    /// Whether this converter started a thread of its own.
    bool hasWorkerThread() const;

    void setProjectDir(const QString &projectDir);
    /// The shape files whose objects are replaced, in any letter case; none replaces nothing.
    void setFilterNames(const QSet<QString> &names);
    /// Makes folders with their parents where a run otherwise makes one level only.
    void setMakeFolders(bool makeFolders);
    /// Lets the next runs begin where an interrupted run has left its stage file, which other runs
    /// refuse. For whoever has recovered the project so far that converting again loses nothing.
    void setGoesOnFromLeftOver(bool goesOn);
    /// Lets the next runs put "scr_temp" into the history where a cancelled run has left it. Otherwise
    /// what lies there takes part in the run.
    void setPutsAwayTempFolder(bool putsAway);
    /// How many runs the project's history keeps. With 0 nothing is kept that a run displaces: neither
    /// the backup of the run before nor other files in "scr".
    void setKeptRuns(int keptRuns);
    /// Puts back what a run would take out of "scr": other files, hidden ones, and screens that could not
    /// be converted, as they were.
    void setKeepsOthers(bool keepsOthers);
    /// Tells that the owner holds the project's lock until the next runs have ended, so that they take
    /// none. For whoever has read the project before, and keeps others away from then on.
    void setLocked(bool isLocked);
    /// Path of the change log of the run under way, or of the last one.
    QString logFileName() const;

    /// Gives a number to a start that is about to be requested by a queued call of onStartConvert().
    void announceStart();
    /// Ends the run under way before its next file, and every announced start that has not
    /// begun; such a start ends as a stopped run. Callable from any thread.
    void cancel();

    /// Lets a run wait while `most` of its reports are not shown, see reportShown(); 0, as at
    /// first, never. Called on the thread that shows them, with 0 before it stops doing so.
    void limitLead(int most);
    /// A report was shown: the run may tell another one. Callable from any thread.
    void reportShown();

    /// Puts a record into the state that reports and readers start from.
    static void clearBlock(STBlock &block);

    /// Reads an image file into its lines: Latin-1, trimmed, empty ones kept. Where it cannot be
    /// opened, says so in `errorText`, leaves `lines` alone and returns false.
    bool readImageFile(const QString &path, QStringList &lines, QString &errorText);
    /// Whether a line has enough fields; the complaint in `errorText` otherwise. `tag` is the one
    /// for the message; "PNT" asks for the exact number, but lets too many pass with the
    /// complaint left in `errorText`. `imageFile` words it for an image file, else for a shape.
    bool checkFieldCount(const QString &tag, int present, int required, QString &errorText, int lineIndex,
                         bool imageFile) const;
    /// Reports and logs an image file that cannot be converted; the path is put into `message`.
    void reportImageFileError(const QString &path, QString &message);

    /// Checks an image file's lines against the record grammar; stops at the first that fails.
    bool checkImageLines(const QStringList &lines, QString &errorText);
    /// The same for a shape's lines, which are held to more rules.
    bool checkShapeLines(const QStringList &lines, QString &errorText);

    /// Cuts an image file's lines into objects: a record for the head of the file, then one for
    /// each object. Together they name every line once, unless there is no object. Returns true.
    bool splitObjects(const QString &imageFile, const QStringList &lines, QList<STBlock> &objects);
    /// Moves the lines of every object of a candidate's level behind it to just before the
    /// candidate's last line, so that the scattered parts of one placed object lie together.
    /// The records must be those that splitObjects() made of these lines.
    void gatherScatteredParts(QStringList &lines, QList<STBlock> &objects);
    /// Reads shape, prefix, name and rectangles of every candidate; one without a prefix is none.
    void readShapeReferences(const QStringList &lines, QList<STBlock> &objects);

    /// Reads a shape file from its first "ID;" line on. Where it is a catalogue or cannot be
    /// opened, says so in `errorText`, leaves `lines` alone and returns false.
    bool openShapeFile(const QString &path, QStringList &lines, QString &errorText);
    /// Fills a shape's record from its lines, and looks for its icon bitmaps. Returns true.
    bool parseShapeLines(const QStringList &lines, STBlock &shape);
    /// Moves points and rectangles of a shape's lines to the place of the object `target`.
    void placeShapeLines(QStringList &lines, const STBlock &target, const STBlock &shape);
    /// Moves the file references of a shape's lines to another prefix, and its axes by the shifts.
    void rebaseShapeLines(QStringList &lines, const QString &fromPrefix, const QString &toPrefix, int xShift,
                          int yShift);
    /// Makes a shape's lines those that take the place of `object`: places and rebases them.
    void fitShapeLines(QStringList &lines, const STBlock &object, const STBlock &shape);
    /// Reports and logs an object whose shape cannot be used, and writes the object's own lines.
    /// The object's record becomes an error; the shape's name joins `failedShapeFiles` once.
    void reportShapeFileError(QIODevice &output, STBlock &object, const QStringList &imageLines,
                              const QString &shapeFile, const QString &errorText,
                              QStringList &failedShapeFiles);

    /// Builds the path of a new run's change log from the time.
    void createLogFileName();
    /// Performs a whole run, unless one is under way. Where the project is in use, an interrupted run has
    /// left its stage file, or the project directory is empty or the root folder, logs that and touches
    /// nothing. Called by onStartConvert().
    void convert();

    /// Tested before each image file; set it to stop the run. A start clears it, see cancel().
    std::atomic<bool> stopRequested{false};

    /// Index of the first "ID;" line in the shape file read last, -1 where it has none. Added to
    /// the line numbers in messages about shapes.
    int shapeLineOffset = -1;

Q_SIGNALS:
    /// `index` is that of the file about to be converted; the number of files at a run's end.
    void sigProgressChanged(int count, int index);
    void sigConvertInfo(Converter::STBlock block);
    void sigConvertEnd();
    void sigUpdFileName(QString filePath);

public Q_SLOTS:
    void onStopConvert();
    /// Performs a run. Called while one is under way it does nothing.
    void onStartConvert();

private:
    class Insides;
    std::unique_ptr<Insides> m_insides;
};
