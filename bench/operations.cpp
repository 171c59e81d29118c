// Bytes a second of the operations of a conversion, one by one.
#include "Converter.h"
#include "Figures.h"
#include "updUtils.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

/// A screen and a shape of the project, as the steps of a run find them.
struct Material
{
    explicit Material(const QString &projectDir);

    QString screen;
    QStringList screenLines;
    QList<Converter::STBlock> objects;
    QStringList shapeLines;
    Converter::STBlock shape;
    Converter::STBlock placed; ///< an object that the shape replaces
    Converter converter;
};

Material::Material(const QString &projectDir)
    : converter(projectDir)
{
    QList<QFileInfo> screens;
    updUtils::findImageFiles(projectDir + "/scr"_L1, screens);
    screen = screens.first().filePath();

    QString error;
    converter.readImageFile(screen, screenLines, error);
    converter.splitObjects(screen, screenLines, objects);
    converter.readShapeReferences(screenLines, objects);
    for (const Converter::STBlock &object : std::as_const(objects)) {
        if (object.replace)
            placed = object;
    }
    converter.openShapeFile(projectDir + "/mac/"_L1 + placed.shapeFile, shapeLines, error);
    converter.parseShapeLines(shapeLines, shape);
    if (!placed.replace || shapeLines.isEmpty())
        qFatal("no placed object in %s", qPrintable(screen));
}

int64_t bytesOf(const QStringList &lines)
{
    int64_t bytes = 0;
    for (const QString &line : lines)
        bytes += line.size() + 1;
    return bytes;
}

void setBytes(benchmark::State &state, const QStringList &lines)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytesOf(lines));
}

void split(benchmark::State &state, Material &material)
{
    QStringList lines;
    QString error;
    while (state.KeepRunning()) {
        material.converter.readImageFile(material.screen, lines, error);
        benchmark::DoNotOptimize(lines);
    }
    setBytes(state, material.screenLines);
}

void checkScreen(benchmark::State &state, Material &material)
{
    QString error;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(material.converter.checkImageLines(material.screenLines, error));
    setBytes(state, material.screenLines);
}

void checkShape(benchmark::State &state, Material &material)
{
    QString error;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(material.converter.checkShapeLines(material.shapeLines, error));
    setBytes(state, material.shapeLines);
}

void cut(benchmark::State &state, Material &material)
{
    QList<Converter::STBlock> objects;
    while (state.KeepRunning()) {
        material.converter.splitObjects(material.screen, material.screenLines, objects);
        benchmark::DoNotOptimize(objects);
    }
    setBytes(state, material.screenLines);
}

void readReferences(benchmark::State &state, Material &material)
{
    while (state.KeepRunning()) {
        QList<Converter::STBlock> objects = material.objects;
        material.converter.readShapeReferences(material.screenLines, objects);
        benchmark::DoNotOptimize(objects);
    }
    setBytes(state, material.screenLines);
}

void place(benchmark::State &state, Material &material)
{
    while (state.KeepRunning()) {
        QStringList lines = material.shapeLines;
        material.converter.placeShapeLines(lines, material.placed, material.shape);
        benchmark::DoNotOptimize(lines);
    }
    setBytes(state, material.shapeLines);
}

void rebase(benchmark::State &state, Material &material)
{
    while (state.KeepRunning()) {
        QStringList lines = material.shapeLines;
        material.converter.rebaseShapeLines(lines, material.shape.imageObject, material.placed.initText, 3,
                                            5);
        benchmark::DoNotOptimize(lines);
    }
    setBytes(state, material.shapeLines);
}

struct Operation
{
    const char *name;
    void (*measure)(benchmark::State &state, Material &material);
};

constexpr Operation operations[] = {
    {"reading a screen into lines", split},
    {"checking a screen", checkScreen},
    {"checking a shape", checkShape},
    {"cutting a screen into objects", cut},
    {"reading the references of objects", readReferences},
    {"placing a shape", place},
    {"rebasing a shape", rebase},
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    Material material(projectDirOf(argc, argv));
    for (const Operation &operation : operations) {
        benchmark::RegisterBenchmark(operation.name, [&material, &operation](benchmark::State &state) {
            operation.measure(state, material);
        });
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
