// Rewriting one line of a shape for the place and the prefix of the object that it replaces.
#pragma once

#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringView>

/// How a shape is moved onto the object that it replaces. Points move by the corner of the main
/// rectangles, rectangles and axes by their centre.
struct Displacement
{
    QPoint corner;
    QPoint centre;
};

/// The object whose place a shape takes, as far as its lines show it.
struct PlacedObject
{
    int level = 0;
    QString extraText; ///< takes the place of what follows a rectangle line's fixed fields
};

/// The way from a shape's main rectangle to that of the object whose place it takes.
Displacement displacementOf(const QRect &target, const QRect &shape);

/// Moves a "PNT;" or "PSDV" line; other lines, and points that are not as many as the line
/// says, are left alone.
void placeLine(QString &line, const Displacement &displacement, const PlacedObject &object);

/// The prefixes that the file references of a shape are moved between, and the way of its axes.
struct Rebasing
{
    QString fromPrefix;
    QString toPrefix;
    int xShift = 0;
    int yShift = 0;
};

/// Rewrites the file references and axis numbers of a line; other lines are left alone.
void rebaseLine(QString &line, const Rebasing &rebasing);
