// An image file as a run takes it apart.
#pragma once

#include "FileLines.h"
#include "STBlock.h"

#include <QByteArray>
#include <QList>
#include <QString>

struct ImageFile
{
    enum class State { Whole, Unreadable, Invalid };

    QString path;
    State state = State::Whole;
    QString errorText; ///< why it is not whole
    unsigned mode = 0; ///< permission bits
    QByteArray bytes;
    FileLines lines;        ///< with the scattered parts of objects gathered
    QList<STBlock> objects; ///< ranges of `lines`
};

/// Reads an image file, checks it, and cuts it into objects whose references are read. One that
/// is invalid keeps its lines as they stand in the file.
ImageFile readImage(const QString &path);
