"""Small ways to break the engine, each of which the tests must notice: file, old text, new text.

An old text stands in its file exactly once. Checks that only save work are no rows: what a missing
one lets pass is refused a step later, such as a name that is taken, by the renaming itself.
"""

CORE = "tools/Vantrel/"


def _table(file, *rows):
    return [(CORE + file, old, new) for old, new in rows]


RECORD = _table(
    "records/STBlock.cpp",
    ("constexpr int beyondLeftAndTop = 99999;", "constexpr int beyondLeftAndTop = 9999;"),
    ('"NO REPLACE"_L1', '"NOT REPLACED"_L1'),
)

GRAMMAR = _table(
    "records/RecordGrammar.h",
    ('LineTag{u"DIV", LineKind::Bitmap}', 'LineTag{u"DIW", LineKind::Bitmap}'),
    ('LineTag{u"PNT;", LineKind::Points}', 'LineTag{u"PNT", LineKind::Points}'),
    ("inline constexpr qsizetype kind = 2;", "inline constexpr qsizetype kind = 1;"),
    ("inline constexpr qsizetype first = 3;", "inline constexpr qsizetype first = 4;"),
    ("x1 = 1, y1 = 2, x2 = 3, y2 = 4;", "x1 = 1, y1 = 2, x2 = 4, y2 = 3;"),
    ("inline constexpr qsizetype counts = 6;", "inline constexpr qsizetype counts = 5;"),
    ("inline constexpr qsizetype level = 11;", "inline constexpr qsizetype level = 10;"),
    ("inline constexpr qsizetype extra = 13;", "inline constexpr qsizetype extra = 12;"),
    ("inline constexpr qsizetype initText = 3;", "inline constexpr qsizetype initText = 2;"),
    ("inline constexpr qsizetype objectName = 4;", "inline constexpr qsizetype objectName = 3;"),
    ("inline constexpr qsizetype fileName = 3;", "inline constexpr qsizetype fileName = 2;"),
    ("inline constexpr std::array<qsizetype, 2> axisNumbers{4, 5};",
     "inline constexpr std::array<qsizetype, 2> axisNumbers{4, 4};"),
    ("inline constexpr int fieldsOfEntry = 3;", "inline constexpr int fieldsOfEntry = 2;"),
    ("inline constexpr qsizetype firstReference = 5;", "inline constexpr qsizetype firstReference = 4;"),
    ('CheckRule{u"ID;", u"", FieldRule::AtLeast, 3, 3}', 'CheckRule{u"ID;", u"", FieldRule::AtLeast, 3, 2}'),
    ('CheckRule{u"PNT;", u"PNT", FieldRule::Points,', 'CheckRule{u"PNT;", u"PNT", FieldRule::AtLeast,'),
    ('CheckRule{u"PSDV", u"PSDV", FieldRule::AtLeast, 13, 12}',
     'CheckRule{u"PSDV", u"PSDV", FieldRule::AtLeast, 12, 12}'),
    ('CheckRule{u"LIB", u"LIB", FieldRule::AtLeast, 4, 5}',
     'CheckRule{u"LIB", u"LIB", FieldRule::AtLeast, 5, 5}'),
    ('CheckRule{u"ITA", u"ITCN", FieldRule::AtLeast, 2, notChecked}',
     'CheckRule{u"ITA", u"ITA", FieldRule::AtLeast, 2, notChecked}'),
    ('CheckRule{u"ITXN", u"ITXN", FieldRule::Entries, 3, notChecked}',
     'CheckRule{u"ITXN", u"ITXN", FieldRule::AtLeast, 3, notChecked}'),
    ('CheckRule{u"ISA", u"ISA", FieldRule::AtLeast, 21, notChecked}',
     'CheckRule{u"ISA", u"ISA", FieldRule::AtLeast, 20, notChecked}'),
    ('CheckRule{u"IY1", u"IX2", FieldRule::AtLeast, 6, notChecked}',
     'CheckRule{u"IY1", u"IY1", FieldRule::AtLeast, 6, notChecked}'),
    ("inline constexpr std::size_t imageCheckCount = 4;", "inline constexpr std::size_t imageCheckCount = 5;"),
    ('RebaseRule{u"IVG;", Rebase::References, {1}}', 'RebaseRule{u"IVG", Rebase::References, {1}}'),
    ('RebaseRule{u"ITX2", Rebase::References, {1, 2, 3, 4, 5, 6}}',
     'RebaseRule{u"ITX2", Rebase::References, {1, 2, 3, 4, 5}}'),
    ('RebaseRule{u"ISA", Rebase::References, {1, 2, 4, 6, 8, 14, 29, 20}}',
     'RebaseRule{u"ISA", Rebase::References, {1, 2, 4, 6, 8, 14, 20}}'),
    ('RebaseRule{u"IX2", Rebase::ShiftAcross, {1}}', 'RebaseRule{u"IX2", Rebase::ShiftDown, {1}}'),
    ('RebaseRule{u"IY2", Rebase::ShiftDown, {1}}', 'RebaseRule{u"IY2", Rebase::References, {1}}'),
    ('RebaseRule{u"IBW", Rebase::References, {7}}', 'RebaseRule{u"IBW", Rebase::References, {6}}'),
)

CUTTER = _table(
    "screens/ObjectCutter.cpp",
    ("m_object.replace = m_object.extraNumber > 0;", "m_object.replace = m_object.extraNumber > 1;"),
    ("closeObject(lineCount - 1);", "closeObject(lineCount - 2);"),
    ("appendPlainLines(0, index - 1);", "appendPlainLines(0, index);"),
    ("appendPlainLines(m_firstSection, m_section - 1);", "appendPlainLines(m_firstSection, m_section);"),
    ("closeObject(m_section - 1);", "closeObject(m_section);"),
    ("int line = m_section + 1;", "int line = m_section + 2;"),
    ("if (m_section == m_object.firstLine)", "if (m_section != m_object.firstLine)"),
    ("return m_object.extraNumber >= 1 && level == m_object.extraNumber;",
     "return level == m_object.extraNumber;"),
    ("if (m_object.extraNumber > 0)\n", "if (m_object.extraNumber >= 0)\n"),
    ("m_object.extraNumber >= 1 && hasLibraryReference(rectangleLine)", "hasLibraryReference(rectangleLine)"),
    ("rectangleLine - 1);", "rectangleLine - 2 < 0 ? 0 : rectangleLine - 2);"),
    ("!fieldAt(before, RecordGrammar::Library::shapeFile).isEmpty()", "true"),
    ("gathering.partsOf[*candidate].append(index);", "gathering.partsOf[*candidate].prepend(index);"),
    ("} else if (object.replace) {", "} else {"),
    ("takeLines({own.first, own.last - 1});", "takeLines({own.first, own.last - 2});"),
    ("if (own.first <= own.last)\n", "if (own.first < own.last)\n"),
    ("std::clamp(object.firstLine, 0, count);", "std::min(object.firstLine, count);"),
    ("std::clamp(object.lastLine, first - 1, count - 1)", "std::max(object.lastLine, first - 1)"),
    ("object.firstLine = firstLine;", "object.firstLine = firstLine + 1;"),
)

RECTANGLES = _table(
    "screens/RectangleReader.cpp",
    (' ? Section::Text : Section::Other', ' ? Section::Other : Section::Other'),
    ("m_record.iconToggle = !m_record.iconToggle;", "m_record.iconToggle = true;"),
    ("area > m_largestArea", "area >= m_largestArea"),
    (" && m_section != Section::Text", ""),
    (".normalized();", ";"),
)

REFERENCES = _table(
    "screens/ShapeReferences.cpp",
    ('".lib"_L1, ".plb"_L1, Qt::CaseSensitive', '".lib"_L1, ".plb"_L1, Qt::CaseInsensitive'),
    ("object.replace = !object.initText.isEmpty();", "object.replace = true;"),
    ("if (object.rect3.topLeft() != STBlock::noPosition)", "if (object.rect3.top() == 77777)"),
    ("if (rectangles.inIconSection())\n", "if (true)\n"),
)

CHECK = _table(
    "records/LineCheck.cpp",
    ("shownLine = verdict == Verdict::TooFewPoints ?", "shownLine = verdict == Verdict::TooManyPoints ?"),
    ("return verdict == Verdict::TooManyPoints;", "return false;"),
    ("const bool isExact = verdict == Verdict::TooManyPoints;",
     "const bool isExact = verdict != Verdict::TooFewFields;"),
    ("const int offset = file.kind == FileKind::Image ? 0 : file.lineOffset;", "const int offset = file.lineOffset;"),
)

CONVERTER = _table(
    "run/Converter.cpp",
    ("lowerNames.insert(name.toLower());", "lowerNames.insert(name);"),
    ("m_lastCancelled = m_lastAnnounced;", "m_lastCancelled = 0;"),
    ("    shapeLineOffset = file->lineOffset;\n", ""),
    ('"_yyyy-MM-dd_hh-mm-ss"', '"_yyyy-MM-dd_hh-mm"'),
)

RUN = _table(
    "run/ConversionRun.cpp",
    ("            m_conversion.makeTempFolderAgain(path);\n            return false;\n", ""),
    ("m_listener.onProgress(count, index);", "m_listener.onProgress(count, index + 1);"),
    ("m_listener.onProgress(count, count);", "m_listener.onProgress(count, 0);"),
) + _table(
    "run/FileConversion.cpp",
    ('path.replace("/scr"_L1, "/scr_temp"_L1, Qt::CaseSensitive)',
     'path.replace(path.lastIndexOf("/scr"_L1), 4, "/scr_temp"_L1)'),
    ("object.shapeFile.toLower()", "object.shapeFile"),
    ("isWithoutFolder && makeTempFolderAgain", "isWithoutFolder || makeTempFolderAgain"),
    ("keepObject(image, object, object.shapeFile, opened.errorText);",
     "keepObject(image, object, m_library.path(object.shapeFile), opened.errorText);"),
    ("object.shapeObject = shape.imageObject;", ""),
    ("tellFile(imageFile, ReportStatus::NotReplaced);", "tellFile(imageFile, ReportStatus::Replaced);"),
    ("        file.discard(ENOMEM); //", "        //"),
) + _table(
    "run/Converter.cpp",
    ("if (!failedShapeFiles.contains(name))\n", ""),
) + _table(
    "run/RunReports.cpp",
    ("object.status = ReportStatus::Error;", "object.status = ReportStatus::NotReplaced;"),
    ('message.replace("Shape File"_L1,', 'message.replace("Shape File ["_L1,'),
) + _table(
    "shapes/ShapeFile.cpp",
    ("offset = first < lines.size() ? first : -1;", "offset = first;"),
)

FILES = _table(
    "layout/updUtils.cpp",
    ("return copyAll(moves, root) && found.isWhole() && holdsOnlyCopied(moves, source);", "return copyAll(moves, root);"),
    ("found.isWhole() && renameAll(moves, root, source)", "renameAll(moves, root, source)"),
    ("    removeDirOrLog(projectDir + from);\n", ""),
)

FOLDER_REMOVAL = _table(
    "files/FolderRemoval.cpp",
    ("S_ISLNK(status.st_mode))\n        return unlinkat(parent.descriptor(), name.constData(), 0) == 0;",
     "false)\n        return false;"),
)

ROOT_FOLDER = _table(
    "files/RootFolder.cpp",
    ("errno != ENOENT || creation == FolderCreation::OneLevel", "errno != ENOENT"),
    ("return OpenFolder::beneath(m_folder, QFile::encodeName(relative));",
     "return OpenFolder(QFile::encodeName(path));"),
    ("(errno == EEXIST && isFolder(parent, name))", "errno == EEXIST"),
)

SEARCH = _table(
    "layout/ImageFileSearch.cpp",
    ('!path.contains(".psc")', '!path.endsWith(".psc")'),
    ("if (entry.name.startsWith('.'))\n            continue;", ""),
    ("std::none_of(m_levels.begin(), m_levels.end(), isHere) && ", ""),
    ("m_linksInside == 0 || ++m_foldersOverLinks <= mostFoldersOverLinks", "true"),
    ("m_linksInside > 0 && m_foldersOverLinks > mostFoldersOverLinks", "m_foldersOverLinks > mostFoldersOverLinks"),
    ("name.toLower()});", "name});"),
    ("error != 0 && !saysMissing(error)", "error != 0"),
)

LIBRARY = _table(
    "shapes/ShapeLibrary.cpp",
    ('path.contains(".cat"_L1)', 'path.endsWith(".cat"_L1)'),
    ("QFileInfo::exists(path) ? path : ", "!path.isEmpty() ? path : "),
)

BITMAPS = _table(
    "layout/BitmapFolders.cpp",
    ('lowerPath.indexOf("/bmp"_L1) > 0', 'lowerPath.indexOf("/bmp"_L1) >= -1'),
    ("const QString lowerPath = path.toLower();", "const QString lowerPath = path;"),
    ("constEnd() && isIn(*listed))", "constEnd())"),
    ("const bool isHidden = entry.name.startsWith('.');", "const bool isHidden = false;"),
)

MOVES = _table(
    "files/FileMove.cpp",
    ("status.st_nlink == 1 && ", ""),
    ("S_ISREG(status.st_mode) && ", ""),
    (" &&\n               isShortEnough(targetPath, file.to)", ""),
    ("isReachedWithoutLinks(folder.from) && ", ""),
    ("(!moves.isEmpty() && !canBeRemoved(root))", "false"),
)

EXCHANGE = _table(
    "exchange/ScreenExchange.cpp",
    (' && m_archive.putAway(u"scr_bak"_s);', ";"),
    ("completeBackup(originals.files, m_projectDir)", "true"),
    ("originals.isWhole() && ", ""),
    ('    m_archive.putAway(u"scr_temp"_s);\n', ""),
    (', u"scr_bak.unfinished"_s', ""),
    ("return copyBack(screensInPlace());", "return copyBack();"),
    ("    if (!enter(RunStage::BackingUp))\n        return false;\n", ""),
)

HISTORY = _table(
    "history/RunHistory.cpp",
    ("    if (ofTime > newest)\n        return ofTime;\n", "    return ofTime;\n"),
    ("return !summary || summary->kind", "return summary && summary->kind"),
    ("entry.kind == EntryKind::Folder && ", ""),
)

ROLLING_BACK = _table(
    "recovery/RollBack.cpp",
    ("    if (!isKnown) {", "    if (false) {"),
    ("        if (!isThere && isEdited(screen))\n            continue;\n", ""),
    ("!isUntouched && !isLastBackupBack()", "!isUntouched"),
)

PLACEMENT = _table(
    "shapes/ShapePlacement.cpp",
    ("left = std::max(0, Wrap::add(centre.x(), gap.number));", "left = Wrap::add(centre.x(), gap.number);"),
    ("const bool lacksFields = fields.count < Rectangle::extra && !extraText.isEmpty();",
     "const bool lacksFields = false;"),
    ("if (!field.contains(u':') || ", "if ("),
    ("if (!fitting.extraText.isEmpty())\n                out.append", "out.append"),
    ("fields.count > Rectangle::level;", "fields.count >= Rectangle::level;"),
    ("isAxisReference(index) && field.contains(u':')", "isAxisReference(index)"),
    ("    m_textBeforeGaps += rest.size();\n", ""),
)

FILE_IO = _table(
    "files/FileIo.cpp",
    (" || status.st_size > largestFile)", ")"),
)

FILE_WRITER = _table(
    "files/FileWriter.cpp",
    ("    removeNamed();\n    return false;", "    return false;"),
    ("    close();\n    removeNamed();\n", "    close();\n"),
    ("O_CREAT | O_EXCL | O_NOFOLLOW", "O_CREAT | O_NOFOLLOW"),
    ("if (count <= 0) {", "if (count < 0) {"),
    ("(status.st_mode & allBits) == m_mode || fchmod(m_descriptor, m_mode) == 0", "true"),
    ("!m_nameNow.isEmpty() && status.st_nlink == 0", "false"),
    ("if (m_error == 0 && ifThere == IfThere::Replace)", "if (false)"),
    ("        if (m_ifThere == IfThere::Replace)\n            unlinkat(folder, unfinishedFile, 0);\n", ""),
)

APPENDED_FILE = _table(
    "files/AppendedFile.cpp",
    (" && status.st_dev == m_device && status.st_ino == m_inode", ""),
    ("O_DIRECTORY | O_NOFOLLOW", "O_DIRECTORY"),
    ("S_ISREG(status.st_mode) && ", ""),
    (" && status.st_nlink == 1", ""),
)

CHANGE_LOG = _table(
    "run/ChangeLog.cpp",
    ("Uminitalisation", "Uninitialisation"),
    ("if (shapeObject == imageObject)\n        shapeObject.clear();", ""),
    ("constexpr qsizetype tagLength = 4;", "constexpr qsizetype tagLength = 5;"),
    (" && m_file.open(m_path))", " && (m_file.open(m_path), true))"),
    ("    std::transform(fields.begin(), fields.end(), fields.begin(), withAsciiControlsEscaped);\n", ""),
    ("    m_rows.clear();\n", ""),
    (">= longestFilledRow)", "> longestFilledRow)"),
    ("placeHolders * field.size()", "placeHolders + field.size()"),
    (" || std::exchange(m_hasToldUnfilledRow, true)", ""),
    ("        m_hasToldUnfilledRow = false;\n", ""),
)

MUTATIONS = (RECORD + GRAMMAR + CUTTER + RECTANGLES + REFERENCES + PLACEMENT + FILE_IO + FILE_WRITER + CHECK +
             CONVERTER + RUN + FILES + ROOT_FOLDER + SEARCH + LIBRARY + BITMAPS + MOVES + EXCHANGE + CHANGE_LOG +
             FOLDER_REMOVAL + APPENDED_FILE)
