// What a run tells of files and objects, in reports and in the log.
#include "RunReports.h"

#include "EngineLog.h"

using namespace Qt::StringLiterals;

void RunReports::tellFile(const QString &imageFile, int status, const QString &errorText) const
{
    STBlock report;
    clearBlock(report);
    report.imageFile = imageFile;
    report.status = status;
    report.error = errorText;
    m_receiver(report);
}

void RunReports::tellImageFileError(const QString &path, QString &message) const
{
    tellFile(path, ReportStatus::Error, message);
    message.replace("Image File"_L1, u"Image File %1"_s.arg(path), Qt::CaseSensitive);
    logError(message, LogPlace::ImageFile);
}

void RunReports::tellTempFileError(const QString &imageFile, const QString &message, int reason) const
{
    tellFile(imageFile, ReportStatus::Error, message);
    logError(reason == 0 ? message : message + ": "_L1 + qt_error_string(reason), LogPlace::TempFile);
}

void RunReports::tellUnusableShape(STBlock &object, const QString &shapeFile, const QString &errorText) const
{
    object.status = ReportStatus::Error;
    object.error = errorText;
    object.replace = false;
    QString message = errorText;
    message.replace("Shape File"_L1, u"Shape File %1"_s.arg(shapeFile), Qt::CaseSensitive);
    logError(message, LogPlace::ShapeFile);
    m_receiver(object);
}
