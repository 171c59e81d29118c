// What a project holds, and what a run over it would lose or could not convert.
#include "ProjectSurvey.h"

#include "Converter.h"
#include "updUtils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

class Surveyor final
{
public:
    Surveyor(const QString &projectDir, bool makesFolders)
        : m_projectDir(projectDir)
        , m_imageFolder(projectDir + "/scr"_L1)
        , m_makesFolders(makesFolders)
        , m_converter(projectDir)
    {
    }

    ProjectSurvey survey();

private:
    void lookAtFolders();
    void listImageFiles();
    void lookForLosses();
    void lookAtEntry(const fs::directory_entry &entry);
    void lookAtTargetFolder(const QFileInfo &imageFile);
    void readImageFile(const QString &path);

    void note(const QString &path, const QString &text, const QString &advice);
    QString relative(const QString &path) const;

    QString m_projectDir;
    QString m_imageFolder;
    bool m_makesFolders;
    Converter m_converter;
    QSet<QString> m_knownFiles;
    QSet<QString> m_madeFolders;
    ProjectSurvey m_survey;
};

ProjectSurvey Surveyor::survey()
{
    lookAtFolders();
    listImageFiles();
    lookForLosses();
    for (const QString &imageFile : std::as_const(m_survey.imageFiles))
        readImageFile(imageFile);
    return m_survey;
}

void Surveyor::note(const QString &path, const QString &text, const QString &advice)
{
    m_survey.obstacles.append({relative(path), text, advice});
}

QString Surveyor::relative(const QString &path) const
{
    return path.startsWith(m_projectDir + u'/') ? path.sliced(m_projectDir.size() + 1) : path;
}

void Surveyor::lookAtFolders()
{
    if (!QFileInfo(m_imageFolder).isDir())
        note(m_imageFolder, u"there is no such folder"_s,
             u"choose a project directory, which holds \"scr\""_s);
    if (m_projectDir.contains("/scr"_L1)) {
        note(m_projectDir, u"the project's path holds \"/scr\", so that copies would go to other folders"_s,
             u"move or rename the project"_s);
    }
    if (const QString tempFolder = m_projectDir + "/scr_temp"_L1; QFileInfo::exists(tempFolder)) {
        note(tempFolder, u"a run that did not end has left it; old files in it would reach \"scr\""_s,
             u"look whether \"scr\" is whole, then remove it"_s);
    }
}

void Surveyor::listImageFiles()
{
    QList<QFileInfo> files;
    updUtils::findImageFiles(m_imageFolder, files);
    for (const QFileInfo &file : std::as_const(files)) {
        m_survey.imageFiles.append(file.filePath());
        m_knownFiles.insert(file.filePath());
        lookAtTargetFolder(file);
    }
}

/// A run makes a missing folder when it comes to the first screen in it, one level only.
void Surveyor::lookAtTargetFolder(const QFileInfo &imageFile)
{
    const QString folder = imageFile.path();
    const bool isMade = m_makesFolders || folder == m_imageFolder || m_madeFolders.contains(folder) ||
                        m_madeFolders.contains(QFileInfo(folder).path());
    if (isMade) {
        m_madeFolders.insert(folder);
        return;
    }
    note(
        imageFile.filePath(),
        u"its folder could not be made in \"scr_temp\", \"scr_bak\" and \"scr\": no screen comes before it in %1"_s
            .arg(relative(QFileInfo(folder).path())),
        u"use --make-folders"_s);
}

void Surveyor::lookForLosses()
{
    std::error_code error;
    const auto options = fs::directory_options::none;
    fs::recursive_directory_iterator entry(QFile::encodeName(m_imageFolder).toStdString(), options, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error))
        lookAtEntry(*entry);
    if (error && QFileInfo::exists(m_imageFolder)) {
        note(m_imageFolder, u"it could not be read whole: %1"_s.arg(QString::fromStdString(error.message())),
             u"make every folder in it readable"_s);
    }
}

void Surveyor::lookAtEntry(const fs::directory_entry &entry)
{
    const QByteArray name(entry.path().c_str());
    const QString path = QFile::decodeName(name);
    std::error_code error;
    if (QFile::encodeName(path) != name) {
        note(path, u"its name is not valid UTF-8, so that a run would not see it"_s, u"rename it"_s);
        return;
    }
    if (m_knownFiles.contains(path))
        return;
    if (entry.is_symlink(error)) {
        note(path, u"a run would replace this link by what it leads to, or lose it"_s,
             u"move it out of \"scr\", or replace it by its files"_s);
    } else if (!entry.is_directory(error)) {
        const bool isHidden = entry.path().filename().native().starts_with('.');
        note(path,
             isHidden ? u"a run would lose this hidden file"_s
                      : u"a run would lose this file: it is no image file"_s,
             u"move it out of \"scr\""_s);
    }
}

void Surveyor::readImageFile(const QString &path)
{
    QStringList lines;
    QString errorText;
    if (!m_converter.readImageFile(path, lines, errorText)) {
        note(path, errorText, u"make it readable"_s);
        return;
    }
    if (!m_converter.checkImageLines(lines, errorText)) {
        note(path, errorText, u"mend the line, or move the file out of \"scr\""_s);
        return;
    }
    QList<Converter::STBlock> objects;
    m_converter.splitObjects(path, lines, objects);
    m_converter.gatherScatteredParts(lines, objects);
    m_converter.readShapeReferences(lines, objects);
    for (const Converter::STBlock &object : std::as_const(objects)) {
        if (object.replace && !object.shapeFile.isEmpty())
            m_survey.shapeNames.insert(object.shapeFile);
    }
}

} // namespace

ProjectSurvey surveyProject(const QString &projectDir, bool makesFolders)
{
    return Surveyor(projectDir, makesFolders).survey();
}
