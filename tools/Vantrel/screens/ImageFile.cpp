// An image file as a run takes it apart.
#include "ImageFile.h"

#include "FileIo.h"
#include "LineCheck.h"
#include "ObjectCutter.h"
#include "ShapeReferences.h"

using namespace Qt::StringLiterals;

ImageFile readImage(const QString &path)
{
    ImageFile image{.path = path, .errorText = {}, .bytes = {}, .lines = {}, .objects = {}};
    std::optional<FileContent> content = readFile(path);
    if (!content) {
        image.state = ImageFile::State::Unreadable;
        image.errorText = u"Could not open Image File"_s;
        return image;
    }
    image.mode = content->mode;
    image.bytes = std::move(content->bytes);
    image.lines = FileLines(image.bytes);
    if (!checkLines(image.lines, {.kind = FileKind::Image}, image.errorText)) {
        image.state = ImageFile::State::Invalid;
        return image;
    }
    ObjectCutter(image.path, image.lines, image.objects).cut();
    gatherParts(image.lines, image.objects);
    readReferences(image.lines, image.objects);
    return image;
}
