// What a converter tells and logs, written down for a test.
#include "Recorders.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

RunRecorder::RunRecorder(Converter &converter)
{
    connect(&converter, &Converter::sigProgressChanged, this,
            [this](int count, int index) { events += u"progress %1 %2"_s.arg(count).arg(index); });
    connect(&converter, &Converter::sigUpdFileName, this,
            [this](const QString &path) { events += "file "_L1 + path; });
    connect(&converter, &Converter::sigConvertInfo, this, [this](const Converter::STBlock &block) {
        events += "report "_L1 + statusText(block.status);
        reports += block;
    });
    connect(&converter, &Converter::sigConvertEnd, this, [this] { events += u"end"_s; });
}

QStringList RunRecorder::statusWords() const
{
    QStringList words;
    for (const Converter::STBlock &report : reports)
        words += statusText(report.status);
    return words;
}

LogRecorder::LogRecorder()
{
    Qel::Logger::registerLogListener(this);
}

LogRecorder::~LogRecorder()
{
    Qel::Logger::unregisterLogListener(this);
}

void LogRecorder::handleMessage(QString level, QString /*time*/, QString message)
{
    entries += level + ": "_L1 + message;
}

void LogRecorder::handleFormatedMessage(QString line)
{
    lines += line;
}

bool LogRecorder::namesSource(qsizetype entry, const QString &source, int line) const
{
    const QString pattern = u"%1\\D+%2\\b"_s.arg(QRegularExpression::escape(source)).arg(line);
    return entry < lines.size() && lines.at(entry).contains(QRegularExpression(pattern));
}

QString toText(const Converter::STBlock &block)
{
    const QStringList columns{statusText(block.status),
                              block.imageFile,
                              block.shapeFile,
                              block.imageObject,
                              block.shapeObject,
                              block.initText,
                              u"lines %1 to %2"_s.arg(block.firstLine).arg(block.lastLine),
                              u"level %1"_s.arg(block.extraNumber),
                              "rect "_L1 + toText(block.rect),
                              u"at %1 %2"_s.arg(block.rect3.left()).arg(block.rect3.top()),
                              block.error};
    return columns.join(" | "_L1);
}

QString toText(const QRect &rect)
{
    return u"%1 %2 %3 %4"_s.arg(rect.left()).arg(rect.top()).arg(rect.right()).arg(rect.bottom());
}
