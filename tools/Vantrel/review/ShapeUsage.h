// Which shapes the screens of a project use, and how.
#pragma once

#include "ProjectSurvey.h"
#include "ShapeCatalogue.h"

#include <QMap>
#include <QString>

/// What the screens of a project make of one shape.
struct ShapeUse
{
    struct Reference
    {
        QString path; ///< of the first screen that refers to it
        int line = 0; ///< number of the reference's line there
        int objectCount = 0;
    };

    int objectCount = 0;
    int screenCount = 0;
    bool isOutdated = false;             ///< a run would write something else
    QMap<QString, Reference> references; ///< by name as it stands in the image files
};

/// What there is to say about one shape that screens use.
struct ShapeReport
{
    QString name;
    QString place; ///< the folder that it lies in, or why it lies nowhere
    int objectCount = 0;
    int screenCount = 0;
    ShapeUsability usability = ShapeUsability::Valid;
    QString error; ///< the message of its check; empty where it is valid
    bool isOutdated = false;

    bool isUsable() const { return usability == ShapeUsability::Valid; }
};

/// Collects the shapes that objects refer to, by the names that a run compares, from screen to
/// screen.
class ShapeUsage final
{
public:
    /// Whether objects are compared with what a run would write.
    enum class States { Compared, NotCompared };

    ShapeUsage(const QString &projectDir, States states);

    void add(const ImageFile &screen);

    const QMap<QString, ShapeUse> &uses() const { return m_uses; }
    QList<ShapeReport> reports();
    ShapeCatalogue &catalogue() { return m_catalogue; }

private:
    void addObject(const ImageFile &screen, const STBlock &object);
    void addReference(const ImageFile &screen, const STBlock &object, ShapeUse &use);
    bool isOutdated(const ImageFile &screen, const STBlock &object);
    QString placeOf(const QString &name, const CatalogueShape &shape) const;

    QString m_projectDir;
    States m_states;
    ShapeCatalogue m_catalogue;
    QMap<QString, ShapeUse> m_uses;
};
