// The shapes of a run, each opened once.
#pragma once

#include "STBlock.h"
#include "ShapePlacement.h"

#include <QHash>
#include <QString>

#include <memory>

class ShapeLibrary;

/// What a run knows of a shape file.
struct OpenedShape
{
    bool isReadable = false;
    bool isValid = false;
    QString errorText; ///< why it is not
    std::shared_ptr<const ShapePattern<QLatin1StringView>> lines;
    STBlock shape;
};

/// Opens, checks and parses each shape file when a run first comes to it. Belongs to one thread.
class OpenedShapes final
{
public:
    explicit OpenedShapes(ShapeLibrary &library)
        : m_library(library)
    {
    }

    const OpenedShape &shape(const QString &name);

private:
    OpenedShape open(const QString &path);

    ShapeLibrary &m_library;
    QHash<QString, OpenedShape> m_shapes; ///< by name
};
