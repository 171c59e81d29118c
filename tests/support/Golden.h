// Comparing a folder with the one that a test expects.
#pragma once

#include <QByteArray>
#include <QString>

/// Compares two folders file by file and byte by byte; a file in only one of them differs too.
/// Returns an empty text or the differences, fit to be printed.
QByteArray folderDifferences(const QString &expected, const QString &actual);

/// The same; where the environment has VANTREL_UPDATE_GOLDEN=1, makes `expected` a copy of
/// `actual` and finds no difference.
QByteArray goldenDifferences(const QString &expected, const QString &actual);
