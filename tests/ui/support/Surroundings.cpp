// What surrounds the window in a test.
#include "Surroundings.h"

#include <QDesktopServices>
#include <QMetaMethod>
#include <QMutex>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

QMutex warningsMutex;
QStringList recordedWarnings;
QtMessageHandler handlerBefore = nullptr;

void recordWarning(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtWarningMsg || type == QtCriticalMsg) {
        const QMutexLocker lock(&warningsMutex);
        recordedWarnings += text;
    }
    handlerBefore(type, context, text);
}

} // namespace

WarningRecorder::WarningRecorder()
{
    recordedWarnings.clear();
    handlerBefore = qInstallMessageHandler(recordWarning);
}

WarningRecorder::~WarningRecorder()
{
    qInstallMessageHandler(handlerBefore);
}

QStringList WarningRecorder::warnings()
{
    const QMutexLocker lock(&warningsMutex);
    return recordedWarnings;
}

DesktopRecorder::DesktopRecorder()
{
    QDesktopServices::setUrlHandler(u"file"_s, this, "open");
}

DesktopRecorder::~DesktopRecorder()
{
    QDesktopServices::unsetUrlHandler(u"file"_s);
}

void forgetSettings()
{
    if (!qEnvironmentVariableIsSet("XDG_CONFIG_HOME"))
        qFatal("set XDG_CONFIG_HOME: this test would change your own settings");
    QSettings(u"QEL"_s, u"Vantrel"_s).clear();
}

void copyExamplePlant(const TestProject &project)
{
    copyFolder(QStringLiteral(VANTREL_SOURCE_DIR "/example/waterworks"), project.dir());
}

QStringList ownMethods(const QMetaObject &metaObject)
{
    QStringList methods;
    for (int index = metaObject.methodOffset(); index < metaObject.methodCount(); ++index) {
        const QMetaMethod method = metaObject.method(index);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        methods += (isSignal ? "signal "_L1 : "slot "_L1) + QString::fromLatin1(method.methodSignature());
    }
    return methods;
}
